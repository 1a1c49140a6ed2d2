#include "xms/watched_files.h"

#include "core/sysapp_parser.h"
#include "xms/difference.h"
#include "xms/error.h"

#include <array>
#include <chrono>
#include <climits>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/** What is larger is not compared; configuration files have some thousand bytes. */
constexpr std::size_t FILE_MAX = 256U << 10;

std::int64_t nowMs()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

/** What the daemon changes without an entry of the list, by itself or by the account tools. */
constexpr auto OWN_FILES = std::to_array<const char *>(
    {"/etc/.lusers", "/etc/group", "/etc/ipsec.secrets", "/etc/passwd", "/etc/shadow"});
constexpr const char *USER_FILES = "/etc/zel";

std::string linkText(const std::string &path)
{
    std::string target(PATH_MAX, '\0');
    const ssize_t size = readlink(path.c_str(), target.data(), target.size());
    target.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    return "-> " + target + "\n";
}

/** The content, as far as it can be shown. */
std::string contentOf(const std::string &path, const struct stat &status)
{
    if (static_cast<std::size_t>(status.st_size) > FILE_MAX)
        return "[" + std::to_string(status.st_size) + " bytes]\n";
    const int file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    std::string text(FILE_MAX, '\0');
    const ssize_t size = file < 0 ? 0 : read(file, text.data(), text.size());
    if (file >= 0)
        close(file);
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    return text.find('\0') == std::string::npos ? text
                                                : "[" + std::to_string(size) + " bytes that are no text]\n";
}

/** A line of a difference: its mark, its first word, and XMS_MASK for what follows; what cannot be told
 * apart is hidden whole. */
std::string closedLine(std::string_view line)
{
    const bool isContent = line.starts_with(' ') || line.starts_with('-') || line.starts_with('+');
    if (!isContent || line.size() == 1)
        return std::string{line};
    const std::size_t word = line.find_first_not_of(" \t", 1);
    const std::size_t end = word == std::string_view::npos ? word : line.find_first_of(" \t:", word);
    const bool isSplit =
        end != std::string_view::npos && line.find_first_not_of(" \t:", end) != std::string_view::npos;
    return std::string{line.substr(0, isSplit ? end + 1 : 1)} + std::string{XMS_MASK};
}

std::string closedText(std::string_view difference)
{
    std::string text;
    while (!difference.empty()) {
        const std::size_t end = std::min(difference.find('\n'), difference.size() - 1);
        text += closedLine(difference.substr(0, end)) + "\n";
        difference.remove_prefix(end + 1);
    }
    return text;
}

} // namespace

XmsWatchedFiles::State XmsWatchedFiles::stateOf(const std::string &path)
{
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0)
        return {};
    if (S_ISLNK(status.st_mode))
        return {linkText(path)};
    if (!S_ISREG(status.st_mode))
        return {};
    return {contentOf(path, status), (status.st_mode & S_IROTH) == 0};
}

XmsWatchedFiles::XmsWatchedFiles(const std::string &list)
{
    XasAppList apps;
    if (xasLoadAppList(list.c_str(), apps) != 0)
        throw XmsError{XmsExit::usage, "cannot read the application list " + list};
    for (const XasApp &app : apps) {
        for (const XasCfgFileEntry &entry : app.cfgFiles) {
            if (entry.path)
                files.try_emplace(*entry.path);
        }
    }
    for (const char *path : OWN_FILES)
        files.try_emplace(path);
    addUserFiles();
    for (auto &[path, state] : files)
        state = stateOf(path);
}

/** A file of a user that was not there before begins as none. */
void XmsWatchedFiles::addUserFiles()
{
    std::error_code none; // a directory that is not there has none
    for (const auto &entry : std::filesystem::directory_iterator(USER_FILES, none)) {
        if (entry.path().extension() == ".conf")
            files.try_emplace(entry.path());
    }
}

std::vector<XmsFileChange> XmsWatchedFiles::takeChanges()
{
    addUserFiles();
    std::vector<XmsFileChange> changes;
    for (auto &[path, before] : files) {
        State now = stateOf(path);
        if (now == before)
            continue;
        const bool isClosed = now.isClosed || before.isClosed;
        std::string difference = xmsDifference(before.text, now.text);
        if (difference.empty())
            difference = now.isClosed ? "[closed to others]\n" : "[open to others]\n";
        changes.push_back({nowMs(), path, std::move(difference), isClosed});
        before = std::move(now);
    }
    return changes;
}

XmsFileChange xmsMaskedChange(XmsFileChange change, const XmsKnownSecrets &secrets)
{
    change.difference = secrets.hide(change.isClosed ? closedText(change.difference) : change.difference);
    return change;
}
