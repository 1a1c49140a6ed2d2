#include "world/machine.h"

#include "core/daemon.h"
#include "core/link_watch.h"
#include "core/log_maintenance.h"
#include "core/msgqueue.h"
#include "core/startup.h"
#include "core/sysapp_parser.h"
#include "core/wait.h"
#include "dispatch/ipfilter_timer.h"
#include "dispatch/process_msg.h"
#include "dispatch/setting_steps.h"
#include "dispatch/settings.h"
#include "support/fuzz.h"
#include "wire/reply_message.h"
#include "world/commands.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <sstream>
#include <sys/stat.h>
#include <sys/time.h>
#include <tuple>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

XasMachine *only = nullptr;

/** Where the daemon writes. */
constexpr std::array WRITTEN = {"/etc", "/tmp", "/www", "/var/nfsmounts", "/r58/store", "/usr/etc"};

std::size_t openDescriptors()
{
    std::size_t count = 0;
    for ([[maybe_unused]] const auto &entry : fs::directory_iterator{"/proc/self/fd"})
        ++count;
    return count;
}

/** What is there in the beginning, and when each was changed then. */
struct Initial {
    std::string content;
    mode_t mode;
    bool isLink;
    ino_t inode;
    timespec changed;
};
std::map<std::string, Initial> initial;

std::string contentOf(const std::string &path)
{
    static std::array<char, 65536> buffer;
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    std::string content;
    for (ssize_t got = 0; fd >= 0 && (got = ::read(fd, buffer.data(), buffer.size())) > 0;)
        content.append(buffer.data(), static_cast<std::size_t>(got));
    ::close(fd);
    return content;
}

/** Calls `use` with the path and status of everything below the written directories. */
template <class Use>
void forEachFile(const Use &use)
{
    for (const char *directory : WRITTEN) {
        std::error_code error;
        for (fs::recursive_directory_iterator at{directory, error}, end; !error && at != end;
             at.increment(error)) {
            struct stat status {};
            if (at->path() == "/etc/alternatives") // the host's
                at.disable_recursion_pending();
            else if (::lstat(at->path().c_str(), &status) == 0)
                use(at->path().string(), status);
        }
    }
}

bool isUnchanged(const Initial &file, const struct stat &status)
{
    return file.inode == status.st_ino && file.changed.tv_sec == status.st_ctim.tv_sec &&
           file.changed.tv_nsec == status.st_ctim.tv_nsec;
}

void noteInitial(const std::string &path, const struct stat &status)
{
    const bool isLink = S_ISLNK(status.st_mode);
    initial[path] = {isLink ? fs::read_symlink(path).string() : contentOf(path), status.st_mode, isLink,
                     status.st_ino, status.st_ctim};
}

void putBack(const std::string &path, Initial &file)
{
    std::error_code ignored;
    fs::remove_all(path, ignored);
    if (file.isLink)
        fs::create_symlink(file.content, path);
    else
        XasMachine::write(path, file.content);
    struct stat status {};
    if (!file.isLink)
        ::chmod(path.c_str(), file.mode & 07777);
    ::lstat(path.c_str(), &status);
    file.inode = status.st_ino;
    file.changed = status.st_ctim;
}

void restoreFiles()
{
    std::set<std::string> seen;
    std::vector<std::string> extra;
    std::vector<std::string> changed;
    forEachFile([&](const std::string &path, const struct stat &status) {
        if (S_ISDIR(status.st_mode) && (initial.contains(path + "/") || path == "/tmp/.save"))
            return;
        const auto found = initial.find(path);
        if (found == initial.end())
            return extra.push_back(path);
        seen.insert(path);
        if (!isUnchanged(found->second, status))
            changed.push_back(path);
    });
    std::error_code ignored;
    for (const std::string &path : extra)
        fs::remove_all(path, ignored);
    for (auto &[path, file] : initial) {
        if (!path.ends_with('/') &&
            (!seen.contains(path) || std::ranges::find(changed, path) != changed.end()))
            putBack(path, file);
    }
}

std::chrono::nanoseconds monotonic()
{
    return only->now;
}

int wallTime(timeval *now)
{
    const auto time = std::chrono::duration_cast<std::chrono::microseconds>(only->now + 1000s);
    *now = {.tv_sec = time.count() / 1000000, .tv_usec = time.count() % 1000000};
    return 0;
}

bool isReadable(int fd)
{
    pollfd wake{.fd = fd, .events = POLLIN, .revents = 0};
    return ::poll(&wake, 1, 0) > 0;
}

void block(int fd, std::chrono::nanoseconds atMost)
{
    const bool isEndless = atMost < 0ns;
    const auto end = only->now + atMost;
    while (!isReadable(fd) && !only->events.empty() && (isEndless || only->events.begin()->first <= end)) {
        const auto event = only->events.extract(only->events.begin());
        only->now = std::max(only->now, event.key());
        event.mapped()();
    }
    if (isReadable(fd))
        return;
    xasFuzzRequire(!isEndless, "nobody waits for ever");
    only->now = end;
}

} // namespace

