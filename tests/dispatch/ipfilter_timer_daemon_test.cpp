// The filter's switch with the daemon as it ships, and its test timer in real time: a whole minute.
#include "support/daemon.h"
#include "support/ipfilter.h"

namespace {

/** XMSG_APPLICATION starts the fourth application of its table. */
XasMessage startPortmap()
{
    return XasMessageBuilder{XMSG_APPLICATION}.id(1).set("application", 3).set("start", 1);
}

} // namespace

TEST(DaemonFilter, IsTakenForEnabledAtTheStart)
{
    XasTestDaemon daemon;
    daemon.start({{.name = "firewall"}});
    EXPECT_EQ(daemon.outcome(xasTestFirewallMessage(1, 0)), XAS_APPLIED);
    EXPECT_EQ(daemon.outcome(xasTestFirewallMessage(0, 0)), XAS_APPLIED);
    EXPECT_THAT(daemon.stubs.lines(),
                ElementsAre("/usr/bin/xas_iptables.sh resetAll", "/bin/iptables -I INPUT 1 -j ACCEPT"));
}

TEST(RealTimeFilterTimer, RunsOutAfterAMinuteAndServesDeathsAndSigtermWhileNoAnswerComes)
{
    XasTestDaemon daemon;
    const std::string server =
        daemon.stubs.make("server", 0, "echo $$ >" + daemon.stubs.path("pid") + "; exec sleep 600");
    const auto serverPid = [&] {
        return std::stoi(xasReadFile(daemon.stubs.path("pid")));
    };
    const auto starts = [&] {
        const auto lines = daemon.stubs.lines();
        return std::ranges::count(lines, server);
    };
    std::filesystem::create_directories("/tmp/.save");
    daemon.start({{.name = "firewall"}, {.name = "portmap", .exes = {server}}});
    ASSERT_EQ(daemon.outcome(startPortmap()), XAS_APPLIED);
    ASSERT_TRUE(xasEventually([&] { return starts() == 1 && xasExists(daemon.stubs.path("pid")); }));

    const auto begin = std::chrono::steady_clock::now();
    XasMessage enable = xasTestFirewallMessage(1, 1);
    enable.xH.id = 2;
    ASSERT_EQ(daemon.outcome(enable), XAS_APPLIED);
    EXPECT_THAT(xasReadFile("/tmp/.save/ipfilter-timer.txt"), testing::MatchesRegex("1 [0-9]+\n"));

    const auto update = daemon.queues->receive(70s);
    ASSERT_TRUE(update);
    const auto taken = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(taken, 59s) << "the start counts in whole seconds";
    EXPECT_LE(taken, 63s);
    const XasMessage expected = XasMessageBuilder{XMSG_FIREWALL}.sender(4).id(update->xH.id);
    EXPECT_TRUE(xasMessageBytes(*update) == xasMessageBytes(expected));
    EXPECT_EQ(update->xH.id, 12U) << "behind the two acknowledgements";
    EXPECT_FALSE(xasExists("/tmp/.save/ipfilter-timer.txt"));
    EXPECT_EQ(daemon.stubs.lines().back(), "/bin/iptables -I INPUT 1 -j ACCEPT");
    EXPECT_TRUE(daemon.log.await("sw/info-IP Filter Test Timer reached 1 minute(s).\n"));
    EXPECT_TRUE(daemon.log.await("sw/info-IP Filter disabled.\n"));

    ASSERT_EQ(::kill(serverPid(), SIGKILL), 0);
    EXPECT_TRUE(xasEventually([&] { return starts() == 2; })) << "started again while no answer comes";
    EXPECT_EQ(daemon.log.count("Cannot update IP Filter settings"), 0U);
    daemon.signal(SIGTERM);
    const auto status = daemon.awaitEnd();
    ASSERT_TRUE(status);
    EXPECT_TRUE(WIFSIGNALED(*status));
    EXPECT_TRUE(daemon.log.await("sw/info-sig Terminated - kill all processes\n"));
}
