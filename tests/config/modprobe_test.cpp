// Module options: the bonding driver and IPv6.
#include "config/modprobe.h"

#include "support/log.h"

namespace {

XasEthPayload settings(std::uint32_t bonding, bool ipv6Enabled)
{
    XasEthPayload eth{};
    eth.bonding = bonding;
    eth.ipv6_enabled = ipv6Enabled ? 1 : 0;
    return eth;
}

/** The text of a mode that has options. */
std::string completeText(std::uint32_t bonding, bool ipv6Enabled)
{
    const XasNewText text = xasModProbeCfgText(settings(bonding, ipv6Enabled));
    EXPECT_TRUE(text.complete);
    return text.text;
}

} // namespace

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

TEST(ModprobeText, HoldsTheOptionsOfItsModeAndTheIPv6Switch)
{
    xasExpectTexts({
        {"without bonding holds at most the IPv6 switch", completeText(0, true), ""},
        {"without bonding holds at most the IPv6 switch", completeText(0, false), "options ipv6 disable=1\n"},
        {"holds the options of active backup", completeText(1, true),
         "alias netdev-bond0 bonding\n"
         "options bond0 mode=active-backup primary=eth0 miimon=250 "
         "use_carrier=1 downdelay=2500 updelay=2500\n"},
        {"holds the options of link aggregation and the IPv6 switch", completeText(2, false),
         "alias netdev-bond0 bonding\n"
         "options bond0 mode=802.3ad miimon=250 use_carrier=1 downdelay=2500 updelay=2500\n"
         "options ipv6 disable=1\n"},
        {"holds the options of load balancing", completeText(3, true),
         "alias netdev-bond0 bonding\n"
         "options bond0 mode=balance-tlb miimon=250 use_carrier=1 downdelay=2500 updelay=2500\n"},
    });
}
