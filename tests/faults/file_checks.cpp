#include "faults/file_checks.h"

#include "core/sysapp_parser.h"
#include "dispatch/settings.h"
#include "support/message.h"
#include "support/settings_table.h"

#include <algorithm>
#include <set>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/syscall.h>

namespace {

constexpr mode_t OTHERS = 077;

const XasFileState *find(const XasFileStates &files, const std::string &path)
{
    const auto found = files.find(path);
    return found != files.end() ? &found->second : nullptr;
}

bool hasText(const XasFileState *state, const XasFileState *other)
{
    return state == nullptr || other == nullptr ? state == other : state->text == other->text;
}

std::string shown(const XasFileState *state)
{
    if (state == nullptr)
        return "missing";
    std::ostringstream text;
    text << std::oct << (state->mode & 07777) << " \"" << state->text.substr(0, 60) << "\" of " << std::dec
         << state->text.size() << " bytes";
    return text.str();
}

/** Working files, and what programs of the appliance write. */
bool isOthers(const std::string &path)
{
    return path.starts_with("/etc/sed") || path == "/etc/passwd-" || path.starts_with("/tmp/") ||
           path.starts_with("/var/");
}

std::set<std::string> linesOf(const XasFileState *state)
{
    std::set<std::string> lines;
    std::istringstream text{state != nullptr ? state->text : ""};
    for (std::string line; std::getline(text, line);)
        lines.insert(line);
    return lines;
}

/** Each line is one of the old or the new ones. */
bool isInBetween(const XasFileState *state, const XasFileState *before, const XasFileState *after)
{
    if (state == nullptr)
        return before == nullptr || after == nullptr;
    std::set<std::string> known = linesOf(before);
    known.merge(linesOf(after));
    return std::ranges::includes(known, linesOf(state)) &&
           (state->text.empty() || state->text.ends_with('\n'));
}

/** How open a path may be: as its file before or after, a backup as that of which it is one. */
mode_t mayBeOpen(const XasUndisturbed &undisturbed, const std::string &path)
{
    const std::string live = xasLivePathOf(path);
    mode_t open = 0;
    for (const std::string &name : {live, path}) {
        const XasFileState *after = find(undisturbed.run.files, name);
        const XasFileState *before = find(undisturbed.old, name);
        const bool isReplaced = !hasText(before, after) && !xasIsLive(path) && !path.ends_with(".old");
        for (const XasFileState *state : {after, isReplaced ? nullptr : before})
            open |= state != nullptr ? state->mode & OTHERS : 0;
    }
    return open;
}

/** Paths of the files of a case's setting by their TYPE. */
std::map<std::string, std::string> typesByPath(const XasFaultsCase &faultsCase)
{
    XasAppList apps;
    if (xasLoadAppList("/r58/sysapp.xml", apps) != 0)
        throw std::runtime_error{"the application list cannot be loaded"};
    const XasMessage msg = xasSecondSessionOf(faultsCase).front().message;
    const XasSetting *setting = xasFindSetting(msg.xH.msgtype);
    const XasApp *app = setting != nullptr ? xasFindApp(xasApplicationName(*setting, msg), apps) : nullptr;
    std::map<std::string, std::string> types;
    for (const XasCfgFileEntry &entry : app != nullptr ? app->cfgFiles : XasCfgFileList{})
        types[*entry.path] = *entry.type;
    return types;
}

const XasExpectedSetting *expectedOf(std::uint32_t msgtype)
{
    const auto &all = xasExpectedSettings();
    const auto found = std::ranges::find(all, msgtype, &XasExpectedSetting::msgtype);
    return found != all.end() ? &*found : nullptr;
}

/** A file of the setting coming to its new content. */
struct Commit {
    std::string type;
    std::string path;
    bool isDone; /**< at the call that is looked at */
};

std::vector<Commit> commitsOf(const XasUndisturbed &undisturbed, const XasCut &cut)
{
    const auto types = typesByPath(undisturbed.faultsCase);
    std::vector<Commit> commits;
    bool isBehind = false;
    for (const XasCall &call : undisturbed.run.calls) {
        isBehind = isBehind || (call.process == cut.process && call.index == cut.call);
        const auto type = types.find(call.to);
        if (call.number == SYS_rename && call.result == 0 && type != types.end())
            commits.push_back({type->second, call.to, !isBehind});
    }
    return commits;
}

} // namespace

bool xasChangesInSteps(const std::string &path)
{
    return path == "/etc/.lusers" || path == "/etc/passwd" || path == "/etc/ipsec.conf" ||
           path == "/etc/ipsec.secrets";
}

