// Starting and stopping an application.
#include "dispatch/service.h"
#include "support/reply.h"
#include "support/supervision.h"

#include <climits>

namespace {

class ServiceTest : public XasServedTest {
  protected:
    ~ServiceTest() override
    {
        for (const pid_t pid : started)
            ::kill(pid, SIGKILL);
    }

    XasApp &use(const XasTestApp &app)
    {
        apps = xasTestAppList({app});
        return apps.front();
    }

    int start(XasApp &app)
    {
        const int result = xasStartApp(app, &reply);
        for (const XasDaemon &daemon : app.daemons) {
            if (daemon.pid > 0)
                started.push_back(daemon.pid);
        }
        return result;
    }

    /** A daemon that runs until it is ended. */
    std::string endlessDaemon(std::string_view name) { return stubs.make(name, 0, "exec sleep 1000"); }

    XasReplyStatus reply;
    std::vector<pid_t> started;
};

} // namespace

TEST(ScriptErrorText, HasAReasonForEveryExitStatus)
{
    EXPECT_STREQ(xasScriptErrorText(-1), "Internal error applying settings");
    EXPECT_STREQ(xasScriptErrorText(0), "Settings applied successfully");
    EXPECT_STREQ(xasScriptErrorText(1), "Internal error attempting to apply settings");
    EXPECT_STREQ(xasScriptErrorText(20), "Internal error getting firewall configuration file");
    EXPECT_STREQ(xasScriptErrorText(30), "Mount/unmount of NFS share failed");
    EXPECT_STREQ(xasScriptErrorText(40), "Error contacting NTP server");
    EXPECT_STREQ(xasScriptErrorText(50), "Invalid hostname specified");
}

TEST(ScriptErrorText, IsTheSameForAllOthers)
{
    for (int code = 2; code <= 255; ++code) {
        if (code != 20 && code != 30 && code != 40 && code != 50) {
            EXPECT_STREQ(xasScriptErrorText(code), "Error applying settings") << code;
        }
    }
    EXPECT_STREQ(xasScriptErrorText(-2), "Error applying settings");
    EXPECT_STREQ(xasScriptErrorText(INT_MIN), "Error applying settings");
}

TEST_F(ServiceTest, FailsToStartWithTheReasonOfTheScriptsExitStatus)
{
    const std::string never = endlessDaemon("never");
    for (const auto &[status, reason] : {std::pair{1, "Internal error attempting to apply settings"},
                                         {20, "Internal error getting firewall configuration file"},
                                         {30, "Mount/unmount of NFS share failed"},
                                         {40, "Error contacting NTP server"},
                                         {50, "Invalid hostname specified"},
                                         {77, "Error applying settings"},
                                         {255, "Error applying settings"}}) {
        const std::string script = stubs.make("script", status);
        XasApp &app = use({.name = "a", .startScript = script + " start", .exes = {never}});
        log.take();
        EXPECT_EQ(start(app), 1);
        EXPECT_EQ(xasReplyText(reply), std::string{"1 "} + reason);
        EXPECT_EQ(app.running, 0);
        EXPECT_EQ(app.daemons.front().pid, 0) << "no daemon is started after a failed script";
        EXPECT_THAT(log.take(), ElementsAre(xasInfoLine("Running " + script + "\n"),
                                            xasErrorLine("error " + std::to_string(status) +
                                                         " calling script " + script + "\n")));
    }
}

TEST_F(ServiceTest, FailsToStartWhenTheScriptCannotBeExecuted)
{
    XasApp &app = use({.name = "a", .startScript = "/missing/script"});
    EXPECT_EQ(start(app), 1);
    EXPECT_EQ(reply.rstr, "Error applying settings");
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine("Running /missing/script\n"),
                                         xasErrorLine("exec /missing/script failed\n"),
                                         xasErrorLine("error 255 calling script /missing/script\n")));
}

TEST_F(ServiceTest, FailsToStartWhenTheScriptIsKilled)
{
    const std::string script = stubs.make("script", 0, "kill -9 $$");
    EXPECT_EQ(start(use({.name = "a", .startScript = script})), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Internal error applying settings");
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine("Running " + script + "\n"),
                                         xasErrorLine("error calling script " + script + "\n")));
}

TEST_F(ServiceTest, FailsToStartWhenTheScriptHasNoWordOrTooManyCharacters)
{
    EXPECT_EQ(start(use({.name = "a", .startScript = " "})), 1);
    EXPECT_EQ(reply.rstr, "Internal error applying settings");
    const std::string tooLong = "/bin/true " + std::string(246, 'x');
    EXPECT_EQ(start(use({.name = "a", .startScript = tooLong})), 1);
    EXPECT_EQ(reply.rstr, "Internal error applying settings");
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error building script   argument list\n"),
                            xasErrorLine("Error building script " + tooLong + " argument list\n")));
}

