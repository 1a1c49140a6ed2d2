#include "faults/machine.h"

#include "support/files.h"
#include "support/log_socket.h"
#include "support/root.h"

#include <fstream>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace fs = std::filesystem;

namespace {

constexpr const char *CALLS = "/calls";
constexpr const char *LOG = "/dev/log";

/** Where the machine's files are. */
constexpr std::array TOPS = {"/etc", "/r58", "/www", "/tmp", "/var", "/usr/etc"};

/** What the private root itself needs there. */
bool isRootsOwn(const std::string &path)
{
    return path.starts_with("/etc/alternatives");
}

bool isSecret(const std::string &path)
{
    constexpr std::array SECRETS = {"/etc/ipsec.secrets",  "/etc/shadow",       "/etc/ldap.conf",
                                    "/etc/raddb/server",   "/etc/tacplus.conf", "/etc/snmp/snmpd.conf",
                                    "/etc/samba/smbpasswd"};
    return std::ranges::find(SECRETS, path) != SECRETS.end();
}

std::optional<XasFileState> stateOf(const std::string &path)
{
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0)
        return std::nullopt;
    if (S_ISLNK(status.st_mode))
        return XasFileState{fs::read_symlink(path), status.st_mode};
    if (!S_ISREG(status.st_mode))
        return std::nullopt;
    std::ostringstream text;
    text << std::ifstream{path}.rdbuf();
    return XasFileState{text.str(), status.st_mode};
}

void addFilesBelow(const std::string &top, const std::string &prefix, XasFileStates &files)
{
    for (const auto &entry :
         fs::recursive_directory_iterator{top, fs::directory_options::skip_permission_denied}) {
        const std::string path = entry.path().string().substr(prefix.size());
        if (isRootsOwn(path))
            continue;
        if (const auto state = stateOf(entry.path()))
            files[path] = *state;
    }
}

void standIn(const std::string &path)
{
    fs::create_directories(fs::path{path}.parent_path());
    fs::remove(path);
    fs::create_symlink(XAS_STANDIN_PATH, path);
}

std::string firstLine(const std::string &path)
{
    std::ifstream file{path};
    std::string line;
    std::getline(file, line);
    return line;
}

/** The fields of /proc/PID/stat behind the name: state, parent. */
std::pair<char, pid_t> stateAndParent(const std::string &pid)
{
    const std::string stat = firstLine("/proc/" + pid + "/stat");
    const std::size_t behindName = stat.rfind(") ");
    if (behindName == std::string::npos)
        return {'X', 0};
    std::istringstream fields{stat.substr(behindName + 2)};
    char state = 'X';
    pid_t parent = 0;
    fields >> state >> parent;
    return {state, parent};
}

std::vector<std::string> pids()
{
    std::vector<std::string> found;
    for (const auto &entry : fs::directory_iterator{"/proc"}) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") == std::string::npos)
            found.push_back(name);
    }
    return found;
}

bool isOther(pid_t pid)
{
    return pid != 1 && pid != ::getpid();
}

} // namespace

void xasFurnishMachine()
{
    if (!xasInPrivateRoot())
        throw std::logic_error{"not in a private root"};
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    for (const char *name :
         {"killall", "iptables", "adduser", "deluser", "domainname", "ntpd", "syslogd", "logrotate"}) {
        standIn(std::string{"/usr/bin/"} + name);
        standIn(std::string{"/usr/sbin/"} + name);
    }
    for (const char *path : {"/usr/sbin/ipsec", "/usr/samba/sbin/smbd", "/usr/samba/sbin/nmbd"})
        standIn(path);
    // A script, because it is copied and appended to.
    xasWriteFile("/usr/bin/xas_iptables.sh", "#!/bin/sh\nIPTABLES=/bin/iptables\n$IPTABLES script \"$@\"\n",
                 0755);
    for (const char *directory :
         {"/tmp/.save", "/var/log", "/var/run", "/var/lock", "/www/savelogs", "/etc/zel"})
        fs::create_directories(directory);
}

namespace {

XasFileStates readShippedFiles()
{
    const std::string root = XAS_SHIPPED_ROOT;
    XasFileStates files;
    for (const char *top : {"/etc", "/r58", "/www"})
        addFilesBelow(root + top, root, files);
    for (auto &[path, state] : files) {
        if (path.starts_with("/r58/bin/") || path.starts_with("/r58/sbin/"))
            state = {XAS_STANDIN_PATH, S_IFLNK | 0777};
        else if (isSecret(path))
            state.mode = S_IFREG | 0600;
        else if (S_ISREG(state.mode))
            state.mode = S_IFREG | 0644;
    }
    files["/etc/localtime"] = {"/usr/share/zoneinfo/UTC", S_IFLNK | 0777};
    return files;
}

} // namespace

XasFileStates xasShippedFiles()
{
    static const XasFileStates FILES = readShippedFiles();
    return FILES;
}

XasFileStates xasFilesNow()
{
    XasFileStates files;
    for (const char *top : TOPS) {
        if (fs::is_directory(top))
            addFilesBelow(top, "", files);
    }
    return files;
}

