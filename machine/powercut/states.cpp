#include "states.h"

#include <algorithm>
#include <random>
#include <set>

namespace {

constexpr std::size_t ALL_SUBSETS = 4; // of groups up to this size
constexpr unsigned RANDOM_SUBSETS = 4;
constexpr std::size_t BLOCK = 4096; // of the file system, and a sector of the disk: written whole, or not

struct Change {
    std::size_t place;
    std::string content;
};

/** The content after a program of which only a half of the changed bytes was done, or a part of the bits. */
void tear(std::string &made, const std::string &old, char how, std::size_t seed)
{
    const auto [from, ignored] = std::ranges::mismatch(made, old);
    auto until = made.end();
    while (until != from && until[-1] == old[static_cast<std::size_t>(until - made.begin()) - 1])
        --until;
    std::mt19937 random{static_cast<unsigned>(seed)};
    for (auto byte = how == 'h' ? from + (until - from) / 2 : from; byte != until; ++byte) {
        const char kept = how == 'h' ? '\xff' : static_cast<char>(random());
        *byte = static_cast<char>(*byte | (old[static_cast<std::size_t>(byte - made.begin())] & kept));
    }
}

Change eraseChange(const std::string &content, const XasEntry &erase, char how)
{
    Change change{erase.place, content.substr(erase.place, FLASH_BLOCK)};
    const std::size_t half = FLASH_BLOCK / 2;
    const std::size_t size = how == 'h' || how == 'l' ? half : FLASH_BLOCK;
    change.content.replace(how == 'l' ? half : 0, size, size, how == 'z' ? '\0' : '\xff');
    return change;
}

Change changeOf(const std::string &content, const XasEntry &entry, char how, std::size_t seed)
{
    if (how == '0')
        return {entry.place, {}};
    if (entry.kind == XasEntryKind::erase)
        return eraseChange(content, entry, how);
    Change change{entry.place, std::string{entry.data}};
    if (change.content.size() <= FLASH_PAGE && how != '1')
        tear(change.content, content.substr(entry.place, change.content.size()), how, seed);
    else if (how == 'h')
        change.content.resize(change.content.size() / BLOCK / 2 * BLOCK);
    return change;
}

/** Carries the change out, and keeps in it what was there before. */
void swapContent(std::string &content, Change &change)
{
    std::swap_ranges(change.content.begin(), change.content.end(),
                     content.begin() + static_cast<std::ptrdiff_t>(change.place));
}

void addBeginnings(std::vector<std::string> &ways, const XasGroup &group)
{
    const std::size_t count = group.writes.size();
    for (std::size_t there = 0; there <= count; ++there) {
        const std::string way = std::string(there, '1') + std::string(count - there, '0');
        ways.push_back(way);
        if (there < count && group.writes[there].data.size() >= 2 * BLOCK) {
            ways.push_back(way);
            ways.back()[there] = 'h';
        }
    }
}

void addSubsets(std::vector<std::string> &ways, std::size_t count)
{
    for (std::size_t bits = 0; bits < std::size_t{1} << count; ++bits) {
        std::string way(count, '0');
        for (std::size_t i = 0; i < count; ++i)
            way[i] = (bits >> i & 1) != 0 ? '1' : '0';
        ways.push_back(way);
    }
}

void addSomeSubsets(std::vector<std::string> &ways, std::size_t count, std::mt19937 &random)
{
    for (std::size_t i = 0; i < count; ++i) {
        ways.emplace_back(count, '1');
        ways.back()[i] = '0';
        ways.emplace_back(count, '0');
        ways.back()[i] = '1';
    }
    for (unsigned i = 0; i < RANDOM_SUBSETS; ++i) {
        std::string &way = ways.emplace_back(count, '0');
        for (char &write : way)
            write = (random() & 1) != 0 ? '1' : '0';
    }
}

/** Without repetitions, in the order of their finding. */
std::vector<std::string> waysOf(const XasGroup &group, std::mt19937 &random)
{
    std::vector<std::string> ways;
    addBeginnings(ways, group);
    if (group.writes.size() <= ALL_SUBSETS)
        addSubsets(ways, group.writes.size());
    else
        addSomeSubsets(ways, group.writes.size(), random);
    std::set<std::string> seen;
    std::erase_if(ways, [&seen](const std::string &way) { return !seen.insert(way).second; });
    return ways;
}

std::vector<std::string> flashWaysOf(const XasGroup &group, bool isAfterMark)
{
    std::vector<std::string> ways;
    if (isAfterMark)
        ways.emplace_back(group.writes.size(), '0');
    if (!group.writes.empty()) {
        const bool isErase = group.writes[0].kind == XasEntryKind::erase;
        for (const char how : std::string_view{isErase ? "hlz1" : "hr1"})
            ways.emplace_back(1, how);
    }
    return ways;
}

} // namespace

void xasForEachState(std::string content, const XasMedium &medium, const std::vector<XasGroup> &groups,
                     const std::function<bool(std::size_t)> &isWanted,
                     const std::function<void(const XasState &, const std::string &)> &look)
{
    std::mt19937 random{1};
    std::size_t number = 0;
    XasGroup before{{}, 0, 0};
    for (const XasGroup &group : groups) {
        const bool isAfterMark = group.begun != before.begun || group.acknowledged != before.acknowledged;
        const auto ways = medium.isFlash ? flashWaysOf(group, isAfterMark) : waysOf(group, random);
        for (const std::string &way : ways) {
            if (group.begun == 0 || !isWanted(++number))
                continue;
            std::vector<Change> changes;
            for (std::size_t i = 0; i < way.size(); ++i)
                swapContent(content,
                            changes.emplace_back(changeOf(content, group.writes[i], way[i], number)));
            look({number, &group, way}, content);
            for (auto change = changes.rbegin(); change != changes.rend(); ++change)
                swapContent(content, *change);
        }
        for (const XasEntry &write : group.writes) {
            Change change = changeOf(content, write, '1', 0);
            swapContent(content, change);
        }
        before = {{}, group.acknowledged, group.begun};
    }
}
