// The parameters written into the scripts of "eth", "nat" and "netlink".
#include "core/link_watch.h"
#include "dispatch/script_params.h"
#include "support/apps.h"
#include "support/clock.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"
#include "support/message.h"

namespace {

/** What the script parameters read of an Ethernet message. */
struct EthWords {
    std::uint32_t used1 = 0; /**< first word of a port record */
    std::uint32_t mode1 = 0;
    std::uint32_t used2 = 0;
    std::uint32_t mode2 = 0;
    std::uint32_t bonding = 0;
};

XasMessage ethMessage(const EthWords &words)
{
    return XasMessageBuilder{XMSG_ETH}
        .set("eth1.marker", words.used1)
        .set("eth1.mode", words.mode1)
        .set("eth2.marker", words.used2)
        .set("eth2.mode", words.mode2)
        .set("bonding", words.bonding);
}

XasEthPayload ethPayload(const EthWords &words)
{
    return xasReadPayload<XasEthPayload>(ethMessage(words));
}

XasApp ethApp(const std::string &stopScript, const std::string &startScript)
{
    XasApp app;
    app.name = "eth";
    app.stopScript = stopScript;
    app.startScript = startScript;
    return app;
}

/** What both scripts end in after an Ethernet message; "failed" when it was refused. */
std::string codesAfter(const EthWords &words, std::uint32_t lastBonding)
{
    XasApp app = ethApp("/r58/bin/eth stop 9 9 9", "/r58/bin/eth start 8 8 8");
    if (xasSetNetScriptOpts(app, ethPayload(words), lastBonding) != 0)
        return "failed";
    EXPECT_EQ(app.stopScript->substr(0, 18), "/r58/bin/eth stop ");
    EXPECT_EQ(app.startScript->substr(0, 19), "/r58/bin/eth start ");
    EXPECT_EQ(app.stopScript->substr(18), app.startScript->substr(19));
    return app.stopScript->substr(18);
}

} // namespace

TEST(EthModeCode, RefusesModesAbove6NamingEth0)
{
    XasLogCapture log;
    EXPECT_EQ(xasGetEthModeCode(7), -1);
    EXPECT_EQ(xasGetEthModeCode(0xFFFFFFFF), -1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Invalid ethernet mode 7 for Eth0\n"),
                                         xasErrorLine("Invalid ethernet mode -1 for Eth0\n")));
}

