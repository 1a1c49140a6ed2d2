#include "log.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <stdexcept>

namespace {

constexpr std::uint64_t MAGIC = 0x6a736677736872;
constexpr std::uint64_t FLUSH = 1;
constexpr std::uint64_t DISCARD = 4;
constexpr std::string_view BEGIN = "xas-mark begin ";
constexpr std::string_view END = "xas-mark end ";

std::uint64_t numberAt(std::string_view log, std::size_t place)
{
    std::uint64_t number = 0;
    if (place + sizeof number > log.size())
        throw std::runtime_error{"the log ends in the middle of an entry"};
    std::memcpy(&number, log.data() + place, sizeof number);
    return number;
}

XasEntry readMark(std::string_view data)
{
    for (const auto &[text, kind] :
         {std::pair{BEGIN, XasEntryKind::markBegin}, {END, XasEntryKind::markEnd}}) {
        if (data.starts_with(text))
            return {kind, 0, {}, std::stoul(std::string{data.substr(text.size(), 10)})};
    }
    return {XasEntryKind::other, 0, {}, 0};
}

} // namespace

std::vector<XasEntry> xasReadLog(std::string_view log, std::size_t marks)
{
    if (numberAt(log, 0) != MAGIC)
        throw std::runtime_error{"this is no log of writes"};
    std::vector<XasEntry> entries(numberAt(log, 16));
    std::size_t place = SECTOR;
    for (XasEntry &entry : entries) {
        const std::size_t sector = numberAt(log, place);
        const std::uint64_t flags = numberAt(log, place + 16);
        const std::size_t size = (flags & DISCARD) != 0 ? 0 : numberAt(log, place + 8) * SECTOR;
        place += SECTOR;
        if (place + size > log.size())
            throw std::runtime_error{"the log ends in the middle of its data"};
        const std::string_view data = log.substr(place, size);
        if (size != 0 && sector * SECTOR >= marks)
            entry = readMark(data);
        else if (size != 0)
            entry = {XasEntryKind::write, sector * SECTOR, data, 0};
        else
            entry = {(flags & FLUSH) != 0 ? XasEntryKind::flush : XasEntryKind::other, 0, {}, 0};
        place += size;
    }
    return entries;
}

std::vector<XasGroup> xasGroupEntries(const std::vector<XasEntry> &entries)
{
    std::vector<XasGroup> groups{{{}, 0, 0}};
    for (const XasEntry &entry : entries) {
        XasGroup &group = groups.back();
        switch (entry.kind) {
        case XasEntryKind::write:
            group.writes.push_back(entry);
            break;
        case XasEntryKind::flush:
            groups.push_back({{}, group.acknowledged, group.begun});
            break;
        case XasEntryKind::markBegin:
            group.begun = entry.message;
            break;
        case XasEntryKind::markEnd:
            group.acknowledged = entry.message;
            break;
        case XasEntryKind::other:
            break;
        }
    }
    return groups;
}

std::string xasReadWhole(const std::string &path)
{
    std::ifstream file{path, std::ios::binary | std::ios::ate};
    std::string content(file ? static_cast<std::size_t>(file.tellg()) : 0, '\0');
    file.seekg(0);
    if (!file.read(content.data(), static_cast<std::streamsize>(content.size())))
        throw std::runtime_error{"cannot read " + path};
    return content;
}