XasMachine *xasMachine()
{
    return only;
}

XasMachine &xasTheMachine()
{
    static XasMachine machine;
    return machine;
}

XasMachine::XasMachine()
{
    only = this;
    for (const auto &entry : fs::directory_iterator{XAS_FUZZ_ROOT}) {
        if (entry.path().filename() != "usr") // it is the host's, and the daemon changes nothing there
            fs::copy(entry.path(), "/" / entry.path().filename(),
                     fs::copy_options::recursive | fs::copy_options::overwrite_existing |
                         fs::copy_options::copy_symlinks);
    }
    for (const char *secret : {"/etc/ipsec.secrets", "/etc/samba/smbpasswd", "/etc/raddb/server",
                               "/etc/ldap.conf", "/etc/tacplus.conf", "/etc/snmp/snmpd.conf"})
        fs::permissions(secret, fs::perms{0600}); // as the appliance has them
    for (const char *directory : {"/tmp/.save", "/var/nfsmounts", "/r58/store", "/etc/zel", "/usr/etc"})
        fs::create_directories(directory);
    xasFuzzRequire(xasLoadAppList("/r58/sysapp.xml", initialApps) == 0, "the appliance's list is taken");
    for (const XasApp &app : initialApps) { // its programs are there, whatever they are
        for (const XasDaemon &daemon : app.daemons) {
            const std::string program = daemon.exe.substr(0, daemon.exe.find(' '));
            std::error_code ignored;
            fs::remove(program, ignored);
            write(program, "#!/bin/sh\n");
            fs::permissions(program, fs::perms{0755});
        }
    }
    forEachFile([](const std::string &path, const struct stat &status) {
        if (S_ISDIR(status.st_mode))
            initial[path + "/"] = {};
        else
            noteInitial(path, status);
    });
    xasFakeProcesses([this](pid_t pid, const auto &words) { return execute(pid, words); });
    xasSetClock({.monotonic = monotonic, .wallTime = wallTime, .block = block});
    std::ignore = xasInstallSignals({.terminate = [] { xasFuzzFail("nobody ends the daemon"); },
                                     .alarm = [this] { xasMaintainLogs(apps); },
                                     .childExited =
                                         [this](pid_t pid, int status) {
                                             xasReapChild(apps, pid, status);
                                         }});
    xasFuzzRequire(xasInitMsgQueues() == 0, "the queues are there");
    xasFuzzRequire(xasOpenLinkSocket() == 0, "the link socket is there");
}

void XasMachine::reset()
{
    for (const pid_t pid : xasLivingProcesses())
        xasEndProcess(pid, 0);
    for (XasApp &app : apps) { // nobody is started again
        for (XasDaemon &daemon : app.daemons)
            daemon = {};
    }
    events.clear();
    xasWait(0ms);
    apps = initialApps;
    ran.clear();
    exits.clear();
    accounts.clear();
    toDaemon.clear();
    fromDaemon.clear();
    fullFor = 0;
    queuesThere = true;
    links[0] = links[1] = false;
    listing.clear();
    restoreFiles();
    descriptors = openDescriptors();
    xasFuzzLog().clear();
}

XasFiles XasMachine::files()
{
    XasFiles found;
    forEachFile([&](const std::string &path, const struct stat &status) {
        if (S_ISREG(status.st_mode) && !path.starts_with("/tmp/"))
            found[path] = contentOf(path);
        else if (S_ISLNK(status.st_mode))
            found[path] = "-> " + fs::read_symlink(path).string();
    });
    return found;
}

void XasMachine::write(const std::string &path, std::string_view text)
{
    fs::create_directories(fs::path{path}.parent_path());
    std::ofstream{path, std::ios::binary | std::ios::trunc} << text;
}