void xasPutFiles(const XasFileStates &files)
{
    fs::remove_all("/var/nfsmounts"); // the one place where the daemon makes directories
    for (const auto &[path, state] : xasFilesNow()) {
        const auto wanted = files.find(path);
        if (wanted == files.end() || wanted->second != state)
            fs::remove(path);
    }
    for (const auto &[path, state] : files) {
        if (stateOf(path) == state)
            continue;
        if (S_ISLNK(state.mode)) {
            fs::create_directories(fs::path{path}.parent_path());
            fs::create_symlink(state.text, path);
        } else {
            xasWriteFile(path, state.text, state.mode & 07777);
        }
    }
}

void xasAddFile(XasFileStates &files, const std::string &path, std::string text, mode_t mode)
{
    files[path] = {std::move(text), S_IFREG | mode};
}

std::string xasLivePathOf(const std::string &path)
{
    std::string live = path;
    for (const std::string_view ending : {".tmp", ".old", ".empty", "_tmp"}) {
        if (live.ends_with(ending))
            live.resize(live.size() - ending.size());
    }
    return live;
}

bool xasIsLive(const std::string &path)
{
    return xasLivePathOf(path) == path;
}

std::vector<std::string> xasTakeCalls()
{
    std::ifstream file{CALLS};
    std::vector<std::string> calls;
    for (std::string line; std::getline(file, line);)
        calls.push_back(line);
    ::unlink(CALLS);
    return calls;
}

std::vector<XasProcess> xasOtherProcesses()
{
    std::vector<XasProcess> found;
    for (const std::string &pid : pids()) {
        if (!isOther(std::stoi(pid)))
            continue;
        const char state = stateAndParent(pid).first;
        if (state == 'Z' || state == 'X')
            continue;
        std::string command = firstLine("/proc/" + pid + "/cmdline");
        while (command.ends_with('\0'))
            command.pop_back();
        std::ranges::replace(command, '\0', ' ');
        found.push_back({std::stoi(pid), state, command});
    }
    return found;
}

bool xasHasUncollectedChild(pid_t parent)
{
    return std::ranges::any_of(pids(), [&](const std::string &pid) {
        return stateAndParent(pid) == std::pair{'Z', parent};
    });
}

bool xasAwaitQuiet(pid_t pid)
{
    const auto isQuiet = [&] {
        return std::ranges::all_of(pids(), [&](const std::string &other) {
            if (std::stoi(other) == pid || !isOther(std::stoi(other)))
                return true;
            const char state = stateAndParent(other).first;
            return state == 'S' || state == 'Z' || state == 'X';
        });
    };
    const auto end = std::chrono::steady_clock::now() + 5s;
    while (!isQuiet() || !isQuiet()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        ::usleep(100);
    }
    return true;
}

void xasEndProcesses()
{
    if (!xasInPrivateRoot())
        throw std::logic_error{"not in a private root"};
    for (std::vector<XasProcess> others = xasOtherProcesses(); !others.empty();
         others = xasOtherProcesses()) {
        for (const XasProcess &other : others)
            ::kill(other.pid, SIGKILL);
        ::waitpid(-1, nullptr, __WALL);
    }
    while (::waitpid(-1, nullptr, __WALL | WNOHANG) > 0) {
    }
}

XasFaultsLog::XasFaultsLog() : fd{::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)}
{
    ::unlink(LOG);
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    std::strncpy(address.sun_path, LOG, sizeof address.sun_path - 1);
    if (::bind(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        throw std::runtime_error{"cannot bind /dev/log"};
}

XasFaultsLog::~XasFaultsLog()
{
    ::close(fd);
}

void XasFaultsLog::drain()
{
    std::array<char, 8192> datagram{};
    for (ssize_t size = 0; (size = ::recv(fd, datagram.data(), datagram.size(), 0)) > 0;)
        lines.push_back(
            withPrograms(xasParseLogDatagram({datagram.data(), static_cast<std::size_t>(size)}).line.text));
}

std::string XasFaultsLog::withPrograms(std::string text)
{
    constexpr std::string_view DIGITS = "0123456789";
    for (const std::string_view word : {"to process ", "kill process: ", "to stop pid ", "() pid "}) {
        const std::size_t at = text.find(word);
        if (at != std::string::npos)
            text.replace(at + word.size(),
                         text.find_first_not_of(DIGITS, at + word.size()) - at - word.size(), "N");
    }
    const std::size_t bracket = text.find('[');
    const std::size_t end = text.find_first_not_of(DIGITS, bracket + 1);
    if (bracket == std::string::npos || end == std::string::npos || text[end] != ']')
        return text;
    const std::string pid = text.substr(bracket + 1, end - bracket - 1);
    const std::size_t started = text.find(" started", end);
    if (started != std::string::npos)
        programs[pid] = text.substr(end + 2, started - end - 2);
    return text.replace(bracket + 1, pid.size(), programs.contains(pid) ? programs[pid] : "N");
}

std::vector<std::string> XasFaultsLog::take()
{
    drain();
    return std::exchange(lines, {});
}
