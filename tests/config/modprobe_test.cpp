// Module options: the bonding driver and IPv6.
#include "config/modprobe.h"

#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"
#include "support/reply.h"

#include <cerrno>
#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ModprobeFile : public XasFilesTest {
  protected:
    std::string path = dir.path("network.conf");
    XasLogCapture log;
    XasReplyStatus reply;
};

using ModprobeFileDeathTest = ModprobeFile;

/** The text of a mode that has options. */
std::string completeText(std::uint32_t bonding, bool ipv6Enabled)
{
    const XasNewText text = xasModProbeCfgText(bonding, ipv6Enabled);
    EXPECT_TRUE(text.complete);
    return text.text;
}

} // namespace

TEST_F(ModprobeFileDeathTest, NeedsItsPath)
{
    EXPECT_DEATH(xasEditModProbeCfgFile(nullptr, 0, true, &reply), "cfgFileName != \\(\\(void \\*\\)0\\)");
}

TEST_F(ModprobeFile, IsLeftAloneWhenTheBondingModeIsUnknown)
{
    dir.write("network.conf", "options ipv6 disable=1\n");
    EXPECT_EQ(xasEditModProbeCfgFile(path.c_str(), 4, false, &reply), 1);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error getting Ethernet bonding options string\n")));
    EXPECT_EQ(dir.read("network.conf"), "options ipv6 disable=1\n");
    EXPECT_EQ(dir.read("network.conf.tmp"), "alias netdev-bond0 bonding\n");
    EXPECT_FALSE(dir.has("network.conf.old"));
}

TEST_F(ModprobeFile, IsLeftAloneWhenItCannotBeOpened)
{
    dir.write("network.conf.tmp/in-the-way", "");
    EXPECT_EQ(xasEditModProbeCfgFile(path.c_str(), 0, false, &reply), 1);
    EXPECT_EQ(xasReplyText(reply), "2 Error opening modprobe config file");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error opening output file \"" + path + ".tmp\"\n")));
}

TEST_F(ModprobeFile, IsLeftAloneWhenItCannotBeSaved)
{
    dir.write("network.conf", "old\n");
    const XasFault fault{"rename", EIO, 1};
    EXPECT_EQ(xasEditModProbeCfgFile(path.c_str(), 0, false, &reply), 1);
    EXPECT_EQ(xasReplyText(reply), "3 Error saving new modprobe config file");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error renaming new config file \"" + path + "\"\n")));
    EXPECT_EQ(dir.read("network.conf"), "old\n");
}

TEST_F(ModprobeFile, NeedNotExist)
{
    EXPECT_EQ(xasEditModProbeCfgFile(path.c_str(), 0, false, &reply), 0);
    EXPECT_EQ(dir.read("network.conf"), "options ipv6 disable=1\n");
    EXPECT_THAT(dir.names(), ElementsAre("network.conf"));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(ModprobeFile, ForgetsItsEarlierContent)
{
    dir.write("network.conf", "alias netdev-bond0 bonding\noptions other x=1\n");
    EXPECT_EQ(xasEditModProbeCfgFile(path.c_str(), 0, true, &reply), 0);
    EXPECT_EQ(dir.read("network.conf"), "");
    EXPECT_EQ(dir.read("network.conf.old"), "alias netdev-bond0 bonding\noptions other x=1\n");
}

TEST(ModprobeText, OfAnUnknownModeEndsBehindTheAlias)
{
    for (const std::uint32_t mode : {4U, 0xFFFFFFFFU}) {
        const XasLogCapture log;
        const XasNewText text = xasModProbeCfgText(mode, true);
        EXPECT_FALSE(text.complete);
        EXPECT_EQ(text.text, "alias netdev-bond0 bonding\n");
        EXPECT_THAT(log.lines(),
                    ElementsAre(xasErrorLine("Error getting Ethernet bonding options string\n")));
    }
}

TEST(ModprobeText, WithoutBondingHoldsAtMostTheIPv6Switch)
{
    EXPECT_EQ(completeText(0, true), "");
    EXPECT_EQ(completeText(0, false), "options ipv6 disable=1\n");
}

TEST(ModprobeText, HoldsTheOptionsOfActiveBackup)
{
    EXPECT_EQ(completeText(1, true), "alias netdev-bond0 bonding\n"
                                     "options bond0 mode=active-backup primary=eth0 miimon=250 "
                                     "use_carrier=1 downdelay=2500 updelay=2500\n");
}

TEST(ModprobeText, HoldsTheOptionsOfLinkAggregationAndTheIPv6Switch)
{
    EXPECT_EQ(completeText(2, false),
              "alias netdev-bond0 bonding\n"
              "options bond0 mode=802.3ad miimon=250 use_carrier=1 downdelay=2500 updelay=2500\n"
              "options ipv6 disable=1\n");
}

TEST(ModprobeText, HoldsTheOptionsOfLoadBalancing)
{
    EXPECT_EQ(completeText(3, true),
              "alias netdev-bond0 bonding\n"
              "options bond0 mode=balance-tlb miimon=250 use_carrier=1 downdelay=2500 updelay=2500\n");
}
