// The daemons of applications in the built daemon's care.
#include "support/daemon.h"
#include "support/settled_log.h"

#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::HasSubstr;

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

    /** A program that SIGTERM does not end. */
    std::string deaf(std::string_view name)
    {
        return daemon.stubs.make(name, 0, "trap '' TERM; while :; do sleep 1000; done");
    }

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
        EXPECT_EQ(xasSettledLines(daemon.log).size(), 2U) << "started, ended; no restart and no warning";
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

TEST_F(DaemonSupervision, LogsARestartThatFails)
{
    const std::string program = daemon.stubs.make("program", 3, "rm $0; sleep 0.3");
    startWith({program});
    EXPECT_EQ(daemon.outcome(switchXdd(1)), XAS_APPLIED);
    const pid_t pid = loggedPid(0);
    EXPECT_THAT(logLines(4), ElementsAre(started(pid, program), ended(pid, "WIFEXITED"),
                                         xasErrorLine(program + " is not a valid executable file\n"),
                                         xasErrorLine("Error restarting app\n")));
}

TEST_F(DaemonSupervision, RestartsAProgramThatEndsAtOnceTenTimesAndThenLeavesItDown)
{
    const std::string program = daemon.stubs.make("program", 7);
    startWith({program});
    EXPECT_EQ(daemon.outcome(switchXdd(1)), XAS_APPLIED);
    ASSERT_TRUE(daemon.log.awaitCount("WIFEXITED", 11, 30s));
    xasPause(1300ms);
    EXPECT_EQ(daemon.stubs.calls().size(), 11U);
    const auto lines = xasSettledLines(daemon.log);
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
    EXPECT_THAT(xasSettledLines(daemon.log), ElementsAre(started(pid, program), ended(pid, "WIFSIGNALED")))
        << "no restart";
}

TEST_F(DaemonSupervision, StopsADaemonThatIgnoresSigtermBySigkill)
{
    const std::string program = deaf("program");
    startWith({program});
    EXPECT_EQ(daemon.outcome(switchXdd(1)), XAS_APPLIED);
    const pid_t pid = loggedPid(0);
    const auto begin = steady_clock::now();
    daemon.queues->send(switchXdd(0));
    ASSERT_TRUE(daemon.log.await("WIFSIGNALED"));
    EXPECT_GT(steady_clock::now() - begin, 95ms);
    EXPECT_LT(steady_clock::now() - begin, 400ms) << "a poll of 100 ms, then 100 ms between the signals";
    const auto answer = daemon.queues->receive(5s);
    ASSERT_TRUE(answer);
    EXPECT_EQ(xasOutcomeIn(*answer), XAS_APPLIED);
    EXPECT_GT(steady_clock::now() - begin, 1100ms);
    EXPECT_LT(steady_clock::now() - begin, 1600ms);
    EXPECT_THAT(logLines(2), ElementsAre(started(pid, program), ended(pid, "WIFSIGNALED")));
}

TEST_F(DaemonSupervision, FollowsNmbdIntoTheBackgroundByItsPidFile)
{
    followIntoBackground("nmbd");
}

TEST_F(DaemonSupervision, FollowsSmbdIntoTheBackgroundByItsOwnPidFile)
{
    xasWriteFile("/var/run/nmbd.pid", "1\n");
    followIntoBackground("smbd");
}

