// Signals that change nothing, and what children see of the daemon's.
#include "support/daemon.h"

#include <fcntl.h>

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
    EXPECT_THAT(daemon.log.lines(), ElementsAre(xasInfoLine("Initializing application server\n")));
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

TEST(DaemonSignals, AreServedThoughTheStarterHadThemBlocked)
{
    XasTestDaemon daemon;
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, &before);
    const std::string script = daemon.stubs.make("script");
    daemon.start({{.name = "xdd", .startScript = script}}); // its start alone runs a command
    sigprocmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(daemon.outcome(startXdd()), XAS_APPLIED);
    daemon.signal(SIGTERM);
    EXPECT_TRUE(daemon.awaitEnd(2s));
}

TEST(DaemonSignals, NeedSomethingThatWakesAWaiter)
{
    XasTestDaemon daemon; // its queues and its log only
    const XasTestDir dir;
    const std::string command = "ASAN_OPTIONS=detect_leaks=0 strace -f -qq -o /dev/null "
                                "-e inject=eventfd2:error=EMFILE " +
                                std::string{xasDaemonPath()} + " -f -c " + dir.write("list", "<A/>");
    const int status = std::system(command.c_str());
    EXPECT_EQ(WEXITSTATUS(status), 255);
    EXPECT_TRUE(daemon.log.await("sw/err-Error creating the descriptor that signals wake with\n"));
}

TEST(DaemonSignals, AndTheUmaskAndDescriptorsOfTheDaemonAreNotItsChildrens)
{
    XasTestDaemon daemon;
    const int fd = ::open("/dev/null", O_RDONLY);
    ASSERT_GT(fd, 2);
    const std::string show = "umask > " + daemon.stubs.path("umask") + "; test -e /proc/self/fd/" +
                             std::to_string(fd) + " && touch " + daemon.stubs.path("inherited") + "; true";
    const std::string script = daemon.stubs.make("script", 0, show);
    ::umask(0);
    daemon.start({{.name = "xdd", .startScript = script}});
    ::close(fd);
    EXPECT_EQ(daemon.outcome(startXdd()), XAS_APPLIED);
    EXPECT_EQ(xasReadFile(daemon.stubs.path("umask")), "0022\n");
    EXPECT_FALSE(xasExists(daemon.stubs.path("inherited")));
}
