#include "log.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <stdexcept>

namespace {

constexpr std::string_view MAGIC = "rhswfsj";
constexpr std::size_t FLUSH = 1;
constexpr std::size_t DISCARD = 4;
constexpr std::string_view BEGIN = "xas-mark begin ";
constexpr std::string_view END = "xas-mark end ";

std::size_t numberAt(std::string_view log, std::size_t place)
{
    std::uint64_t number = 0;
    if (place + sizeof number > log.size())
        throw std::runtime_error{"the log ends in the middle of an entry"};
    std::memcpy(&number, log.data() + place, sizeof number);
    return static_cast<std::size_t>(number);
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

std::vector<XasEntry> xasReadLog(std::string_view log, const XasMedium &medium)
{
    if (!log.starts_with(MAGIC))
        throw std::runtime_error{"this is no log of writes"};
    std::vector<XasEntry> entries(numberAt(log, 16));
    const std::size_t unit = numberAt(log, 24) & 0xffffffff;
    std::size_t place = unit;
    for (XasEntry &entry : entries) {
        const std::size_t target = numberAt(log, place) * unit;
        const std::size_t flags = numberAt(log, place + 16);
        const std::size_t size = (flags & DISCARD) != 0 ? 0 : numberAt(log, place + 8) * unit;
        place += unit;
        if (place + size > log.size())
            throw std::runtime_error{"the log ends in the middle of its data"};
        const std::string_view data = log.substr(place, size);
        if (size != 0 && target >= medium.end)
            entry = readMark(data);
        else if (size != 0)
            entry = {XasEntryKind::write, target, data, 0};
        else if (medium.isFlash)
            entry = {XasEntryKind::erase, target, {}, 0};
        else
            entry = {(flags & FLUSH) != 0 ? XasEntryKind::flush : XasEntryKind::other, 0, {}, 0};
        place += size;
    }
    return entries;
}

std::vector<XasGroup> xasGroupEntries(const std::vector<XasEntry> &entries, const XasMedium &medium)
{
    std::vector<XasGroup> groups{{{}, 0, 0}};
    for (const XasEntry &entry : entries) {
        XasGroup &group = groups.back();
        switch (entry.kind) {
        case XasEntryKind::write:
        case XasEntryKind::erase:
            group.writes.push_back(entry);
            if (!medium.isFlash)
                break;
            [[fallthrough]];
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