XasComplaints xasCheckOldOrNew(const XasUndisturbed &undisturbed, const XasFileStates &files,
                               bool mayBeRolledBack, const XasIgnored &ignored)
{
    std::set<std::string> paths;
    for (const XasFileStates *set : {&undisturbed.old, &undisturbed.run.files, &files}) {
        for (const auto &[path, state] : *set)
            paths.insert(path);
    }
    XasComplaints complaints;
    for (const std::string &path : paths) {
        const XasFileState *state = find(files, path);
        const XasFileState *before = find(undisturbed.old, path);
        const XasFileState *after = find(undisturbed.run.files, path);
        if (isOthers(path))
            continue;
        const XasFileState *backup = mayBeRolledBack ? find(undisturbed.old, path + ".old") : nullptr;
        const bool isKnown =
            hasText(state, before) || hasText(state, after) ||
            (backup != nullptr && hasText(state, backup)) ||
            (undisturbed.between.contains(path) && hasText(state, find(undisturbed.between, path))) ||
            (xasChangesInSteps(path) && isInBetween(state, before, after));
        if (ignored && ignored(path))
            continue;
        if (xasIsLive(path) && !isKnown)
            complaints.push_back(path + " is neither old nor new: " + shown(state));
        if (state != nullptr && (state->mode & OTHERS & ~mayBeOpen(undisturbed, path)) != 0)
            complaints.push_back(path + " is too open: " + shown(state));
    }
    return complaints;
}

XasComplaints xasCheckLive(const XasFileStates &files, std::initializer_list<const XasFileStates *> sets,
                           const XasIgnored &ignored)
{
    std::set<std::string> paths;
    for (const auto &[path, state] : files)
        paths.insert(path);
    for (const XasFileStates *set : sets) {
        for (const auto &[path, state] : *set)
            paths.insert(path);
    }
    XasComplaints complaints;
    for (const std::string &path : paths) {
        const XasFileState *state = find(files, path);
        const auto isSame = [&](const XasFileStates *set) {
            const XasFileState *other = find(*set, path);
            return hasText(state, other) && (state == nullptr || state->mode == other->mode);
        };
        const bool isIgnored = !xasIsLive(path) || isOthers(path) || (ignored && ignored(path));
        if (!isIgnored && std::ranges::none_of(sets, isSame))
            complaints.push_back(path + " is not as without: " + shown(state));
    }
    return complaints;
}

XasComplaints xasCheckRolledBack(const XasUndisturbed &undisturbed, const XasFileStates &files,
                                 const XasCut &cut)
{
    const std::uint32_t msgtype = xasSecondSessionOf(undisturbed.faultsCase).front().message.xH.msgtype;
    const XasExpectedSetting *setting = expectedOf(msgtype);
    const std::vector<Commit> commits = commitsOf(undisturbed, cut);
    const auto failed = std::ranges::find(commits, false, &Commit::isDone);
    if (setting == nullptr || failed == commits.end())
        return {};
    const std::vector<std::string> &restored = setting->file(failed->type).restoredIfEditFails;
    XasComplaints complaints;
    for (const Commit &commit : commits) {
        const bool isOld = !commit.isDone || std::ranges::find(restored, commit.type) != restored.end();
        const XasFileStates &due = isOld ? undisturbed.old : undisturbed.run.files;
        const bool isMaybe = !commit.isDone && (setting->goesOn || commit.type == failed->type ||
                                                setting->file(failed->type).goesOn);
        if (!isMaybe && !hasText(find(files, commit.path), find(due, commit.path)))
            complaints.push_back(commit.path + (isOld ? " was not rolled back" : " was rolled back"));
    }
    return complaints;
}

XasComplaints xasCheckSynced(const XasRun &run)
{
    std::set<std::string> dirtyFiles;
    std::set<std::string> dirtyDirectories;
    XasComplaints complaints;
    for (const XasCall &call : run.calls) {
        if (call.process != 0 || call.result < 0)
            continue;
        if (call.number == SYS_write)
            dirtyFiles.insert(call.path);
        if (call.number == SYS_fsync) {
            dirtyFiles.erase(call.path);
            dirtyDirectories.erase(call.path);
        }
        if (call.number == SYS_rename && dirtyFiles.contains(call.path))
            complaints.push_back(call.path + " is renamed before it is synced");
        if (call.number == SYS_rename)
            dirtyDirectories.insert(call.to.substr(0, call.to.rfind('/')));
    }
    for (const std::string &directory : dirtyDirectories)
        complaints.push_back(directory + " is not synced at the acknowledgement");
    return complaints;
}

XasComplaints xasCheckSecrets(const XasUndisturbed &undisturbed)
{
    const XasSession session = xasSecondSessionOf(undisturbed.faultsCase);
    const XasExpectedSetting *setting = expectedOf(session.front().message.xH.msgtype);
    std::set<std::string> secretTypes;
    for (const XasExpectedFile &file : setting != nullptr ? setting->files : std::vector<XasExpectedFile>{}) {
        if (file.secret)
            secretTypes.insert(file.type);
    }
    XasComplaints complaints;
    for (const auto &[path, type] : typesByPath(undisturbed.faultsCase)) {
        const XasFileState *after = find(undisturbed.run.files, path);
        const bool isReplaced = !hasText(find(undisturbed.old, path), after);
        if (secretTypes.contains(type) && isReplaced && after != nullptr && (after->mode & OTHERS) != 0)
            complaints.push_back(path + " holds a secret and is open to others: " + shown(after));
    }
    return complaints;
}
