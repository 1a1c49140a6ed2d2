// Module options: the bonding driver and IPv6.
#include "config/modprobe.h"

#include "support/files.h"
#include "support/log.h"
#include "support/reply.h"

namespace {

XasEthPayload settings(std::uint32_t bonding, bool ipv6Enabled)
{
    XasEthPayload eth{};
    eth.bonding = bonding;
    eth.ipv6_enabled = ipv6Enabled ? 1 : 0;
    return eth;
}

class ModprobeFile : public XasFilesTest {
  protected:
    std::string path = dir.path("network.conf");
    XasLogCapture log;
    XasReplyStatus reply;

    int edit(const char *file, std::uint32_t bonding, bool ipv6Enabled)
    {
        const XasEthPayload eth = settings(bonding, ipv6Enabled);
        return xasEditModProbeCfgFile(file, &eth, &reply);
    }
};

using ModprobeFileDeathTest = ModprobeFile;

/** The text of a mode that has options. */
std::string completeText(std::uint32_t bonding, bool ipv6Enabled)
{
    const XasNewText text = xasModProbeCfgText(settings(bonding, ipv6Enabled));
    EXPECT_TRUE(text.complete);
    return text.text;
}

} // namespace

TEST_F(ModprobeFileDeathTest, NeedsItsPath)
{
    EXPECT_DEATH(edit(nullptr, 0, true), "cfgFileName != \\(\\(void \\*\\)0\\)");
}

TEST_F(ModprobeFile, IsLeftAloneWhenTheBondingModeIsUnknown)
{
    dir.write("network.conf", "options ipv6 disable=1\n");
    EXPECT_EQ(edit(path.c_str(), 4, false), 1);
    EXPECT_EQ(reply.rcode, 0U);
    EXPECT_EQ(reply.rstr, "");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error getting Ethernet bonding options string\n")));
    EXPECT_EQ(dir.read("network.conf"), "options ipv6 disable=1\n");
    EXPECT_EQ(dir.read("network.conf.tmp"), "alias netdev-bond0 bonding\n");
    EXPECT_FALSE(dir.has("network.conf.old"));
}

TEST(ModprobeText, OfAnUnknownModeEndsBehindTheAlias)
{
    for (const std::uint32_t mode : {4U, 0xFFFFFFFFU}) {
        const XasLogCapture log;
        const XasNewText text = xasModProbeCfgText(settings(mode, true));
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
