// The daemons of applications in the built daemon's care.
#include "support/daemon.h"

#include <csignal>
#include <filesystem>
using std::chrono::steady_clock;

namespace {

XasMessage switchXdd(std::uint32_t on)
{
    return XasMessageBuilder{XMSG_APPLICATION}.set("start", on);
}

class DaemonSupervision : public testing::Test {
  protected:
    /** The daemon with one application whose daemons are `exes`, which has been started. */
    void startWith(const std::vector<std::string> &exes, const std::string &name = "xdd")
    {
        daemon.start({{.name = name, .exes = exes}});
        daemon.ask(XasMessageBuilder{XMSG_SSH});
        daemon.stubs.forget();
        daemon.log.clear();
    }

    /** The process id in log line number `index`, "[pid]" in it. */
    pid_t loggedPid(std::size_t index)
    {
        EXPECT_TRUE(xasEventually([&] { return daemon.log.size() > index; }));
        const auto lines = daemon.log.lines();
        const std::string text = lines.size() > index ? lines[index].text : "[0]";
        return std::stoi(text.substr(text.find('[') + 1));
    }

    /** The log once it has `count` lines. */
    std::vector<XasLogLine> logLines(std::size_t count)
    {
        EXPECT_TRUE(xasEventually([&] { return daemon.log.size() >= count; }));
        return daemon.log.lines();
    }

    std::string endless(std::string_view name) { return daemon.stubs.make(name, 0, "exec sleep 1000"); }

    /** A server of this name starts, leaves its pid file and ends its first process; it is then stopped. */
    void followIntoBackground(const std::string &name)
    {
        const std::string program = daemon.stubs.path("samba/" + name);
        const std::string pidFile = "/var/run/" + name + ".pid";
        std::filesystem::create_directories(daemon.stubs.path("background"));
        std::filesystem::create_symlink("/bin/sleep", daemon.stubs.path("background/" + name));
        xasWriteFile(program,
                     "#!/bin/sh\nsetsid " + daemon.stubs.path("background/" + name) + " 1000 &\necho $! >" +
                         pidFile + "\nsleep 0.3\n",
                     0755);
        startWith({program + " -D"});
        EXPECT_EQ(daemon.outcome(switchXdd(1)), XAS_APPLIED);
        ASSERT_TRUE(daemon.log.await("WIFEXITED"));
        const pid_t adopted = std::stoi(xasReadFile(pidFile));
        xasPause(250ms);
        EXPECT_EQ(::kill(adopted, 0), 0);
        // No lock file says that it still runs: it has been stopped.
        EXPECT_EQ(daemon.outcome(switchXdd(0)), XAS_APPLIED);
        EXPECT_TRUE(xasEventually([&] { return ::kill(adopted, 0) != 0; }));
        EXPECT_EQ(daemon.log.lines().size(), 2U) << "started, ended; no restart and no warning";
    }

    XasTestDaemon daemon;
};

XasLogLine started(pid_t pid, const std::string &program)
{
    return xasInfoLine("[" + std::to_string(pid) + "] " + program + " started\n");
}

XasLogLine ended(pid_t pid, const std::string &how)
{
    return xasInfoLine("PID[" + std::to_string(pid) + "] " + how + " on sig Child exited\n");
}

} // namespace

TEST_F(DaemonSupervision, RestartsADaemonASecondAfterItWasKilled)
{
    const std::string program = endless("program");
    startWith({program + " -d"});
    EXPECT_EQ(daemon.outcome(switchXdd(1)), XAS_APPLIED);
    const pid_t first = loggedPid(0);
    ASSERT_EQ(::kill(first, SIGKILL), 0);
    const auto died = steady_clock::now();
    ASSERT_TRUE(daemon.stubs.await(2));
    EXPECT_GT(steady_clock::now() - died, 950ms);
    EXPECT_LT(steady_clock::now() - died, 1400ms);
    const pid_t second = loggedPid(2);
    EXPECT_THAT(logLines(3),
                ElementsAre(started(first, program), ended(first, "WIFSIGNALED"), started(second, program)));
    EXPECT_THAT(daemon.stubs.lines(), ElementsAre(program + " -d", program + " -d"));
}

