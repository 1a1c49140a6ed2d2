// The global network file: host name, default gateways, IPv6 switch.
#include "config/network_file.h"

#include "support/eth.h"
#include "support/test.h"
#include "wire/address.h"

namespace {

XasNetInfo gateways(const char *gateway, const char *gatewayIPv6 = nullptr)
{
    XasNetInfo netInfo;
    netInfo.setGateway = true;
    netInfo.gateway = gateway != nullptr ? xasTestIPv4(gateway) : XAS_NO_IPV4;
    if (gatewayIPv6 != nullptr)
        xasTestIPv6(gatewayIPv6, &netInfo.gatewayIPv6.sin6_addr);
    return netInfo;
}

XasNetInfo hostname(const std::string &name)
{
    XasNetInfo netInfo;
    netInfo.setHostname = true;
    netInfo.hostname = name;
    return netInfo;
}

constexpr std::string_view WHOLE_FILE = "# global\n"
                                        "NETWORKING=yes\n"
                                        "NETWORKING_IPV6=no\n"
                                        "HOSTNAME=old.example.net\n"
                                        "GATEWAY=1.2.3.4\n"
                                        "IPV6_GATEWAY=fe80::1\n"
                                        "FORWARD_IPV4=no\n";

} // namespace

TEST(NetworkText, StaysAsItIsWithNothingToSet)
{
    XasNetInfo netInfo = gateways("10.0.0.1", "2001:db8::1");
    netInfo.setGateway = false;
    netInfo.hostname = "console1";
    EXPECT_EQ(xasNetCfgText(WHOLE_FILE, netInfo), WHOLE_FILE);
}

TEST(NetworkText, ChangesNothingButWhatIsSet)
{
    xasExpectTexts({
        {"gets no host name that it did not have", xasNetCfgText("", hostname("console1")), ""},
        {"gets no host name that it did not have",
         xasNetCfgText("#HOSTNAME=x\nHOSTNAME =x\n", hostname("console1")), "#HOSTNAME=x\nHOSTNAME =x\n"},
        {"loses the gateways that are none", xasNetCfgText(WHOLE_FILE, gateways(nullptr)),
         "# global\n"
         "NETWORKING=yes\n"
         "NETWORKING_IPV6=no\n"
         "HOSTNAME=old.example.net\n"
         "FORWARD_IPV4=no\n"},
        {"gets only the missing one of two gateways at its end",
         xasNetCfgText("IPV6_GATEWAY=fe80::1\nX=1\n", gateways("10.0.0.1", "2001:db8::1")),
         "IPV6_GATEWAY=2001:db8::1\nX=1\nGATEWAY=10.0.0.1\n"},
        {"takes an all zero i pv4 gateway for one", xasNetCfgText("GATEWAY=1.2.3.4\n", gateways("0.0.0.0")),
         "GATEWAY=0.0.0.0\n"},
        {"joins what is appended to a last line without line feed",
         xasNetCfgText("X=1", gateways("10.0.0.1")), "X=1GATEWAY=10.0.0.1\n"},
        {"writes a last line without line feed anew with one",
         xasNetCfgText("X=1\nGATEWAY=1.2.3.4", gateways("10.0.0.1")), "X=1\nGATEWAY=10.0.0.1\n"},
    });
}

TEST(NetworkText, ChangesNothingButTheHostName)
{
    EXPECT_EQ(xasNetCfgText(WHOLE_FILE, hostname("console1.example.org")), "# global\n"
                                                                           "NETWORKING=yes\n"
                                                                           "NETWORKING_IPV6=no\n"
                                                                           "HOSTNAME=console1.example.org\n"
                                                                           "GATEWAY=1.2.3.4\n"
                                                                           "IPV6_GATEWAY=fe80::1\n"
                                                                           "FORWARD_IPV4=no\n");
}

TEST(NetworkText, GetsBothGatewaysWhereTheyStoodAndTheIPv6Switch)
{
    XasNetInfo netInfo = gateways("10.0.0.1", "2001:db8::1");
    netInfo.ipv6Enabled = 2;
    EXPECT_EQ(xasNetCfgText(WHOLE_FILE, netInfo), "# global\n"
                                                  "NETWORKING=yes\n"
                                                  "NETWORKING_IPV6=yes\n"
                                                  "HOSTNAME=old.example.net\n"
                                                  "GATEWAY=10.0.0.1\n"
                                                  "IPV6_GATEWAY=2001:db8::1\n"
                                                  "FORWARD_IPV4=no\n");
}

TEST(NetworkText, GetsTheGatewaysAtItsEndWhereItHadNone)
{
    EXPECT_EQ(xasNetCfgText("NETWORKING=yes\n", gateways("10.0.0.1", "2001:db8::1")),
              "NETWORKING=yes\nGATEWAY=10.0.0.1\nIPV6_GATEWAY=2001:db8::1\n");
    EXPECT_EQ(xasNetCfgText("", gateways("10.0.0.1")), "GATEWAY=10.0.0.1\n");
    EXPECT_EQ(xasNetCfgText("", gateways(nullptr, "::1")), "IPV6_GATEWAY=::1\n");
    EXPECT_EQ(xasNetCfgText("", gateways(nullptr)), "");
}

TEST(NetworkText, GetsNoIPv6SwitchThatItDidNotHave)
{
    XasNetInfo netInfo = gateways(nullptr);
    netInfo.ipv6Enabled = 1;
    EXPECT_EQ(xasNetCfgText("NETWORKING=yes\n", netInfo), "NETWORKING=yes\n");
}

TEST(NetworkText, KeepsOverlongLinesAndOtherSystemsLineEnds)
{
    const std::string longLine = "X=" + std::string(1500, 'x') + "\r\n";
    EXPECT_EQ(xasNetCfgText(longLine + "GATEWAY=1.2.3.4\r\n", gateways("10.0.0.1")),
              longLine + "GATEWAY=10.0.0.1\n");
}
