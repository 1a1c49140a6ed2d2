// The link watch over ports of the test's own, in a time that passes only in waits.
#include "core/link_watch.h"

#include "support/clock.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/link.h"
#include "support/log.h"
#include "support/message.h"

namespace {

class LinkWatch : public XasFilesTest {
  protected:
    LinkWatch()
    {
        ::setenv("XMS_STORE", dir.path().c_str(), 1);
        EXPECT_EQ(xasOpenLinkSocket(), 0);
        storePorts(1, 1);
    }

    /** Stores which of the two ports are enabled. */
    void storePorts(std::uint32_t first, std::uint32_t second) const
    {
        const XasMessage record =
            XasMessageBuilder{XMSG_ETH}.set("eth1.enabled", first).set("eth2.enabled", second);
        dir.write("XMSG_ETH", xasMessageBytes(record));
    }

    /** One look, more than a second after the last one. */
    XasIdleResult look(bool bondingOn = false)
    {
        clock.pass(2s);
        msg = XasMessageBuilder{XMSG_SSH};
        return xasPollLinks(msg, bondingOn);
    }

    /** Looks that find everything settled. */
    void settle()
    {
        xasNoteEthConfigured();
        while (look() == XasIdleResult::message) {
        }
        log.take();
    }

    XasTestClock clock;
    XasLogCapture log;
    XasTestLink eth0{0};
    XasTestLink eth1{1};
    XasMessage msg{};
};

} // namespace

TEST(LinkSocket, ThatCannotBeMadeIsReported)
{
    const XasLogCapture log;
    const XasFault fault{"socket", EMFILE};
    EXPECT_EQ(xasOpenLinkSocket(), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("error creating socket for link state: Too many open files\n")));
}