TEST(EthModeCode, IsTheDigitBehindTheMode)
{
    const XasLogCapture log;
    constexpr std::string_view DIGITS = "1234567";
    for (std::uint32_t mode = 0; mode < DIGITS.size(); ++mode)
        EXPECT_EQ(xasGetEthModeCode(mode), DIGITS[mode]);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(NetScriptCodeDeathTest, AssertsThatThereIsAPort)
{
    EXPECT_DEATH(std::ignore = xasGetNetScriptCode(nullptr, false), HasSubstr("`((void *)0) != eth'"));
}

TEST(NetScriptCode, IsZeroForAPortThatIsNotInUseUnlessForced)
{
    const XasEthPort unused = ethPayload({.mode1 = 3}).ports[0];
    EXPECT_EQ(xasGetNetScriptCode(&unused, false), '0');
    EXPECT_EQ(xasGetNetScriptCode(&unused, true), '4');
}

TEST(NetScriptCode, LooksAtTheFirstWordOfThePortRecordNotAtItsSecond)
{
    XasEthPort port{};
    port.enabled = 1;
    port.mode = 2;
    EXPECT_EQ(xasGetNetScriptCode(&port, false), '0');
    port.marker = 0x100;
    EXPECT_EQ(xasGetNetScriptCode(&port, false), '3');
}

TEST(NetScriptCode, LooksAtNoModeOfAPortThatIsNotInUse)
{
    XasLogCapture log;
    const XasEthPort unused = ethPayload({.mode1 = 7}).ports[0];
    EXPECT_EQ(xasGetNetScriptCode(&unused, false), '0');
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(xasGetNetScriptCode(&unused, true), -1);
}

TEST(NetScriptOpts, AreSkippedWhenAScriptIsMissingOrEmpty)
{
    const XasLogCapture log;
    const XasEthPayload invalid = ethPayload({.used1 = 1, .mode1 = 7});
    XasApp app = ethApp("/bin/eth", "/bin/eth");
    app.stopScript.reset();
    EXPECT_EQ(xasSetNetScriptOpts(app, invalid, 0), 0);
    app = ethApp("", "/bin/eth");
    EXPECT_EQ(xasSetNetScriptOpts(app, invalid, 0), 0);
    app = ethApp("/bin/eth", "");
    EXPECT_EQ(xasSetNetScriptOpts(app, invalid, 0), 0);
    app.startScript.reset();
    EXPECT_EQ(xasSetNetScriptOpts(app, invalid, 0), 0);
    EXPECT_EQ(app.stopScript, "/bin/eth");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(NetScriptOpts, RefuseAStopScriptWithoutItsThreeDigits)
{
    for (const std::string script : {"/eth stop a 1 1", "/eth stop 1 a 1", "/eth stop 1 1 a",
                                     "/eth stop 1 1 ", "1 1", "1", "/eth stop : 1 1", "/eth stop / 1 1"}) {
        XasLogCapture log;
        XasApp app = ethApp(script, "/eth start 0 0 0");
        EXPECT_EQ(xasSetNetScriptOpts(app, ethPayload({.used1 = 1}), 0), 1) << script;
        EXPECT_THAT(log.lines(),
                    ElementsAre(xasErrorLine("Invalid network stop script:\n " + script + "\n")));
        EXPECT_EQ(app.stopScript, script);
        EXPECT_EQ(app.startScript, "/eth start 0 0 0");
    }
}

TEST(NetScriptOpts, RefuseAStartScriptWithoutItsThreeDigits)
{
    for (const std::string script : {"/eth start x 1 1", "/eth start 1 x 1", "/eth start 1 1 x", "0 0"}) {
        XasLogCapture log;
        XasApp app = ethApp("/eth stop 0 0 0", script);
        EXPECT_EQ(xasSetNetScriptOpts(app, ethPayload({.used1 = 1}), 0), 1) << script;
        EXPECT_THAT(log.lines(),
                    ElementsAre(xasErrorLine("Invalid network start script:\n " + script + "\n")));
        EXPECT_EQ(app.stopScript, "/eth stop 0 0 0");
    }
}

TEST(NetScriptOpts, NameTheStopScriptWhenBothAreInvalid)
{
    XasLogCapture log;
    XasApp app = ethApp("/eth stop", "/eth start");
    EXPECT_EQ(xasSetNetScriptOpts(app, ethPayload({}), 0), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Invalid network stop script:\n /eth stop\n")));
}

TEST(NetScriptOpts, TakeScriptsThatAreNothingButTheCodes)
{
    XasApp app = ethApp("0 0 0", "7x7x7");
    EXPECT_EQ(xasSetNetScriptOpts(app, ethPayload({.used1 = 1, .mode1 = 1, .used2 = 1, .mode2 = 2}), 0), 0);
    EXPECT_EQ(app.stopScript, "2 3 0");
    EXPECT_EQ(app.startScript, "2x3x0");
}

TEST(NetScriptOpts, RefuseAnInvalidModeOfTheFirstPortWritingNothing)
{
    XasLogCapture log;
    XasApp app = ethApp("/eth stop 9 9 9", "/eth start 8 8 8");
    EXPECT_EQ(xasSetNetScriptOpts(app, ethPayload({.used1 = 1, .mode1 = 7}), 0), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Invalid ethernet mode 7 for Eth0\n"),
                            xasErrorLine("Error -1 generating Eth1 network script parameter\n")));
    EXPECT_EQ(app.stopScript, "/eth stop 9 9 9");
    EXPECT_EQ(app.startScript, "/eth start 8 8 8");
}

TEST(NetScriptOpts, RefuseAnInvalidModeOfTheSecondPortKeepingTheFirstPortsCode)
{
    XasLogCapture log;
    XasApp app = ethApp("/eth stop 9 9 9", "/eth start 8 8 8");
    EXPECT_EQ(xasSetNetScriptOpts(app, ethPayload({.used1 = 1, .mode1 = 6, .used2 = 1, .mode2 = 8}), 0), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Invalid ethernet mode 8 for Eth0\n"),
                            xasErrorLine("Error -1 generating Eth2 network script parameter\n")));
    EXPECT_EQ(app.stopScript, "/eth stop 7 9 9");
    EXPECT_EQ(app.startScript, "/eth start 7 8 8");
}

TEST(NetScriptOpts, GiveEveryModeItsCodeInBothPorts)
{
    for (std::uint32_t mode = 0; mode <= 6; ++mode) {
        const std::string code = std::to_string(mode + 1);
        EXPECT_EQ(codesAfter({.used1 = 1, .mode1 = mode}, 0), code + " 0 0");
        EXPECT_EQ(codesAfter({.used2 = 1, .mode2 = mode}, 0), "0 " + code + " 0");
    }
}

TEST(NetScriptOpts, AreAllZeroWhenNothingIsInUseAndBondingStays)
{
    EXPECT_EQ(codesAfter({.mode1 = 7, .mode2 = 7}, 0), "0 0 0");
    EXPECT_EQ(codesAfter({.mode1 = 7, .mode2 = 7, .bonding = 2}, 2), "0 0 0");
}

TEST(NetScriptOpts, ForceBothPortsWhenBondingChanges)
{
    EXPECT_EQ(codesAfter({.mode1 = 2, .mode2 = 4, .bonding = 1}, 0), "3 5 2") << "switched on";
    EXPECT_EQ(codesAfter({.mode1 = 2, .mode2 = 4, .bonding = 3}, 1), "3 5 2") << "another mode";
    EXPECT_EQ(codesAfter({.mode1 = 2, .mode2 = 4, .bonding = 0}, 3), "3 5 1") << "switched off";
    EXPECT_EQ(codesAfter({.mode1 = 7, .bonding = 1}, 0), "failed") << "a forced port must have a mode";
}

TEST(NetScriptOpts, ForceBothPortsWhenAPortIsInUseUnderBonding)
{
    EXPECT_EQ(codesAfter({.used1 = 1, .mode1 = 0, .mode2 = 5, .bonding = 1}, 1), "1 6 2");
    EXPECT_EQ(codesAfter({.mode1 = 0, .used2 = 1, .mode2 = 5, .bonding = 1}, 1), "1 6 2");
    EXPECT_EQ(codesAfter({.used1 = 1, .mode1 = 0, .mode2 = 5, .bonding = 0}, 0), "1 0 0")
        << "without bonding a port in use forces nothing";
}

namespace {

/** Whether the link watch takes a port's link as up: it then reports that it went down. */
class EnabledLinkTest : public XasFilesTest {
  protected:
    EnabledLinkTest()
    {
        ::setenv("XMS_STORE", dir.path().c_str(), 1);
        XasMessage stored = XasMessageBuilder{XMSG_ETH}.set("eth1.enabled", 1).set("eth2.enabled", 1);
        dir.write("XMSG_ETH", xasMessageBytes(stored));
        EXPECT_EQ(xasOpenLinkSocket(), 0);
        xasNoteEthConfigured();
    }

    /** The text of the link watch's next notification; empty for none. */
    std::string nextNotice()
    {
        clock.pass(std::chrono::seconds{3});
        XasMessage msg{};
        return xasPollLinks(msg, false) == XasIdleResult::message ? xasValueIn(msg, "text") : "";
    }

    XasTestClock clock;
    XasFault everyLinkIsDown{"ioctl", ENODEV};
};

} // namespace

TEST_F(EnabledLinkTest, StaysDownForPortsWithTheCodeZero)
{
    EXPECT_EQ(codesAfter({}, 0), "0 0 0");
    EXPECT_EQ(nextNotice(), "");
}

TEST_F(EnabledLinkTest, IsUpForTheFirstPortWhenItsCodeIsNotZero)
{
    EXPECT_EQ(codesAfter({.used1 = 1}, 0), "1 0 0");
    EXPECT_EQ(nextNotice(), "Eth1 Link Down");
    EXPECT_EQ(nextNotice(), "");
}

TEST_F(EnabledLinkTest, IsUpForTheSecondPortWhenItsCodeIsNotZero)
{
    EXPECT_EQ(codesAfter({.used2 = 1}, 0), "0 1 0");
    EXPECT_EQ(nextNotice(), "Eth2 Link Down");
    EXPECT_EQ(nextNotice(), "");
}

namespace {

XasMessage natMessage(std::uint32_t word0)
{
    return XasMessageBuilder{XMSG_NAT_NOTIFY}.set("add", word0).set("address", "192.0.2.7");
}

class NatScriptTest : public testing::Test {
  protected:
    int set(std::uint32_t word0, const std::string &script)
    {
        xasFindApp("nat", apps)->startScript = script;
        const XasMessage msg = natMessage(word0);
        return xasSetNatScriptOpts(&msg, xasFindApp("nat", apps), apps);
    }

    std::string script() { return *xasFindApp("nat", apps)->startScript; }

    XasAppList apps =
        xasTestAppList({{.name = "nat", .startScript = "/nat add 0 0.0.0.0"}, {.name = "router"}});
    XasLogCapture log;
};

using NatScriptDeathTest = NatScriptTest;

} // namespace

TEST_F(NatScriptDeathTest, AssertsTheMessagesType)
{
    const XasMessage msg = XasMessageBuilder{XMSG_NOTIFY};
    EXPECT_DEATH(std::ignore = xasSetNatScriptOpts(&msg, xasFindApp("nat", apps), apps),
                 HasSubstr("`XMSG_NAT_NOTIFY == msg->xH.msgtype'"));
}

TEST_F(NatScriptDeathTest, AssertsThatThereIsAStartScript)
{
    xasFindApp("nat", apps)->startScript.reset();
    const XasMessage msg = natMessage(1);
    EXPECT_DEATH(std::ignore = xasSetNatScriptOpts(&msg, xasFindApp("nat", apps), apps),
                 HasSubstr("`((void *)0) != app->startScript'"));
}

TEST_F(NatScriptTest, FailsWithoutTheRouter)
{
    xasFreeApp(apps, xasFindApp("router", apps));
    EXPECT_EQ(set(1, "/nat del 0 1.1.1.1"), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Could not find routing application in app list\n")));
    EXPECT_EQ(script(), "/nat del 0 1.1.1.1");
}

TEST_F(NatScriptTest, FailsWithoutAFirstBlank)
{
    EXPECT_EQ(set(1, "/nat"), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error getting the first nat script parameter\n")));
    EXPECT_EQ(script(), "/nat");
}

TEST_F(NatScriptTest, FailsWithoutASecondBlankBehindTheFirstParameter)
{
    EXPECT_EQ(set(0, "/nat add"), 1);
    EXPECT_EQ(script(), "/nat del") << "what was written so far stays";
    EXPECT_EQ(set(1, "/nat "), 1);
    EXPECT_EQ(script(), "/nat add");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error getting the second nat script parameter\n"),
                                         xasErrorLine("Error getting the second nat script parameter\n")));
}

TEST_F(NatScriptTest, WritesAddOrDelTheRoutersStateAndTheAddress)
{
    EXPECT_EQ(set(1, "/nat del 1 1.1.1.1"), 0);
    EXPECT_EQ(script(), "/nat add 0 192.0.2.7");
    xasFindApp("router", apps)->running = 1;
    EXPECT_EQ(set(0, "/nat add 0 255.255.255.255"), 0);
    EXPECT_EQ(script(), "/nat del 1 192.0.2.7") << "a longer address leaves nothing behind";
    EXPECT_EQ(set(0xFFFFFFFF, script()), 0);
    EXPECT_EQ(script(), "/nat add 1 192.0.2.7");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(NatScriptTest, CompletesAScriptThatEndsBehindItsSecondBlank)
{
    EXPECT_EQ(set(1, "/nat xxx "), 0);
    EXPECT_EQ(script(), "/nat add 0 192.0.2.7");
}

namespace {

class LinkScriptTest : public XasFilesTest {
  protected:
    LinkScriptTest()
    {
        ::setenv("XMS_STORE", dir.path().c_str(), 1);
        store({.mode1 = 4, .mode2 = 6});
    }

    void store(const EthWords &words)
    {
        const XasMessage stored = ethMessage(words);
        dir.write("XMSG_ETH", xasMessageBytes(stored));
    }

    int set(std::uint32_t word0, std::string_view text, const std::string &before = "/link linkup 1 1")
    {
        script = before;
        return xasSetLinkScriptOpts(XasMessageBuilder{XMSG_NOTIFY}.set("code", word0).set("text", text),
                                    script);
    }

    std::string script;
    XasLogCapture log;
};

} // namespace

TEST_F(LinkScriptTest, FailsWithoutABlank)
{
    EXPECT_EQ(set(2, "Eth1 Link Up", "/link"), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error getting the first netlink script parameter\n")));
    EXPECT_EQ(script, "/link");
}

TEST_F(LinkScriptTest, RefusesOtherKindsOfNotice)
{
    for (const std::uint32_t word0 : {0U, 1U, 4U, 0xFFFFFFFFU})
        EXPECT_EQ(set(word0, "Eth1 Link Up"), 1) << word0;
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Invalid notify message of type 0 received\n"),
                                         xasErrorLine("Invalid notify message of type 1 received\n"),
                                         xasErrorLine("Invalid notify message of type 4 received\n"),
                                         xasErrorLine("Invalid notify message of type -1 received\n")));
    EXPECT_EQ(script, "/link linkup 1 1");
}

TEST_F(LinkScriptTest, RefusesOtherInterfaces)
{
    EXPECT_EQ(set(2, "Eth3 Link Up"), 1);
    EXPECT_EQ(set(3, ""), 1);
    EXPECT_EQ(set(3, "eth1 Link Up"), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Invalid link change interface type: Eth3 Link Up\n"),
                                         xasErrorLine("Invalid link change interface type: \n"),
                                         xasErrorLine("Invalid link change interface type: eth1 Link Up\n")));
}

