// Gateway precedence and the alternate gateway.
#include "config/gateway.h"

#include "support/eth.h"

#include <gtest/gtest.h>
#include <initializer_list>

namespace {

XasAltGateway values()
{
    return {.gateway = xasTestIPv4("192.168.1.2"),
            .pingAddress = xasTestIPv4("10.0.0.1"),
            .pingInterface = 1,
            .pingDelay = 10,
            .pingFailures = 3};
}

} // namespace

TEST(GatewayFilesDeathTest, NeedTheirPaths)
{
    XasReplyStatus reply;
    EXPECT_DEATH(xasEditGWPrecFile(nullptr, 1, &reply), "cfgFileName != \\(\\(void \\*\\)0\\)");
    EXPECT_DEATH(xasEditAltGWFile(nullptr, values(), &reply), "cfgFileName != \\(\\(void \\*\\)0\\)");
}

TEST(GatewayPrecedence, IsNeitherPortForAnyOtherValue)
{
    for (const std::uint32_t precedence : {0U, 3U, 5U, 0xFFFFFFFFU})
        EXPECT_EQ(xasGWPrecText(precedence), "DHCP_GW_PRECEDENCE=0\n");
}

TEST(GatewayPrecedence, NamesItsPort)
{
    EXPECT_EQ(xasGWPrecText(1), "DHCP_GW_PRECEDENCE=1\n");
    EXPECT_EQ(xasGWPrecText(2), "DHCP_GW_PRECEDENCE=2\n");
}

TEST(AlternateGateway, OfAnEmptyFileStaysEmpty)
{
    EXPECT_EQ(xasAltGWText("", values()), "");
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
        XasAltGateway altGateway = values();
        altGateway.pingInterface = interface;
        EXPECT_EQ(xasAltGWText("DGD_PING_IFC=eth0\n", altGateway), "DGD_PING_IFC=eth1\n");
    }
}

TEST(AlternateGateway, WritesDelayAndFailuresAsUnsigned)
{
    XasAltGateway altGateway = values();
    altGateway.pingDelay = 200;
    altGateway.pingFailures = 255;
    EXPECT_EQ(xasAltGWText("DGD_PING_FAILED=1\nDGD_PING_DELAY=1\n", altGateway),
              "DGD_PING_FAILED=255\nDGD_PING_DELAY=200\n");
}