std::string XasMachine::process(const XasMessage &msg, std::string_view users)
{
    toDaemon.emplace_back(reinterpret_cast<const char *>(&msg), sizeof msg);
    if (!users.empty())
        toDaemon.emplace_back(users);
    fromDaemon.clear();
    // Queues that were lost are looked for once a second; a message that still waits then is never taken.
    const auto end = now + 10s;
    std::ignore = xasProcessMsg(apps, [&](XasMessage &) {
        return !toDaemon.empty() && now < end ? XasIdleResult::nothing : XasIdleResult::failed;
    });
    toDaemon.clear();
    const XasSetting *setting = xasFindSetting(msg.xH.msgtype);
    const auto count = xasPayloadValue<std::uint16_t, XAS_USER_COUNT_OFFSET>(msg);
    const bool isWhole =
        msg.xH.msgtype != XMSG_LOCALUSERS || count == 0 || users.size() == 120 + std::size_t{count} * 224;
    const bool isAnswered = isWhole && (setting == nullptr || setting->answered);
    std::string outcome;
    std::size_t answers = 0;
    for (const std::string &entry : fromDaemon) {
        XasMessage answer{};
        xasFuzzRequire(entry.size() == sizeof answer, "a record has its size");
        std::memcpy(&answer, entry.data(), sizeof answer);
        if (answer.xH.msgtype != XMSG_ACKNAK)
            continue;
        ++answers;
        xasFuzzRequire(answer.xH.orig_id == msg.xH.id, "the message is answered");
        const auto reply = xasReadPayload<XasReplyPayload>(answer);
        outcome = std::to_string(reply.success) + " " + std::to_string(reply.rcode) + " " +
                  xasFieldString(reply.rstr);
    }
    xasFuzzRequire(answers == (isAnswered ? 1 : 0), "one answer to a message that is answered", xasFuzzLog());
    return outcome;
}

void XasMachine::idle(std::chrono::milliseconds time)
{
    const auto end = now + time;
    const XasIdleWork work = [&](XasMessage &msg) {
        const XasIdleResult result = xasPollLinks(msg, xasIsBondingOn());
        if (result == XasIdleResult::message)
            return result;
        std::ignore = xasIPFilterTimerTick();
        return now < end ? XasIdleResult::nothing : XasIdleResult::failed;
    };
    while (now < end)
        std::ignore = xasProcessMsg(apps, work);
}

std::string XasMachine::story() const
{
    std::string told = xasFuzzLog();
    for (const std::string &line : ran)
        told += "ran " + line + "\n";
    return told;
}

void XasMachine::requireOrder()
{
    xasWait(0ms);
    std::multiset<pid_t> known;
    for (const XasApp &app : apps) {
        for (const XasDaemon &daemon : app.daemons) {
            xasFuzzRequire(daemon.running == 0 || xasIsLiving(daemon.pid), "a running daemon lives",
                           daemon.exe);
            xasFuzzRequire(daemon.restarts >= 0 && daemon.restarts <= 10, "a daemon is restarted ten times",
                           daemon.exe);
            if (daemon.pid > 0)
                known.insert(daemon.pid);
        }
    }
    for (const pid_t pid : xasLivingProcesses())
        xasFuzzRequire(known.count(pid) == 1, "a living process is one daemon's", std::to_string(pid),
                       xasFuzzLog());
    xasFuzzRequire(xasZombies() == 0, "every exit is collected");
    const std::size_t open = openDescriptors();
    xasFuzzRequire(open == descriptors, "no descriptor stays open", std::to_string(descriptors),
                   std::to_string(open));
}

void XasMachine::at(std::chrono::nanoseconds time, std::function<void()> event)
{
    events.emplace(time, std::move(event));
}

/** An application is started again without having been stopped in two cases: the NIS client by the order of
 * the login methods, and one whose last start or stop failed half way. The new process takes the place of the
 * old one. */
XasFate XasMachine::replaceEarlier(const std::string &application, const std::string &program)
{
    const XasApp *app = xasFindApp(application, apps);
    for (const XasDaemon &daemon : app->daemons) {
        if (!daemon.exe.starts_with(program) || !xasIsLiving(daemon.pid))
            continue;
        xasFuzzRequire(application == "ypbind" || app->running == 0, "no daemon is started twice", program,
                       story());
        ++startedTwice;
        xasEndProcess(daemon.pid, SIGTERM);
    }
    return std::nullopt;
}

XasFate XasMachine::execute(pid_t pid, const std::vector<std::string> &words)
{
    ++executed;
    xasFuzzRequire(!words.empty(), "a program has a name");
    int status = 0;
    if (!exits.empty()) {
        status = exits.front();
        exits.pop_front();
    }
    if (words.size() == 3 && words[0] == "sh" && words[1] == "-c") {
        ran.push_back(words[2]);
        xasRunKnownCommand(*this, words[2]);
        return status;
    }
    std::string line;
    for (const std::string &word : words)
        line += (line.empty() ? "" : " ") + word;
    ran.push_back(std::to_string(pid) + " " + line);
    if (words[0] == "domainname")
        return 0;
    for (const XasApp &app : initialApps) {
        for (const XasDaemon &daemon : app.daemons) {
            if (daemon.exe.substr(0, daemon.exe.find(' ')) == words[0])
                return replaceEarlier(app.name.value_or(""), words[0]); // it lives
        }
        for (const auto &script : {app.startScript, app.stopScript}) {
            if (script && script->substr(0, script->find(' ')) == words[0])
                return status;
        }
    }
    xasFuzzFail("a program is one of the list", line);
}
