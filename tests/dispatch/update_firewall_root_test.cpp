// The handler that the three filter types share: which operation a type reaches, and what a failure logs.
#include "dispatch/update_firewall.h"

#include "dispatch/ipfilter_enable.h"
#include "support/ipfilter.h"
#include "support/log.h"
#include "support/reply.h"
#include "support/shell.h"
#include "support/stub.h"

namespace {

class UpdateFirewallTest : public testing::Test {
  protected:
    UpdateFirewallTest()
    {
        xasIPFilterNoteReset();
        stubs.put("/bin/iptables", 1);
        std::remove("/usr/bin/xas_iptables.sh");
    }

    int update(XasMessage msg) { return xasUpdateFirewall(&msg, &cfgFiles, &reply); }

    XasCfgFileList cfgFiles;
    XasStubs stubs;
    XasShellLines shell;
    XasLogCapture log;
    XasReplyStatus reply;
};

} // namespace

TEST_F(UpdateFirewallTest, LogsTheReasonOfAFailedSet)
{
    EXPECT_EQ(update(xasTestFilterSetMessage(xasTestFilterSet("office", {}))), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Error copying IP Filter script");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error copying IP Filter script\n")));
}

TEST_F(UpdateFirewallTest, LogsAnEmptyReasonToo)
{
    EXPECT_EQ(update(xasTestAssignMessage(1, 1, "office")), 1);
    EXPECT_EQ(update(xasTestFirewallMessage(0, 3)), 1);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(
        log.lines(),
        ElementsAre(xasErrorLine("Cannot add IP Filter office for interface eth0 from INPUT chain.\n"),
                    xasErrorLine("\n"),
                    xasErrorLine("Failed to start IP Filter Test Timer: must enable IP Filter first.\n"),
                    xasErrorLine("\n")));
}

TEST_F(UpdateFirewallTest, LogsTheReasonOfAFailedSwitchBehindItsOwnLine)
{
    EXPECT_EQ(update(xasTestFirewallMessage(0, 0)), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Error disabling IP Filter");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error disabling IP Filter.\n"),
                                         xasErrorLine("Error disabling IP Filter\n")));
}

TEST_F(UpdateFirewallTest, LogsNoReasonOfAnOperationThatSucceeds)
{
    stubs.put("/bin/iptables");
    EXPECT_EQ(update(xasTestFirewallMessage(1, 0)), 0);
    EXPECT_EQ(update(xasTestAssignMessage(2, 3, "modem")), 0);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_THAT(stubs.lines(),
                ElementsAre("/bin/iptables -L INPUT -v -n", "/bin/iptables -A INPUT -i ppp3 -j modem"));
}