TEST_F(DaemonSupervision, RestartsAProgramThatEndsAtOnceTenTimesAndThenLeavesItDown)
{
    const std::string program = daemon.stubs.make("program", 7);
    startWith({program});
    EXPECT_EQ(daemon.outcome(switchXdd(1)), XAS_APPLIED);
    ASSERT_TRUE(daemon.log.awaitCount("WIFEXITED", 11, 30s));
    xasPause(1300ms);
    EXPECT_EQ(daemon.stubs.calls().size(), 11U);
    const auto lines = daemon.log.lines();
    ASSERT_EQ(lines.size(), 22U);
    for (std::size_t i = 0; i < 22; i += 2) {
        EXPECT_EQ(lines[i], started(loggedPid(i), program));
        EXPECT_EQ(lines[i + 1], ended(loggedPid(i), "WIFEXITED"));
    }
    daemon.log.clear();
    EXPECT_EQ(daemon.outcome(switchXdd(0)), XAS_APPLIED);
    EXPECT_THAT(logLines(1),
                ElementsAre(xasWarningLine("daemon: " + program + " was not running under app: xdd\n")));
}

TEST_F(DaemonSupervision, StopsADaemonBySigterm)
{
    const std::string program = endless("program");
    startWith({program});
    EXPECT_EQ(daemon.outcome(switchXdd(1)), XAS_APPLIED);
    const pid_t pid = loggedPid(0);
    EXPECT_EQ(daemon.outcome(switchXdd(0)), XAS_APPLIED);
    EXPECT_NE(::kill(pid, 0), 0);
    xasPause(1200ms);
    EXPECT_THAT(daemon.log.lines(), ElementsAre(started(pid, program), ended(pid, "WIFSIGNALED")))
        << "no restart";
}

TEST_F(DaemonSupervision, FollowsNmbdIntoTheBackgroundByItsPidFile)
{
    followIntoBackground("nmbd");
}

TEST_F(DaemonSupervision, KeepsQuietAboutTheSystemLoggersStartsAndDeaths)
{
    const std::string program = endless("logger");
    startWith({program}, "syslog");
    daemon.ask(XasMessageBuilder{XMSG_SYSLOG});
    const pid_t pid = daemon.group().back();
    ASSERT_TRUE(daemon.stubs.await(3)) << "two killalls and the logger";
    ASSERT_EQ(::kill(pid, SIGKILL), 0);
    ASSERT_TRUE(daemon.stubs.await(4)) << "it is restarted";
    xasPause(300ms);
    EXPECT_THAT(
        daemon.log.lines(),
        Not(Contains(testing::Field(&XasLogLine::text, AnyOf(HasSubstr("started"), HasSubstr("PID["))))));
    EXPECT_THAT(daemon.stubs.lines(),
                ElementsAre("/bin/killall syslogd", "/bin/killall klogd", program, program));
}

TEST_F(DaemonSupervision, ServesSeveralDeathsAtTheSameMoment)
{
    const std::string one = endless("one");
    const std::string two = endless("two");
    startWith({one, two});
    EXPECT_EQ(daemon.outcome(switchXdd(1)), XAS_APPLIED);
    const pid_t first = loggedPid(0);
    const pid_t second = loggedPid(1);
    ::kill(first, SIGKILL);
    ::kill(second, SIGKILL);
    EXPECT_EQ(daemon.outcome(switchXdd(1)), XAS_APPLIED)
        << "the message waits its turn; both daemons are there again";
    EXPECT_THAT(daemon.log.lines(),
                Contains(testing::Field(&XasLogLine::text, HasSubstr("WIFSIGNALED"))).Times(2 + 2))
        << "and both are stopped and started by the message";
}