TEST(NetPort, ThatIsNotThereCannotBeEnabled)
{
    const XasLogCapture log;
    EXPECT_EQ(xasEnableNetPort(2), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Invalid network port 2 to enable\n")));
    EXPECT_EQ(xasEnableNetPort(0), 0);
    EXPECT_EQ(xasEnableNetPort(1), 0);
}

TEST_F(LinkWatch, ReadsAPortThatCannotBeAskedAsDown)
{
    eth0.plug();
    std::uint32_t up = 7;
    {
        const XasFault fault{"ioctl", ENODEV};
        EXPECT_EQ(xasGetLinkState(0, up), 0);
        EXPECT_EQ(up, 0U);
    }
    EXPECT_EQ(xasGetLinkState(7, up), 0);
    EXPECT_EQ(up, 0U);
}

TEST_F(LinkWatch, ReadsEachPortsLink)
{
    std::uint32_t up = 7;
    eth1.plug();
    EXPECT_EQ(xasGetLinkState(0, up), 0);
    EXPECT_EQ(up, 0U);
    EXPECT_EQ(xasGetLinkState(1, up), 0);
    EXPECT_EQ(up, 1U);
}

TEST_F(LinkWatch, SleepsBeforeTheFirstEthernetMessage)
{
    eth0.plug();
    EXPECT_EQ(look(), XasIdleResult::nothing);
    EXPECT_THAT(clock.waits(), IsEmpty());
}

TEST_F(LinkWatch, SleepsWhileBondingIsOn)
{
    xasNoteEthConfigured();
    eth0.plug();
    EXPECT_EQ(look(true), XasIdleResult::nothing);
    EXPECT_THAT(clock.waits(), IsEmpty());
    EXPECT_EQ(look(false), XasIdleResult::message);
}

TEST_F(LinkWatch, FailsWhenTheTimeCannotBeRead)
{
    clock.breakWallClock();
    EXPECT_EQ(look(), XasIdleResult::failed);
}

TEST_F(LinkWatch, ReportsALinkThatCameUpAfterOneAndAHalfSeconds)
{
    xasNoteEthConfigured();
    eth0.plug();
    EXPECT_EQ(look(), XasIdleResult::message);
    EXPECT_THAT(clock.waits(), ElementsAre(1000ms, 500ms));
    EXPECT_EQ(xasMessageBytes(msg),
              xasMessageBytes(XasMessageBuilder{XMSG_NOTIFY}.sender(4).id(10).set("code", 2).set(
                  "text", "Eth1 Link Up")));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(LinkWatch, ReportsALinkThatWentDown)
{
    eth1.plug();
    settle();
    eth1.unplug();
    EXPECT_EQ(look(), XasIdleResult::message);
    EXPECT_EQ(xasValueIn(msg, "code"), "link-down");
    EXPECT_EQ(xasValueIn(msg, "text"), "Eth2 Link Down");
    EXPECT_EQ(look(), XasIdleResult::nothing) << "once";
}

TEST_F(LinkWatch, ReportsTwoChangesInTwoLooks)
{
    xasNoteEthConfigured();
    eth0.plug();
    eth1.plug();
    EXPECT_EQ(look(), XasIdleResult::message);
    EXPECT_EQ(xasValueIn(msg, "text"), "Eth1 Link Up");
    EXPECT_EQ(look(), XasIdleResult::message);
    EXPECT_EQ(xasValueIn(msg, "text"), "Eth2 Link Up");
    EXPECT_EQ(look(), XasIdleResult::nothing);
}

TEST_F(LinkWatch, ReportsNothingForAFlap)
{
    eth0.plug();
    settle();
    eth0.unplug();
    clock.at(clock.now() + 2s + 1200ms, [this] { eth0.plug(); });
    EXPECT_EQ(look(), XasIdleResult::nothing);
    EXPECT_EQ(look(), XasIdleResult::nothing);
}

TEST_F(LinkWatch, LooksAtTheSecondPortAfterAFlapOfTheFirst)
{
    settle();
    eth0.plug();
    eth1.plug();
    clock.at(clock.now() + 2s + 1200ms, [this] { eth0.unplug(); });
    EXPECT_EQ(look(), XasIdleResult::message);
    EXPECT_EQ(xasValueIn(msg, "text"), "Eth2 Link Up");
}

TEST_F(LinkWatch, RemembersAChangeOnADisabledPortSilently)
{
    storePorts(0, 1);
    xasNoteEthConfigured();
    eth0.plug();
    EXPECT_EQ(look(), XasIdleResult::nothing);
    EXPECT_THAT(clock.waits(), ElementsAre(1000ms)) << "it is not confirmed";
    storePorts(1, 1);
    EXPECT_EQ(look(), XasIdleResult::nothing) << "the change is known";
    eth0.unplug();
    EXPECT_EQ(look(), XasIdleResult::message);
    EXPECT_EQ(xasValueIn(msg, "text"), "Eth1 Link Down");
}

TEST_F(LinkWatch, StopsForThisTimeWhenTheConfigurationCannotBeRead)
{
    xasNoteEthConfigured();
    std::remove(dir.path("XMSG_ETH").c_str());
    eth0.plug();
    eth1.plug();
    EXPECT_EQ(look(), XasIdleResult::nothing);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error getting Ethernet configuration\n")))
        << "the second port is not looked at";
    storePorts(1, 1);
    EXPECT_EQ(look(), XasIdleResult::message) << "nothing was recorded";
}

TEST_F(LinkWatch, TakesAnEnabledPortForUp)
{
    xasNoteEthConfigured();
    EXPECT_EQ(xasEnableNetPort(0), 0);
    EXPECT_EQ(look(), XasIdleResult::message);
    EXPECT_EQ(xasValueIn(msg, "text"), "Eth1 Link Down");
}

TEST_F(LinkWatch, LooksAboutOnceASecond)
{
    settle();
    eth0.plug();
    clock.pass(900ms);
    EXPECT_EQ(xasPollLinks(msg, false), XasIdleResult::nothing) << "too early";
    EXPECT_THAT(log.lines(), IsEmpty());
    clock.pass(1200ms);
    EXPECT_EQ(xasPollLinks(msg, false), XasIdleResult::message);
}

TEST_F(LinkWatch, LooksWhenTheClockHasGoneBackwards)
{
    settle();
    eth0.plug();
    clock.moveWallClock(-100s);
    EXPECT_EQ(xasPollLinks(msg, false), XasIdleResult::message);
}

TEST_F(LinkWatch, ComparesSecondsAndMicrosecondsApart)
{
    settle(); // the last look was at whole seconds
    eth0.plug();
    clock.moveWallClock(1s);
    EXPECT_EQ(xasPollLinks(msg, false), XasIdleResult::nothing) << "one second more, but no microsecond";
    clock.moveWallClock(1us);
    EXPECT_EQ(xasPollLinks(msg, false), XasIdleResult::message);
}
