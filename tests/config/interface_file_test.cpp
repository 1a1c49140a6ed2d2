// Interface files of eth0, eth1 and bond0.
#include "config/interface_file.h"

#include "support/eth.h"
#include "support/log.h"
#include "support/reply.h"

#include <regex>

namespace {

constexpr const char *STATIC_ETH0 = "DEVICE=eth0\nTYPE=Ethernet\nBOOTPROTO=static\nIPADDR=192.168.1.10\n"
                                    "NETMASK=255.255.255.0\nNETWORK=192.168.1.0\nBROADCAST=192.168.1.255\n"
                                    "IPV6INIT=yes\nIPV6ADDR=\nDHCP_HOSTNAME=\nONBOOT=yes\nMTU=1500\n";

/** The text of an interface whose settings are all valid. */
std::string completeText(const XasEthPort &port, std::string_view device = "eth0", bool isSlave = false,
                         std::uint32_t bonding = 0, const std::string &dhcpHostname = "")
{
    XasReplyStatus reply;
    const XasNewText text = xasEthCfgText({port, device, isSlave, bonding}, dhcpHostname, &reply);
    EXPECT_TRUE(text.complete);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    return text.text;
}

/** The line of `key` in a text that has it once. */
std::string lineOf(const std::string &text, const std::string &key)
{
    const std::size_t begin = ("\n" + text).find("\n" + key + "=");
    return begin == std::string::npos ? "" : text.substr(begin, text.find('\n', begin) + 1 - begin);
}

} // namespace

TEST(EthernetText, EndsBehindTheTypeWhenTheAddressSourceIsUnknown)
{
    XasEthPort port = xasTestEth().ports[0];
    port.source = 3;
    XasReplyStatus reply;
    const XasNewText text = xasEthCfgText({port, "bond0", false, 1}, "", &reply);
    EXPECT_FALSE(text.complete);
    EXPECT_EQ(text.text, "DEVICE=bond0\nTYPE=Bonding\n");
    EXPECT_EQ(xasReplyText(reply), "1 Invalid address source");
}

TEST(EthernetText, OfBondingEndsInFrontOfItsOptionsWhenTheModeHasNone)
{
    for (const std::uint32_t bonding : {0U, 4U, 0xFFFFFFFFU}) {
        XasLogCapture log;
        XasReplyStatus reply;
        const XasNewText text = xasEthCfgText({xasTestEth().ports[0], "bond0", false, bonding}, "", &reply);
        EXPECT_FALSE(text.complete);
        EXPECT_EQ(lineOf(text.text, "MTU"), "MTU=1500\n");
        EXPECT_EQ(lineOf(text.text, "BONDING_OPTS"), "");
        EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
        EXPECT_THAT(log.lines(),
                    ElementsAre(xasErrorLine("Error getting Ethernet bonding options string\n")));
    }
}

TEST(EthernetText, OfASlaveHasNothingOfItsOwn)
{
    XasEthPort port = xasTestEth().ports[1];
    port.enabled = 0;
    port.source = 99;
    EXPECT_EQ(completeText(port, "eth1", true, 1, "console"), "DEVICE=eth1\nTYPE=Ethernet\nMASTER=bond0\n"
                                                              "SLAVE=yes\nBOOTPROTO=none\nONBOOT=yes\n");
}

TEST(EthernetText, OfAStaticPort)
{
    EXPECT_EQ(completeText(xasTestEth().ports[0]), STATIC_ETH0);
}

TEST(EthernetText, OfAStaticPortInALargerNetworkWithIPv6AndWithoutStartAtBoot)
{
    XasEthPort port = xasTestEth().ports[1];
    port.enabled = 0;
    xasTestIPv6("2001:db8:0:1::5", port.ipv6);
    port.maskv6 = 64;
    EXPECT_EQ(completeText(port, "eth1"), "DEVICE=eth1\nTYPE=Ethernet\nBOOTPROTO=static\nIPADDR=172.16.37.5\n"
                                          "NETMASK=255.255.240.0\nNETWORK=172.16.32.0\n"
                                          "BROADCAST=172.16.47.255\nIPV6INIT=yes\n"
                                          "IPV6ADDR=2001:db8:0:1::5/64\nDHCP_HOSTNAME=\nONBOOT=no\n"
                                          "MTU=9000\n");
}

TEST(EthernetText, OfABootpPortWithoutAddresses)
{
    XasEthPort port{};
    port.source = XAS_SOURCE_BOOTP;
    EXPECT_EQ(completeText(port), "DEVICE=eth0\nTYPE=Ethernet\nBOOTPROTO=bootp\nIPADDR=0.0.0.0\n"
                                  "NETMASK=0.0.0.0\nNETWORK=0.0.0.0\nBROADCAST=255.255.255.255\n"
                                  "IPV6INIT=yes\nIPV6ADDR=\nDHCP_HOSTNAME=\nONBOOT=no\nMTU=0\n");
}

