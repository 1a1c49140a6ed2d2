#include "versions.h"

#include "log.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

namespace {

constexpr std::string_view BACKUP = ".old";
constexpr const char *DIRECTORIES[] = {"etc", "www/xml"};

/** What one message changes in several steps, each of them whole: user by user, key by key. */
constexpr std::string_view IN_STEPS[] = {"etc/passwd", "etc/shadow", "etc/group", "etc/.lusers",
                                         "etc/ipsec.secrets"};

/** sed -i gives a new file the old one's name before its content is on the flash. Until the daemon has synced
 * it, it is empty there, or zeros. */
constexpr std::string_view EDITED_BY_SED = "etc/ipsec.secrets";

const std::string *find(const XasTree &tree, const std::string &path)
{
    const auto found = tree.find(path);
    return found == tree.end() ? nullptr : &found->second;
}

bool isSame(const std::string *one, const std::string *other)
{
    return one == nullptr || other == nullptr ? one == other : *one == *other;
}

/** Some version from `first` to `last` has the file so; or has it not, when content is a null pointer. */
bool isVersion(const std::vector<XasTree> &versions, const std::string &path, const std::string *content,
               std::size_t first, std::size_t last)
{
    return std::any_of(versions.begin() + static_cast<std::ptrdiff_t>(first),
                       versions.begin() + static_cast<std::ptrdiff_t>(last) + 1,
                       [&](const XasTree &version) { return isSame(content, find(version, path)); });
}

bool isWholeBackup(const std::vector<XasTree> &versions, const std::string &path, const std::string *content)
{
    const std::string file = path.substr(0, path.size() - BACKUP.size());
    const std::size_t last = versions.size() - 1;
    return content == nullptr || isVersion(versions, file, content, 0, last) ||
           isVersion(versions, path, content, 0, last);
}

/** Those of the daemon, of the account tools and of sed -i, whose names end with six random characters. */
bool isTemporary(const std::string &path, const std::set<std::string> &paths)
{
    constexpr std::size_t RANDOM = 6;
    const std::string name = fs::path{path}.filename();
    return name.ends_with(".tmp") || name.ends_with("_tmp") || name.ends_with(".new") ||
           (name.starts_with("sed") && name.size() == 3 + RANDOM) ||
           (path.size() > RANDOM && paths.contains(path.substr(0, path.size() - RANDOM)));
}

std::set<std::string> linesOf(const std::string *content)
{
    std::istringstream text{content == nullptr ? std::string{} : *content};
    std::set<std::string> lines;
    for (std::string line; std::getline(text, line);)
        lines.insert(line + (text.eof() ? "" : "\n"));
    return lines;
}

/** All lines are of one of the two versions, and those that both have are there. */
bool isOnTheWay(const std::string &path, const std::string *content, const XasTree &from, const XasTree &to)
{
    const auto old = linesOf(find(from, path));
    const auto made = linesOf(find(to, path));
    const auto lines = linesOf(content);
    const bool knowsAll = std::ranges::all_of(
        lines, [&](const std::string &line) { return old.contains(line) || made.contains(line); });
    return knowsAll && std::ranges::all_of(old, [&](const std::string &line) {
               return !made.contains(line) || lines.contains(line);
           });
}

} // namespace

XasTree xasReadTree(const std::string &top)
{
    XasTree tree;
    for (const char *directory : DIRECTORIES) {
        for (const auto &entry : fs::recursive_directory_iterator{fs::path{top} / directory}) {
            const std::string path = entry.path().lexically_relative(top);
            if (entry.is_symlink())
                tree[path] = "-> " + fs::read_symlink(entry.path()).string();
            else if (entry.is_regular_file())
                tree[path] = xasReadWhole(entry.path());
        }
    }
    return tree;
}

std::vector<XasTree> xasReadVersions(const std::string &directory)
{
    std::vector<XasTree> versions;
    for (std::size_t i = 0; fs::exists(directory + "/" + std::to_string(i)); ++i)
        versions.push_back(xasReadTree(directory + "/" + std::to_string(i)));
    return versions;
}

XasFinding xasCheckTree(const XasTree &tree, const std::vector<XasTree> &versions, std::size_t acknowledged,
                        std::size_t begun)
{
    std::set<std::string> paths;
    for (const XasTree &version : versions) {
        for (const auto &[path, content] : version)
            paths.insert(path);
    }
    XasFinding finding;
    for (const auto &[path, content] : tree) {
        if (paths.contains(path) || path.ends_with(BACKUP))
            continue;
        if (isTemporary(path, paths))
            ++finding.leftOvers;
        else
            finding.bad.push_back(path + " was never there");
    }
    for (const std::string &path : paths) {
        const std::string *content = find(tree, path);
        if (path.ends_with(BACKUP) ? isWholeBackup(versions, path, content)
                                   : isVersion(versions, path, content, acknowledged, begun))
            continue;
        if (std::ranges::find(IN_STEPS, path) != std::end(IN_STEPS) &&
            isOnTheWay(path, content, versions[acknowledged], versions[begun]))
            continue;
        if (path == EDITED_BY_SED && content != nullptr &&
            content->find_first_not_of('\0') == std::string::npos &&
            !isSame(find(versions[acknowledged], path), find(versions[begun], path))) {
            finding.isSecretsEmptied = true;
            continue;
        }
        const bool isOlder = isVersion(versions, path, content, 0, acknowledged);
        finding.bad.push_back(path + (isOlder ? " is older than acknowledged" : " is not whole"));
    }
    return finding;
}
