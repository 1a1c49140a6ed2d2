// Signals that change nothing, and what children see of the daemon's.
#include "support/daemon.h"
#include "support/settled_log.h"

namespace {

XasMessage startXdd()
{
    return XasMessageBuilder{XMSG_APPLICATION}.set("start", 1);
}

} // namespace

TEST(DaemonSignals, SighupAndSigpipeChangeNothing)
{
    XasTestDaemon daemon;
    daemon.start({});
    ASSERT_TRUE(daemon.stubs.await(1));
    daemon.ask(XasMessageBuilder{XMSG_SSH});
    for (const int number : {SIGHUP, SIGPIPE, SIGHUP, SIGHUP}) {
        daemon.signal(number);
        daemon.ask(XasMessageBuilder{XMSG_SSH});
    }
    EXPECT_THAT(xasSettledLines(daemon.log), ElementsAre(xasInfoLine("Initializing application server\n")));
    EXPECT_THAT(daemon.stubs.lines(), ElementsAre("/usr/bin/xas_iptables.sh resetAll"));
}

TEST(DaemonSignals, AreAtTheirDefaultsInScriptsAndDaemons)
{
    XasTestDaemon daemon;
    const std::string show = "cat /proc/self/status > ";
    const std::string script = daemon.stubs.make("script", 0, show + daemon.stubs.path("script-signals"));
    const std::string server =
        daemon.stubs.make("server", 0, show + daemon.stubs.path("server-signals") + "; exec sleep 1000");
    daemon.start({{.name = "xdd", .startScript = script, .exes = {server}}});
    EXPECT_EQ(daemon.outcome(startXdd()), XAS_APPLIED);
    for (const char *file : {"script-signals", "server-signals"}) {
        const std::string status = xasReadFile(daemon.stubs.path(file));
        EXPECT_THAT(status, HasSubstr("SigBlk:\t0000000000000000\n")) << file;
        EXPECT_THAT(status, HasSubstr("SigIgn:\t0000000000000000\n")) << file;
    }
}

TEST(DaemonSignals, DoNotDisturbAScriptThatRuns)
{
    XasTestDaemon daemon;
    const std::string script = daemon.stubs.make(
        "script", 40, "while ! test -e " + daemon.stubs.path("end") + "; do sleep 0.01; done");
    daemon.stubs.put("/bin/cp");
    daemon.start({{.name = "xdd", .startScript = script}});
    daemon.queues->send(startXdd());
    ASSERT_TRUE(daemon.stubs.await(2));
    daemon.signal(SIGHUP);
    daemon.signal(SIGALRM);
    ASSERT_TRUE(daemon.stubs.await(3)) << "the logs are copied while the script runs";
    xasWriteFile(daemon.stubs.path("end"), "");
    const auto answer = daemon.queues->receive(5s);
    ASSERT_TRUE(answer);
    EXPECT_EQ(xasValueIn(*answer, "rstr"), "Error contacting NTP server") << "its exit status 40";
}
