// The link watch of the built daemon over virtual cables that are plugged and pulled.
#include "support/eth_appliance.h"
#include "support/link.h"

namespace {

/** Longer than it takes to notice a change: a look about every second, and 1.5 s until it is believed. */
constexpr auto LONG_ENOUGH = 4s;

class DaemonLinks : public XasEthAppliance {
  protected:
    void startWithSettings()
    {
        start();
        ASSERT_EQ(apply(), "1 0 ");
        calls();
    }

    /** Awaits one notification: how its script was called. */
    std::string nextNotification()
    {
        EXPECT_TRUE(daemon.stubs.await(1)) << "no notification";
        // A second one would follow within the next look.
        xasPause(100ms);
        const auto lines = calls();
        return lines.size() == 1 ? lines.front() : testing::PrintToString(lines);
    }

    void expectQuiet()
    {
        xasPause(LONG_ENOUGH);
        EXPECT_THAT(calls(), IsEmpty());
    }

    XasTestLink eth0{0};
    XasTestLink eth1{1};
};

} // namespace

TEST_F(DaemonLinks, SleepsUntilTheFirstEthernetMessage)
{
    start();
    eth0.plug();
    expectQuiet();
    // Ports that the message does not use are not taken as up, so that the watch finds the plugged one
    // changed.
    eth.ports[0].marker = 0;
    eth.ports[1].marker = 0;
    EXPECT_EQ(apply(), "1 0 ");
    EXPECT_THAT(calls(), ElementsAre("eth start 0 0 0"));
    EXPECT_EQ(nextNotification(), "netlink linkup 1 0");
}

TEST_F(DaemonLinks, SleepsWhileBondingIsOn)
{
    eth0.plug();
    eth1.plug();
    eth.bonding = 1;
    startWithSettings();
    eth0.unplug();
    expectQuiet();
    eth.bonding = 0;
    EXPECT_EQ(apply(), "1 0 ");
    EXPECT_THAT(calls(), ElementsAre("eth stop 1 5 1", "eth start 1 5 1"));
    EXPECT_EQ(nextNotification(), "netlink linkdn 1 0");
}

TEST_F(DaemonLinks, ReportsALinkThatWentDownAndOneThatCameUp)
{
    eth0.plug();
    eth1.plug();
    startWithSettings();
    eth0.unplug();
    EXPECT_EQ(nextNotification(), "netlink linkdn 1 0");
    EXPECT_THAT(files.read("eth0"), HasSubstr("\nONBOOT=no\n"));
    EXPECT_THAT(files.read("eth1"), HasSubstr("\nONBOOT=yes\n"));
    eth1.unplug();
    EXPECT_EQ(nextNotification(), "netlink linkdn 0 5");
    EXPECT_THAT(files.read("eth1"), HasSubstr("\nONBOOT=no\n"));
    eth0.plug();
    EXPECT_EQ(nextNotification(), "netlink linkup 1 0");
    EXPECT_THAT(files.read("eth0"), HasSubstr("\nONBOOT=yes\n"));
    EXPECT_THAT(daemon.log.lines(),
                ElementsAre(xasInfoLine("Initializing application server\n"), running("eth"),
                            running("netlink"), running("netlink"), running("netlink")));
}

TEST_F(DaemonLinks, GivesItsNotificationsTheNextMessageIds)
{
    eth1.plug();
    start();
    EXPECT_EQ(daemon.ask(message(eth)).xH.id, 10U);
    calls();
    EXPECT_EQ(nextNotification(), "netlink linkdn 1 0") << "a port in use was taken as up";
    EXPECT_EQ(daemon.ask(XasMessageBuilder{XMSG_SSH}).xH.id, 12U);
    EXPECT_FALSE(daemon.queues->receive(0ms)) << "a notification is not sent to anybody";
}

TEST_F(DaemonLinks, TriesAgainWhenTheStoredSettingsCannotBeRead)
{
    eth0.plug();
    eth1.plug();
    startWithSettings();
    std::filesystem::remove("/r58/store/XMSG_ETH");
    eth0.unplug();
    EXPECT_TRUE(daemon.log.awaitCount("sw/err-Error getting Ethernet configuration\n", 2, 10s));
    EXPECT_THAT(calls(), IsEmpty());
    store(eth);
    EXPECT_EQ(nextNotification(), "netlink linkdn 1 0");
}