TEST_F(LinkScriptTest, FailsWhenNoModeIsStored)
{
    std::remove(dir.path("XMSG_ETH").c_str());
    EXPECT_EQ(set(2, "Eth1 Link Up"), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error getting Ethernet configuration\n"),
                                         xasErrorLine("Error getting Ethernet mode configuration\n")));
}

TEST_F(LinkScriptTest, FailsWhenTheStoredModeIsInvalid)
{
    store({.mode1 = 7});
    EXPECT_EQ(set(2, "Eth1 Link Up"), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Invalid ethernet mode 7 for Eth0\n")));
}

TEST_F(LinkScriptTest, WritesTheChangeAndTheCodeOfThePortThatChanged)
{
    EXPECT_EQ(set(2, "Eth1 Link Up"), 0);
    EXPECT_EQ(script, "/link linkup 5 0");
    EXPECT_EQ(set(3, "Eth2 Link Down"), 0);
    EXPECT_EQ(script, "/link linkdn 0 7");
    EXPECT_EQ(set(3, "Eth1"), 0);
    EXPECT_EQ(script, "/link linkdn 5 0");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(LinkScriptTest, EndsTheScriptBehindTheCodes)
{
    EXPECT_EQ(set(2, "Eth2 Link Up", "/link linkdn 3 4 and more words"), 0);
    EXPECT_EQ(script, "/link linkup 0 7");
    EXPECT_EQ(set(2, "Eth2 Link Up", "/link "), 0);
    EXPECT_EQ(script, "/link linkup 0 7") << "a script that is too short grows";
}