TEST_F(ServiceTest, FailsToStartWhenADaemonCannotBeStartedLeavingTheEarlierOnesUp)
{
    const std::string first = endlessDaemon("first");
    const std::string third = endlessDaemon("third");
    XasApp &app = use({.name = "web", .exes = {first, "/missing/program -x", third}});
    EXPECT_EQ(start(app), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Error starting service");
    EXPECT_EQ(app.running, 0);
    EXPECT_GT(app.daemons[0].pid, 0);
    EXPECT_EQ(app.daemons[0].running, 1);
    EXPECT_EQ(app.daemons[1].pid, -1);
    EXPECT_EQ(app.daemons[2].pid, 0);
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine("[" + std::to_string(app.daemons[0].pid) + "] " + first +
                                                     " started\n"),
                                         xasErrorLine("/missing/program -x is not a valid executable file\n"),
                                         xasErrorLine("Error starting web app\n")));
}

TEST_F(ServiceTest, StartsTheScriptThenTheDaemonsInListOrder)
{
    const std::string script = stubs.make("script");
    const std::string first = endlessDaemon("first");
    const std::string second = endlessDaemon("second");
    XasApp &app = use({.name = "a", .startScript = script + " go", .exes = {first + " -a  b", second}});
    app.daemons[0].restarts = 7;
    app.daemons[1].stopping = 1;
    EXPECT_EQ(start(app), 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_EQ(app.running, 1);
    EXPECT_EQ(app.daemons[0].restarts, 0);
    EXPECT_EQ(app.daemons[1].stopping, 0);
    EXPECT_EQ(clock.now(), 400ms) << "200 ms for each daemon";
    ASSERT_TRUE(stubs.await(3));
    EXPECT_THAT(stubs.lines(), UnorderedElementsAre(script + " go", first + " -a b", second));
    EXPECT_THAT(
        log.lines(),
        ElementsAre(xasInfoLine("Running " + script + "\n"),
                    xasInfoLine("[" + std::to_string(app.daemons[0].pid) + "] " + first + " started\n"),
                    xasInfoLine("[" + std::to_string(app.daemons[1].pid) + "] " + second + " started\n")));
}

TEST_F(ServiceTest, StartsAnApplicationWithNothingToStart)
{
    XasApp &app = use({.name = "a"});
    EXPECT_EQ(start(app), 0);
    EXPECT_EQ(app.running, 1);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(clock.now(), 0ms);
}

TEST_F(ServiceTest, GivesTheSystemLoggerASecondAndNoLogLine)
{
    XasApp &app = use({.name = "syslog", .exes = {endlessDaemon("logger")}});
    EXPECT_EQ(start(app), 0);
    EXPECT_EQ(clock.now(), 1200ms);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(ServiceTest, FailsToStopWithTheReasonOfTheScriptsExitStatus)
{
    const std::string script = stubs.make("stop", 30);
    XasApp &app = use({.name = "a", .stopScript = script, .exes = {endlessDaemon("one")}});
    ASSERT_EQ(start(app), 0);
    EXPECT_EQ(xasStopApp(app, &reply), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Mount/unmount of NFS share failed");
    EXPECT_EQ(app.running, 1);
    EXPECT_EQ(app.daemons.front().running, 1) << "the daemons are left alone";
}

TEST_F(ServiceTest, FailsToStopWhenADaemonCannotBeStopped)
{
    XasApp &app = use({.name = "a", .exes = {"/first", endlessDaemon("second")}});
    app.running = 1;
    app.daemons[0].running = 1;
    app.daemons[1].running = 1;
    EXPECT_EQ(xasStopApp(app, &reply), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Error stopping service");
    EXPECT_EQ(app.running, 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasWarningLine("Invalid daemon pid 0 to stop\n")));
}

TEST_F(ServiceTest, OnlyWarnsOfADaemonThatWasNotRunning)
{
    XasApp &app = use({.name = "web", .exes = {"/sbin/first -d 3", "/sbin/second\n"}});
    app.running = 1;
    EXPECT_EQ(xasStopApp(app, &reply), 0);
    EXPECT_EQ(app.running, 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasWarningLine("daemon: /sbin/first was not running under app: web\n"),
                            xasWarningLine("daemon: /sbin/second\\012 was not running under app: web\n")));
}

TEST_F(ServiceTest, StopsTheDaemonsAfterASuccessfulStopScript)
{
    const std::string script = stubs.make("stop");
    const std::string exe = endlessDaemon("one");
    XasApp &app = use({.name = "a", .stopScript = script + " now", .exes = {exe}});
    ASSERT_EQ(start(app), 0);
    ASSERT_TRUE(stubs.await(1));
    stubs.forget();
    log.take();
    const pid_t pid = app.daemons.front().pid;
    clock.at(clock.now() + 50ms, [pid] { xasAwaitExit(pid); });
    EXPECT_EQ(xasStopApp(app, &reply), 0);
    EXPECT_EQ(app.running, 0);
    EXPECT_EQ(app.daemons.front().running, 0);
    EXPECT_EQ(app.daemons.front().pid, -1);
    EXPECT_EQ(app.daemons.front().stopping, 0);
    EXPECT_THAT(stubs.lines(), ElementsAre(script + " now"));
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine("Running " + script + "\n"),
                                         xasInfoLine("PID[" + std::to_string(pid) +
                                                     "] WIFSIGNALED on sig Child exited\n")));
}
