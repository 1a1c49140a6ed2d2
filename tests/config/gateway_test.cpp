// Gateway precedence and the alternate gateway.
#include "config/gateway.h"

#include "support/eth.h"
#include "support/test.h"

#include <initializer_list>

namespace {

XasEthPayload values()
{
    XasEthPayload eth{};
    eth.alt_gateway = xasTestIPv4("192.168.1.2");
    eth.ping_ip = xasTestIPv4("10.0.0.1");
    eth.ping_ifc = 1;
    eth.ping_delay = 10;
    eth.ping_failed = 3;
    return eth;
}

XasEthPayload preferring(std::uint32_t precedence)
{
    XasEthPayload eth = values();
    eth.gw_precedence = precedence;
    return eth;
}

} // namespace

TEST(GatewayPrecedence, IsNeitherPortForAnyOtherValue)
{
    for (const std::uint32_t precedence : {0U, 3U, 5U, 0xFFFFFFFFU})
        EXPECT_EQ(xasGWPrecText(preferring(precedence)), "DHCP_GW_PRECEDENCE=0\n");
}

TEST(GatewayPrecedence, NamesItsPort)
{
    EXPECT_EQ(xasGWPrecText(preferring(1)), "DHCP_GW_PRECEDENCE=1\n");
    EXPECT_EQ(xasGWPrecText(preferring(2)), "DHCP_GW_PRECEDENCE=2\n");
}

TEST(AlternateGateway, AddsNoMissingKeyAndKeepsEverythingElse)
{
    EXPECT_EQ(xasAltGWText("# detection\n#DGD_GATEWAY=x\n DGD_GATEWAY=x\nDGD_PING_IP=x\n\nOTHER=1", values()),
              "# detection\n#DGD_GATEWAY=x\n DGD_GATEWAY=x\nDGD_PING_IP=10.0.0.1\n\nOTHER=1");
}

TEST(AlternateGateway, ReplacesEveryKey)
{
    EXPECT_EQ(xasAltGWText("# detection\nDGD_GATEWAY=\nDGD_PING_IP=x\r\nDGD_PING_IFC=eth7\n"
                           "DGD_PING_DELAY=0\nDGD_PING_FAILED",
                           values()),
              "# detection\nDGD_GATEWAY=192.168.1.2\nDGD_PING_IP=10.0.0.1\nDGD_PING_IFC=eth0\n"
              "DGD_PING_DELAY=10\nDGD_PING_FAILED=3\n");
}

TEST(AlternateGateway, PingsThroughTheSecondPortUnlessTheFirstIsNamed)
{
    for (const std::uint8_t interface : std::initializer_list<std::uint8_t>{0, 2, 255}) {
        XasEthPayload altGateway = values();
        altGateway.ping_ifc = interface;
        EXPECT_EQ(xasAltGWText("DGD_PING_IFC=eth0\n", altGateway), "DGD_PING_IFC=eth1\n");
    }
}

TEST(AlternateGateway, WritesDelayAndFailuresAsUnsigned)
{
    XasEthPayload altGateway = values();
    altGateway.ping_delay = 200;
    altGateway.ping_failed = 255;
    EXPECT_EQ(xasAltGWText("DGD_PING_FAILED=1\nDGD_PING_DELAY=1\n", altGateway),
              "DGD_PING_FAILED=255\nDGD_PING_DELAY=200\n");
}
