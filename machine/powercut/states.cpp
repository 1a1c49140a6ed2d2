#include "states.h"

#include <random>
#include <set>

namespace {

constexpr std::size_t ALL_SUBSETS = 4; // of groups up to this size
constexpr unsigned RANDOM_SUBSETS = 4;
constexpr std::size_t BLOCK = 4096; // of the file system, and a sector of the disk: written whole, or not

void apply(std::string &disk, const XasEntry &write, char how)
{
    const std::size_t blocks = write.data.size() / BLOCK;
    const std::size_t size = how == 'h' ? blocks / 2 * BLOCK : write.data.size();
    if (how != '0')
        disk.replace(write.place, size, write.data.substr(0, size));
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

} // namespace

void xasForEachState(std::string disk, const std::vector<XasGroup> &groups,
                     const std::function<bool(std::size_t)> &isWanted,
                     const std::function<void(const XasState &, const std::string &)> &look)
{
    std::mt19937 random{1};
    std::size_t number = 0;
    for (const XasGroup &group : groups) {
        if (group.begun > 0) {
            for (const std::string &way : waysOf(group, random)) {
                if (!isWanted(++number))
                    continue;
                std::string cut = disk;
                for (std::size_t i = 0; i < way.size(); ++i)
                    apply(cut, group.writes[i], way[i]);
                look({number, &group, way}, cut);
            }
        }
        for (const XasEntry &write : group.writes)
            apply(disk, write, '1');
    }
}
