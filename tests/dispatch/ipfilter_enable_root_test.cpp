// Switching the filter as a whole.
#include "dispatch/ipfilter_enable.h"

#include "support/ipfilter.h"
#include "support/log.h"
#include "support/reply.h"
#include "support/shell.h"
#include "support/stub.h"

namespace {

class FilterEnableTest : public XasFilesTest {
  protected:
    FilterEnableTest()
    {
        ::setenv("XMS_STORE", dir.path().c_str(), 1);
        xasIPFilterNoteReset(); // as at the daemon's start
        stubs.put("/bin/iptables");
    }
    ~FilterEnableTest() override { ::unsetenv("XMS_STORE"); }

    void store(std::uint32_t enabled) const
    {
        const XasMessage record = xasTestFirewallMessage(enabled, 0);
        dir.write("XMSG_FIREWALL", xasMessageBytes(record));
    }

    XasStubs stubs;
    XasShellLines shell;
    XasLogCapture log;
    XasReplyStatus reply;
};

} // namespace

TEST_F(FilterEnableTest, IsRefusedWithAReasonWhenDisablingFails)
{
    stubs.put("/bin/iptables", 4);
    EXPECT_EQ(xasIPFilterEnable(false, &reply), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Error disabling IP Filter");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error disabling IP Filter.\n")));
    EXPECT_TRUE(xasIPFilterIsEnabled());
}

TEST_F(FilterEnableTest, TellsOfABrokenRecordOnStandardOutputAndDoesNothing)
{
    const std::string path = dir.write("XMSG_FIREWALL", std::string(2489, '\0'));
    testing::internal::CaptureStdout();
    EXPECT_EQ(xasIPFilterApplySettings(), 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), path + ": not a record of 2488 bytes\n");
    EXPECT_THAT(shell.take(), IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(FilterEnableTest, DoesNothingWhenItIsSoAlready)
{
    EXPECT_EQ(xasIPFilterEnable(true, &reply), 0);
    EXPECT_THAT(shell.take(), IsEmpty());
    EXPECT_EQ(xasIPFilterEnable(false, &reply), 0);
    shell.take();
    log.take();
    EXPECT_EQ(xasIPFilterEnable(false, &reply), 0);
    EXPECT_THAT(shell.take(), IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(FilterEnableTest, InsertsAndDeletesTheAcceptAllRule)
{
    EXPECT_EQ(xasIPFilterEnable(false, &reply), 0);
    EXPECT_FALSE(xasIPFilterIsEnabled());
    EXPECT_EQ(xasIPFilterEnable(true, &reply), 0);
    EXPECT_TRUE(xasIPFilterIsEnabled());
    EXPECT_THAT(shell.take(), ElementsAre(XAS_DISABLE_FILTER, XAS_ENABLE_FILTER));
    EXPECT_THAT(log.lines(),
                ElementsAre(xasInfoLine("IP Filter disabled.\n"), xasInfoLine("IP Filter enabled.\n")));
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
}

TEST_F(FilterEnableTest, CountsAsEnabledWhenEnablingFails)
{
    ASSERT_EQ(xasIPFilterEnable(false, &reply), 0);
    stubs.put("/bin/iptables", 1);
    log.take();
    EXPECT_EQ(xasIPFilterEnable(true, &reply), 0);
    EXPECT_TRUE(xasIPFilterIsEnabled());
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine("IP Filter enabled.\n")));
}

TEST_F(FilterEnableTest, FollowsTheStoredSetting)
{
    EXPECT_EQ(xasIPFilterApplySettings(), 1) << "nothing is stored";
    EXPECT_THAT(shell.take(), IsEmpty());
    store(1);
    EXPECT_EQ(xasIPFilterApplySettings(), 0);
    EXPECT_THAT(shell.take(), IsEmpty());
    store(0);
    EXPECT_EQ(xasIPFilterApplySettings(), 0);
    EXPECT_THAT(shell.take(), ElementsAre(XAS_DISABLE_FILTER));
    store(0x100);
    EXPECT_EQ(xasIPFilterApplySettings(), 0);
    EXPECT_THAT(shell.take(), ElementsAre(XAS_ENABLE_FILTER));
    stubs.put("/bin/iptables", 1);
    store(0);
    EXPECT_EQ(xasIPFilterApplySettings(), 1);
}