TEST_F(DaemonSupervision, FailsToStopAServerWhoseLockFileStays)
{
    const std::string program = daemon.stubs.path("samba/smbd");
    xasWriteFile(program,
                 "#!/bin/sh\nsetsid sh -c \"trap '' TERM; exec " + daemon.stubs.path("background/smbd") +
                     " 1000\" &\necho $! >/var/run/smbd.pid\nsleep 0.3\n",
                 0755);
    std::filesystem::create_directories(daemon.stubs.path("background"));
    std::filesystem::create_symlink("/bin/sleep", daemon.stubs.path("background/smbd"));
    xasWriteFile("/var/lock/smbd.pid", "1\n");
    startWith({program});
    EXPECT_EQ(daemon.outcome(switchXdd(1)), XAS_APPLIED);
    ASSERT_TRUE(daemon.log.await("WIFEXITED"));
    const std::string adopted = std::to_string(std::stoi(xasReadFile("/var/run/smbd.pid")));
    daemon.log.clear();
    EXPECT_EQ(daemon.outcome(switchXdd(0)), "0 1 Error stopping service");
    EXPECT_THAT(logLines(2), ElementsAre(xasErrorLine("Failed to kill process: " + adopted + "\n"),
                                         xasErrorLine("Error stopping application\n")));
}

TEST_F(DaemonSupervision, RestartsAServerThatLeftNoPidFile)
{
    xasWriteFile("/var/run/smbd.pid", "");
    const std::string program = daemon.stubs.make("smbd", 0, "sleep 0.3");
    startWith({program});
    EXPECT_EQ(daemon.outcome(switchXdd(1)), XAS_APPLIED);
    ASSERT_TRUE(daemon.log.await("WIFEXITED"));
    const auto died = steady_clock::now();
    ASSERT_TRUE(daemon.stubs.await(2));
    EXPECT_GT(steady_clock::now() - died, 1150ms) << "200 ms for the pid file, then a second";
}

TEST_F(DaemonSupervision, LetsTheNtpDaemonStepTheClockWhenThereAreNoStepTickers)
{
    daemon.stubs.put("/bin/ntpd", 0, "exec sleep 1000");
    startWith({"/bin/ntpd -c /etc/ntp.conf"});
    const auto restart = [&] {
        daemon.stubs.forget();
        EXPECT_EQ(daemon.outcome(switchXdd(1)), XAS_APPLIED);
        return daemon.stubs.lines();
    };
    EXPECT_THAT(restart(), ElementsAre("/bin/ntpd -c /etc/ntp.conf -g")) << "no file";
    xasWriteFile("/etc/ntp/step-tickers", "");
    EXPECT_THAT(restart(), ElementsAre("/bin/ntpd -c /etc/ntp.conf -g")) << "an empty file";
    xasWriteFile("/etc/ntp/step-tickers", "\n");
    EXPECT_THAT(restart(), ElementsAre("/bin/ntpd -c /etc/ntp.conf")) << "a file with something in it";
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
    EXPECT_THAT(xasSettledLines(daemon.log),
                testing::Not(testing::Contains(testing::Field(
                    &XasLogLine::text, testing::AnyOf(HasSubstr("started"), HasSubstr("PID["))))));
    EXPECT_THAT(daemon.stubs.lines(),
                ElementsAre("/bin/killall syslogd", "/bin/killall klogd", program, program));
}

TEST_F(DaemonSupervision, DoesNotKeepQuietAboutTheSystemLoggersFailures)
{
    startWith({"/missing/logger"}, "syslog");
    EXPECT_EQ(daemon.outcome(XasMessageBuilder{XMSG_SYSLOG}), "0 1 Error starting service");
    EXPECT_TRUE(daemon.log.await("sw/err-/missing/logger is not a valid executable file\n"));
    EXPECT_TRUE(daemon.log.await("sw/err-Error starting syslog app\n"));
    EXPECT_EQ(daemon.outcome(XasMessageBuilder{XMSG_SYSLOG}), "0 1 Error starting service");
    EXPECT_THAT(daemon.stubs.lines(), ElementsAre("/bin/killall syslogd", "/bin/killall klogd"))
        << "once, at the first message";
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
    EXPECT_THAT(xasSettledLines(daemon.log),
                testing::Contains(testing::Field(&XasLogLine::text, HasSubstr("WIFSIGNALED"))).Times(2 + 2))
        << "and both are stopped and started by the message";
}