TEST(EthernetText, OfADhcpPortHoldsTheNameToAskWith)
{
    XasEthPort port{};
    port.enabled = 7;
    port.source = XAS_SOURCE_DHCP;
    port.mtu = 1400;
    EXPECT_EQ(completeText(port, "eth0", false, 0, "console1"), "DEVICE=eth0\nTYPE=Ethernet\nBOOTPROTO=dhcp\n"
                                                                "IPADDR=0.0.0.0\nNETMASK=0.0.0.0\n"
                                                                "NETWORK=0.0.0.0\nBROADCAST=255.255.255.255\n"
                                                                "IPV6INIT=yes\nIPV6ADDR=\n"
                                                                "DHCP_HOSTNAME=console1\nONBOOT=yes\n"
                                                                "MTU=1400\n");
}

TEST(EthernetText, OfBondingInActiveBackupEndsWithItsOptionsInQuotes)
{
    EXPECT_EQ(completeText(xasTestEth().ports[0], "bond0", false, 1),
              "DEVICE=bond0\nTYPE=Bonding\nBOOTPROTO=static\nIPADDR=192.168.1.10\nNETMASK=255.255.255.0\n"
              "NETWORK=192.168.1.0\nBROADCAST=192.168.1.255\nIPV6INIT=yes\nIPV6ADDR=\nDHCP_HOSTNAME=\n"
              "ONBOOT=yes\nMTU=1500\n"
              "BONDING_OPTS=\"mode=active-backup primary=eth0 miimon=250 use_carrier=1 downdelay=2500 "
              "updelay=2500\"\n");
}

TEST(EthernetText, OfBondingHoldsTheOptionsOfTheOtherModesToo)
{
    const XasEthPort port = xasTestEth().ports[0];
    EXPECT_EQ(lineOf(completeText(port, "bond0", false, 2), "BONDING_OPTS"),
              "BONDING_OPTS=\"mode=802.3ad miimon=250 use_carrier=1 downdelay=2500 updelay=2500\"\n");
    EXPECT_EQ(lineOf(completeText(port, "bond0", false, 3), "BONDING_OPTS"),
              "BONDING_OPTS=\"mode=balance-tlb miimon=250 use_carrier=1 downdelay=2500 updelay=2500\"\n");
}

TEST(EthernetText, OfAPortThatIsNoSlaveHasNoBondingOptionsEvenWhileBondingIsOn)
{
    EXPECT_EQ(completeText(xasTestEth().ports[0], "eth0", false, 1), STATIC_ETH0);
}

TEST(EthernetText, TakesAnAddressForSetByAnyOneOfItsBytes)
{
    XasEthPort port = xasTestEth().ports[0];
    port.ipv6[15] = 1;
    port.maskv6 = 128;
    EXPECT_EQ(lineOf(completeText(port), "IPV6ADDR"), "IPV6ADDR=::1/128\n");
    port.ipv6[15] = 0;
    port.ipv6[0] = 0xfe;
    port.maskv6 = 0;
    EXPECT_EQ(lineOf(completeText(port), "IPV6ADDR"), "IPV6ADDR=fe00::/0\n");
}

TEST(EthernetText, WritesPrefixLengthAndMtuAsSigned)
{
    XasEthPort port = xasTestEth().ports[0];
    port.ipv6[0] = 0xfe;
    port.maskv6 = 0xFFFFFFFF;
    port.mtu = 0x80000000;
    const std::string text = completeText(port);
    EXPECT_EQ(lineOf(text, "IPV6ADDR"), "IPV6ADDR=fe00::/-1\n");
    EXPECT_EQ(lineOf(text, "MTU"), "MTU=-2147483648\n");
}

// Whatever bytes a record holds, every line is an assignment of one plain word: a shell that sources the file
// runs nothing. (The root tests source such files with a real shell.)
TEST(EthernetText, OfRandomBytesHoldsNothingButAssignments)
{
    const std::regex assignment{"[A-Z0-9_]+=([A-Za-z0-9.:/-]*|\"[A-Za-z0-9.= _-]*\")"};
    std::mt19937 random{20100121};
    for (int round = 0; round < 2000; ++round) {
        const XasEthPort port = xasTestRandomPort(random);
        const auto bonding = static_cast<std::uint32_t>(random() % 5);
        const bool isSlave = random() % 4 == 0;
        const std::string_view device = !isSlave && random() % 2 == 0 ? "bond0" : "eth1";
        XasReplyStatus reply;
        std::istringstream lines{xasEthCfgText({port, device, isSlave, bonding}, "", &reply).text};
        for (std::string line; std::getline(lines, line);)
            ASSERT_TRUE(std::regex_match(line, assignment)) << line;
    }
}

TEST(EthernetEnableText, AddsNoLineAndKeepsCommentsAndOtherKeys)
{
    constexpr std::string_view TEXT = "#ONBOOT=yes\nONBOOT =yes\n onboot=yes\nONBOOTS=1\nDEVICE=eth0";
    EXPECT_EQ(xasEthEnableText(TEXT, false), TEXT);
}

TEST(EthernetEnableText, ReplacesEveryLineOfItsKey)
{
    EXPECT_EQ(xasEthEnableText("ONBOOT=yes\r\nMTU=1\nONBOOT", false), "ONBOOT=no\nMTU=1\nONBOOT=no\n");
    EXPECT_EQ(xasEthEnableText("ONBOOT=maybe\nONBOOT=\n", true), "ONBOOT=yes\nONBOOT=yes\n");
}
