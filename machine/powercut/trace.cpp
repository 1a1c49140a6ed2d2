#include "trace.h"

#include "log.h"

#include <charconv>
#include <istream>
#include <optional>
#include <stdexcept>
#include <string_view>

namespace {

constexpr std::uint64_t DISCARD = 4;

struct Log {
    std::string entries;
    std::uint64_t count = 0;
};

/** The hexadecimal number after the text. */
std::optional<std::size_t> numberAfter(std::string_view line, std::string_view text)
{
    const std::size_t at = line.find(text);
    if (at == std::string_view::npos)
        return {};
    std::size_t number = 0;
    line.remove_prefix(at + text.size());
    std::from_chars(line.data(), line.data() + line.size(), number, 16);
    return number;
}

void addNumber(std::string &log, std::uint64_t number)
{
    log.append(reinterpret_cast<const char *>(&number), sizeof number);
}

void fillSector(std::string &log)
{
    log.resize((log.size() + FLASH_PAGE - 1) / FLASH_PAGE * FLASH_PAGE, '\0');
}

void addEntry(Log &log, std::size_t place, std::size_t size, std::string_view data)
{
    addNumber(log.entries, place / FLASH_PAGE);
    addNumber(log.entries, size / FLASH_PAGE);
    addNumber(log.entries, data.empty() ? DISCARD : 0);
    fillSector(log.entries);
    log.entries += data;
    ++log.count;
}

void addErase(Log &log, std::string &flash, std::size_t place, std::string_view line)
{
    if (!line.ends_with("len = " + std::to_string(FLASH_BLOCK)))
        throw std::runtime_error{"an erase of something else than a block: " + std::string{line}};
    addEntry(log, place, FLASH_BLOCK, {});
    flash.replace(place, FLASH_BLOCK, FLASH_BLOCK, '\xff');
}

std::string headOf(const Log &log)
{
    std::string head{"rhswfsj", 8};
    addNumber(head, 1);
    addNumber(head, log.count);
    addNumber(head, FLASH_PAGE);
    fillSector(head);
    return head;
}

} // namespace

std::string xasPackTrace(std::istream &trace, std::string flash)
{
    Log log;
    std::optional<std::size_t> last; // the byte that was programmed last, when it is in no entry yet
    const auto endWrite = [&] {
        if (last) {
            const std::size_t page = *last / FLASH_PAGE * FLASH_PAGE;
            addEntry(log, page, FLASH_PAGE, std::string_view{flash}.substr(page, FLASH_PAGE));
        }
        last.reset();
    };
    for (std::string line; std::getline(trace, line);) {
        if (const auto erased = numberAfter(line, "m25p80_flash_erase [0x"); erased) {
            endWrite();
            addErase(log, flash, numberAfter(line, "offset = 0x").value(), line);
        } else if (const auto place = numberAfter(line, "page program cur_addr=0x"); place) {
            if (!last || *place != *last + 1 || *place % FLASH_PAGE == 0)
                endWrite();
            last = place;
            const std::size_t data = numberAfter(line, "data=0x").value();
            flash.at(*place) = static_cast<char>(flash.at(*place) & static_cast<char>(data));
        }
    }
    endWrite();
    return headOf(log) + log.entries;
}
