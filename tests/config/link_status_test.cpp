// A port's link came up or went down: the handler of XMSG_NOTIFY.
#include "config/link_status.h"

#include "support/apps.h"
#include "support/files.h"
#include "support/log.h"
#include "support/message.h"
#include "support/reply.h"

namespace {

XasMessage notice(std::uint32_t code, std::string_view text)
{
    return XasMessageBuilder{XMSG_NOTIFY}.set("code", code).set("text", text);
}

class EthStatusUpdate : public XasFilesTest {
  protected:
    EthStatusUpdate()
    {
        dir.write("eth0", "DEVICE=eth0\nONBOOT=no\n");
        dir.write("eth1", "DEVICE=eth1\nONBOOT=yes\n");
    }

    int update(std::uint32_t code, std::string_view text)
    {
        XasMessage msg = notice(code, text);
        return xasUpdateEthIfStatusCfg(&msg, &cfgFiles, &reply);
    }

    void expectNothingChanged() const
    {
        EXPECT_EQ(dir.read("eth0"), "DEVICE=eth0\nONBOOT=no\n");
        EXPECT_EQ(dir.read("eth1"), "DEVICE=eth1\nONBOOT=yes\n");
        EXPECT_FALSE(dir.has("eth0.old"));
        EXPECT_FALSE(dir.has("eth1.old"));
    }

    XasCfgFileList cfgFiles = xasTestCfgFiles({{"eth0", dir.path("eth0")}, {"eth1", dir.path("eth1")}});
    XasLogCapture log;
    XasReplyStatus reply;
};

} // namespace

TEST_F(EthStatusUpdate, RefusesOtherKindsOfNotice)
{
    EXPECT_EQ(update(0, "Eth1 Link Up"), 1);
    EXPECT_EQ(update(1, "Eth1 Link Up"), 1);
    EXPECT_EQ(update(4, "nonsense"), 1);
    EXPECT_EQ(update(0xFFFFFFFF, "Eth1 Link Up"), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Invalid notify message of type 0 received\n"),
                                         xasErrorLine("Invalid notify message of type 1 received\n"),
                                         xasErrorLine("Invalid notify message of type 4 received\n"),
                                         xasErrorLine("Invalid notify message of type -1 received\n")));
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    expectNothingChanged();
}

TEST_F(EthStatusUpdate, RefusesOtherPorts)
{
    EXPECT_EQ(update(2, ""), 1);
    EXPECT_EQ(update(2, "Eth"), 1);
    EXPECT_EQ(update(3, "Eth3 Link Down"), 1);
    EXPECT_EQ(update(3, "eth1 Link Down"), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Invalid link change interface type: \n"),
                            xasErrorLine("Invalid link change interface type: Eth\n"),
                            xasErrorLine("Invalid link change interface type: Eth3 Link Down\n"),
                            xasErrorLine("Invalid link change interface type: eth1 Link Down\n")));
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    expectNothingChanged();
}

TEST_F(EthStatusUpdate, ReadsANameThatFillsTheRecordToItsEnd)
{
    const std::string name(2352, 'x');
    EXPECT_EQ(update(2, name), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Invalid link change interface type: " + name + "\n")));
}

TEST_F(EthStatusUpdate, StartsAtBootAPortThatCameUp)
{
    EXPECT_EQ(update(2, "Eth1 Link Up"), 0);
    EXPECT_EQ(dir.read("eth0"), "DEVICE=eth0\nONBOOT=yes\n");
    EXPECT_EQ(dir.read("eth1"), "DEVICE=eth1\nONBOOT=yes\n");
    EXPECT_FALSE(dir.has("eth1.old"));
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
}

TEST_F(EthStatusUpdate, DoesNotStartAtBootAPortThatWentDown)
{
    EXPECT_EQ(update(3, "Eth2 Link Down"), 0);
    EXPECT_EQ(dir.read("eth0"), "DEVICE=eth0\nONBOOT=no\n");
    EXPECT_EQ(dir.read("eth1"), "DEVICE=eth1\nONBOOT=no\n");
    EXPECT_FALSE(dir.has("eth0.old"));
}

TEST_F(EthStatusUpdate, ReadsNothingButTheFirstFourCharactersOfTheName)
{
    EXPECT_EQ(update(2, "Eth1"), 0);
    EXPECT_EQ(dir.read("eth0"), "DEVICE=eth0\nONBOOT=yes\n");
    EXPECT_EQ(update(3, "Eth12"), 0);
    EXPECT_EQ(dir.read("eth0"), "DEVICE=eth0\nONBOOT=no\n");
}
