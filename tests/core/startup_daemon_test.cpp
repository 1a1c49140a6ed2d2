// The steps of the built daemon's start.
#include "support/daemon.h"

#include <fstream>
#include <sys/msg.h>

namespace fs = std::filesystem;

namespace {

const std::string NO_QUEUE_TO_XMS = "auth/err-Error getting MSGQ_APP_TO_XMS message queue\n";
const std::string NO_QUEUE_FROM_XMS = "sw/err-Error getting MSGQ_APP_FROM_XMS message queue\n";

/** Runs the daemon under strace, which lets one of its calls fail. Returns the exit status. */
int runWithFailingCall(const std::string &arguments, const std::string &failure, const std::string &errors)
{
    // The leak check cannot work in a traced process.
    const int status =
        std::system(("ASAN_OPTIONS=detect_leaks=0 strace -f -qq -o /dev/null -e inject=" + failure + " " +
                     xasDaemonPath() + " " + arguments + " 2>" + errors)
                        .c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/** A field of /proc/<pid>/status. */
std::string statusField(pid_t pid, const std::string &name)
{
    std::ifstream file{"/proc/" + std::to_string(pid) + "/status"};
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(name + ":\t"))
            return line.substr(name.size() + 2);
    }
    return "(none)";
}

/** The process that last sent on a queue. */
pid_t lastSender(int queue)
{
    msqid_ds status{};
    ::msgctl(queue, IPC_STAT, &status);
    return status.msg_lspid;
}

} // namespace

TEST(DaemonStartup, FailsWhenItCannotFork)
{
    const XasTestDir dir;
    EXPECT_EQ(runWithFailingCall("-c " + dir.write("list", "<A/>"), "clone,clone3,fork,vfork:error=EAGAIN",
                                 dir.path("errors")),
              1);
    EXPECT_THAT(dir.read("errors"), EndsWith("fork error: Resource temporarily unavailable\n"));
}

TEST(DaemonStartup, FailsWhenThereIsNoLinkSocket)
{
    XasTestDaemon daemon; // its queues and its log only
    const XasTestDir dir;
    // The first socket is the log's.
    EXPECT_EQ(runWithFailingCall("-f -c " + dir.write("list", "<A/>"), "socket:error=EMFILE:when=2",
                                 dir.path("errors")),
              255);
    EXPECT_TRUE(daemon.log.await("sw/err-error creating socket for link state: Too many open files\n"));
}

TEST(DaemonStartup, ResetsThePacketFilterBeforeItMakesDirectoriesAndLooksForItsQueues)
{
    XasTestDaemon daemon;
    daemon.queues.reset();
    daemon.stubs.put("/usr/bin/xas_iptables.sh", 0, "sleep 0.2; test -d /etc/zel || touch /etc/no-zel-yet");
    daemon.start({});
    EXPECT_TRUE(daemon.log.await(NO_QUEUE_TO_XMS));
    EXPECT_TRUE(xasExists("/etc/no-zel-yet"));
    EXPECT_TRUE(fs::is_directory("/etc/zel"));
    EXPECT_THAT(daemon.stubs.lines(), ElementsAre("/usr/bin/xas_iptables.sh resetAll"));
    const auto lines = daemon.log.arrived();
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[0].line.text, "sw/info-Initializing application server\n");
    EXPECT_GT(lines[1].arrived - lines[0].arrived, 200ms);
}

TEST(DaemonStartup, LooksForItsQueuesEverySecondUntilBothAreThere)
{
    XasTestDaemon daemon;
    daemon.queues.reset();
    daemon.start({});
    ASSERT_TRUE(daemon.log.awaitCount(NO_QUEUE_TO_XMS, 2, 5s));
    const int first = ::msgget(1005, IPC_CREAT | 0600);
    ASSERT_TRUE(daemon.log.await(NO_QUEUE_FROM_XMS));
    ::msgctl(first, IPC_RMID, nullptr);
    daemon.queues.emplace();
    EXPECT_EQ(daemon.ask(XasMessageBuilder{XMSG_SSH}.id(5)).xH.id, 10U);
    const auto lines = daemon.log.arrived();
    ASSERT_GE(lines.size(), 4U);
    for (std::size_t i = 2; i < lines.size(); ++i) {
        EXPECT_GT(lines[i].arrived - lines[i - 1].arrived, 950ms);
        EXPECT_LT(lines[i].arrived - lines[i - 1].arrived, 1500ms);
    }
}

TEST(DaemonStartup, StaysInTheForegroundByTheLongOptionDaemonToo)
{
    XasTestDaemon parts; // its queues, commands and log only
    xasWriteFile("/r58/sysapp.xml", "<A/>");
    const pid_t pid = xasStartDaemonProgram({"--daemon"}, "/dev/null", "/dev/null");
    parts.ask(XasMessageBuilder{XMSG_SSH});
    EXPECT_EQ(lastSender(parts.queues->toXms), pid) << "no other process took over";
    ::kill(pid, SIGTERM);
    ::waitpid(pid, nullptr, 0);
}

TEST(DaemonStartup, DetachesIntoASessionOfItsOwnInTheRootDirectoryWithUmask0)
{
    XasTestDaemon parts; // its queues, commands and log only
    ::umask(077);
    xasWriteFile("/r58/sysapp.xml", xasSysappText({{.name = "xdd"}}));
    const XasRunResult result = xasRunDaemonProgram({});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(parts.outcome(XasMessageBuilder{XMSG_APPLICATION}), XAS_APPLIED)
        << "it knows the application of the default list";
    const pid_t pid = lastSender(parts.queues->toXms);
    EXPECT_EQ(::getsid(pid), pid);
    EXPECT_EQ(::getpgid(pid), pid);
    EXPECT_EQ(fs::read_symlink("/proc/" + std::to_string(pid) + "/cwd"), "/");
    EXPECT_EQ(statusField(pid, "Umask"), "0000");
    EXPECT_EQ(xasModeOf("/etc/zel"), 0777U);
    for (const char *stream : {"0", "1", "2"})
        EXPECT_TRUE(xasExists("/proc/" + std::to_string(pid) + "/fd/" + stream));
    EXPECT_EQ(::kill(pid, SIGTERM), 0);
    EXPECT_TRUE(xasEventually([&] { return ::kill(pid, 0) != 0; }));
}
