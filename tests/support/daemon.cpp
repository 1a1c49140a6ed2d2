#include "support/daemon.h"

#include "support/emulator.h"

#include <fcntl.h>
#include <fstream>
#include <sys/msg.h>

namespace {

constexpr key_t KEY_TO_XMS = 1005;
constexpr key_t KEY_FROM_XMS = 1006;

/** The largest record a queue holds by default. */
constexpr std::size_t RECORD_MAX = 8192;

struct QueueRecord {
    long mtype;
    std::array<char, RECORD_MAX> bytes;
};

int makeQueue(key_t key)
{
    const int queue = ::msgget(key, IPC_CREAT | IPC_EXCL | 0600);
    if (queue < 0)
        throw std::runtime_error{std::string{"cannot make a queue: "} + std::strerror(errno)};
    return queue;
}

/** The process group of a process, as /proc tells it; 0 when the process is gone or only waits to be
 * collected. */
pid_t liveGroupOf(const std::string &pid)
{
    std::ifstream file{"/proc/" + pid + "/stat"};
    std::string stat;
    std::getline(file, stat);
    const std::size_t behindName = stat.rfind(") ");
    if (behindName == std::string::npos)
        return 0;
    char state = 0;
    pid_t parent = 0;
    pid_t group = 0;
    std::istringstream fields{stat.substr(behindName + 2)};
    fields >> state >> parent >> group;
    return state == 'Z' || state == 'X' ? 0 : group;
}

/** True when the process has a handler of its own for the signal. */
bool catches(pid_t pid, int signal)
{
    std::ifstream file{"/proc/" + std::to_string(pid) + "/status"};
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("SigCgt:"))
            return (std::stoull(line.substr(7), nullptr, 16) >> (signal - 1) & 1U) != 0;
    }
    return false;
}

} // namespace

XasTestQueues::XasTestQueues() : toXms{makeQueue(KEY_TO_XMS)}, fromXms{makeQueue(KEY_FROM_XMS)} {}

XasTestQueues::~XasTestQueues()
{
    ::msgctl(toXms, IPC_RMID, nullptr);
    ::msgctl(fromXms, IPC_RMID, nullptr);
}

void XasTestQueues::send(long mtype, std::string_view bytes) const
{
    std::string record(sizeof mtype, '\0');
    std::memcpy(record.data(), &mtype, sizeof mtype);
    record += bytes;
    const bool sent =
        xasEventually([&] { return ::msgsnd(fromXms, record.data(), bytes.size(), IPC_NOWAIT) == 0; });
    EXPECT_TRUE(sent) << "the daemon does not read its queue: " << std::strerror(errno);
}

void XasTestQueues::send(const XasMessage &msg) const
{
    send(static_cast<long>(std::max(msg.xH.msgtype, 1U)), xasMessageBytes(msg));
}

std::optional<XasMessage> XasTestQueues::receive(std::chrono::milliseconds atMost) const
{
    QueueRecord record{};
    ssize_t size = -1;
    xasEventually(
        [&] {
            size = ::msgrcv(toXms, &record, record.bytes.size(), 0, IPC_NOWAIT);
            return size >= 0;
        },
        atMost);
    if (size < 0)
        return std::nullopt;
    EXPECT_EQ(size, 2488) << "a record of a wrong size";
    XasMessage msg{};
    std::memcpy(&msg, record.bytes.data(), sizeof msg);
    EXPECT_EQ(record.mtype, static_cast<long>(msg.xH.msgtype));
    return msg;
}

std::size_t XasTestQueues::waiting() const
{
    msqid_ds status{};
    ::msgctl(fromXms, IPC_STAT, &status);
    return status.msg_qnum;
}

const char *xasDaemonPath()
{
    return XASD_PATH;
}

pid_t xasStartDaemonProgram(std::vector<std::string> words, const std::string &output,
                            const std::string &errors)
{
    const auto daemon = xasCommandOf(xasDaemonPath());
    words.insert(words.begin(), daemon.begin(), daemon.end());
    std::vector<char *> arguments;
    for (std::string &word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const pid_t pid = ::fork();
    if (pid != 0)
        return pid;
    ::setsid();
    constexpr int FLAGS = O_WRONLY | O_CREAT | O_TRUNC;
    ::dup2(::open(output.c_str(), FLAGS, 0600), STDOUT_FILENO);
    ::dup2(::open(errors.c_str(), FLAGS, 0600), STDERR_FILENO);
    ::execv(arguments.front(), arguments.data());
    ::_exit(126);
}

XasRunResult xasRunDaemonProgram(const std::vector<std::string> &arguments)
{
    const XasTestDir dir;
    const pid_t pid = xasStartDaemonProgram(arguments, dir.path("output"), dir.path("errors"));
    int status = 0;
    ::waitpid(pid, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, dir.read("output"), dir.read("errors")};
}

XasTestDaemon::XasTestDaemon()
{
    queues.emplace();
    for (const char *program :
         {"/usr/bin/xas_iptables.sh", "/bin/iptables", "/usr/sbin/logrotate", "/bin/killall", "/bin/adduser",
          "/bin/deluser", "/bin/domainname", "/usr/sbin/ipsec"})
        stubs.put(program);
}

XasTestDaemon::~XasTestDaemon()
{
    if (process > 0 && !ended) {
        ::kill(-process, SIGKILL);
        ::waitpid(process, nullptr, 0);
    }
    if (testing::Test::HasFailure() && dir.has("errors"))
        std::fputs(errors().c_str(), stderr);
}

void XasTestDaemon::start(const std::vector<XasTestApp> &apps)
{
    startWithList(xasSysappText(apps));
}

void XasTestDaemon::startWithList(const std::string &sysapp)
{
    const std::string list = dir.write("sysapp.xml", sysapp);
    process = xasStartDaemonProgram({"-f", "-c", list}, dir.path("output"), dir.path("errors"));
    ended.reset();
    ASSERT_TRUE(log.await("Initializing application server\n")) << errors();
    // Of a program that an emulator runs the system says nothing about signals; its directories come after
    // them.
    ASSERT_TRUE(xasEventually([this] {
        return catches(process, SIGTERM) && std::filesystem::is_directory("/etc/zel");
    })) << errors();
}

XasMessage XasTestDaemon::ask(const XasMessage &msg, std::chrono::milliseconds atMost)
{
    queues->send(msg);
    const auto answer = queues->receive(atMost);
    if (!answer) {
        ADD_FAILURE() << "no acknowledgement of a message of type " << msg.xH.msgtype;
        return {};
    }
    EXPECT_EQ(answer->xH.msgtype, static_cast<std::uint32_t>(XMSG_ACKNAK));
    EXPECT_EQ(answer->xH.orig_id, msg.xH.id);
    return *answer;
}

void XasTestDaemon::signal(int number) const
{
    ASSERT_EQ(::kill(process, number), 0);
}

bool XasTestDaemon::isAlive()
{
    return process > 0 && !awaitEnd(0ms);
}

std::optional<int> XasTestDaemon::awaitEnd(std::chrono::milliseconds atMost)
{
    int status = 0;
    if (!ended && xasEventually([&] { return ::waitpid(process, &status, WNOHANG) == process; }, atMost))
        ended = status;
    return ended;
}

std::vector<pid_t> XasTestDaemon::group() const
{
    std::vector<pid_t> found;
    for (const auto &entry : std::filesystem::directory_iterator{"/proc"}) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") == std::string::npos && liveGroupOf(name) == process)
            found.push_back(std::stoi(name));
    }
    std::ranges::sort(found);
    return found;
}
