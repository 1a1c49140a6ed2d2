// Gateway precedence and the alternate gateway.
#include "config/gateway.h"

#include "support/eth.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"
#include "support/reply.h"

#include <cerrno>
#include <gmock/gmock.h>
#include <initializer_list>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

XasAltGateway values()
{
    return {.gateway = xasTestIPv4("192.168.1.2"),
            .pingAddress = xasTestIPv4("10.0.0.1"),
            .pingInterface = 1,
            .pingDelay = 10,
            .pingFailures = 3};
}

class GatewayFiles : public XasFilesTest {
  protected:
    void expectFailure(const char *answer, const std::string &logged)
    {
        EXPECT_EQ(xasReplyText(reply), answer);
        EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine(logged)));
    }

    XasLogCapture log;
    XasReplyStatus reply;
};

using GatewayFilesDeathTest = GatewayFiles;

} // namespace

TEST_F(GatewayFilesDeathTest, NeedTheirPaths)
{
    EXPECT_DEATH(xasEditGWPrecFile(nullptr, 1, &reply), "cfgFileName != \\(\\(void \\*\\)0\\)");
    EXPECT_DEATH(xasEditAltGWFile(nullptr, values(), &reply), "cfgFileName != \\(\\(void \\*\\)0\\)");
}

TEST_F(GatewayFiles, PrecedenceMustExist)
{
    const std::string path = dir.path("precedence");
    EXPECT_EQ(xasEditGWPrecFile(path.c_str(), 1, &reply), 1);
    expectFailure("2 Error opening dhcp gateway precedenc config file",
                  "Error opening config file \"" + path + "\"\n");
    EXPECT_THAT(dir.names(), IsEmpty());
}

TEST_F(GatewayFiles, PrecedenceStaysWhenItCannotBeSaved)
{
    const std::string path = dir.write("precedence", "old\n");
    const XasFault fault{"rename", EIO, 1};
    EXPECT_EQ(xasEditGWPrecFile(path.c_str(), 1, &reply), 1);
    expectFailure("3 Error saving new hostname config file",
                  "Error renaming new config file \"" + path + "\"\n");
    EXPECT_EQ(dir.read("precedence"), "old\n");
}

TEST_F(GatewayFiles, PrecedenceForgetsItsEarlierContent)
{
    const std::string path = dir.write("precedence", "# comment\nDHCP_GW_PRECEDENCE=1\nOTHER=2\n");
    EXPECT_EQ(xasEditGWPrecFile(path.c_str(), 5, &reply), 0);
    EXPECT_EQ(dir.read("precedence"), "DHCP_GW_PRECEDENCE=0\n");
    EXPECT_EQ(dir.read("precedence.old"), "# comment\nDHCP_GW_PRECEDENCE=1\nOTHER=2\n");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(GatewayFiles, AlternateGatewayMustExist)
{
    const std::string path = dir.path("alternate");
    EXPECT_EQ(xasEditAltGWFile(path.c_str(), values(), &reply), 1);
    expectFailure("2 Error opening alternate gateway config file",
                  "Error opening config file \"" + path + "\"\n");
}

TEST_F(GatewayFiles, AlternateGatewayStaysWhenItCannotBeSaved)
{
    const std::string path = dir.write("alternate", "DGD_GATEWAY=1.2.3.4\n");
    const XasFault fault{"rename", EIO, 1};
    EXPECT_EQ(xasEditAltGWFile(path.c_str(), values(), &reply), 1);
    expectFailure("3 Error saving new altenate gateway config file",
                  "Error renaming new config file \"" + path + "\"\n");
    EXPECT_EQ(dir.read("alternate"), "DGD_GATEWAY=1.2.3.4\n");
}

TEST_F(GatewayFiles, AlternateGatewayIsReplacedAndItsOldContentKept)
{
    const std::string path = dir.write("alternate", "DGD_GATEWAY=1.2.3.4\n");
    EXPECT_EQ(xasEditAltGWFile(path.c_str(), values(), &reply), 0);
    EXPECT_EQ(dir.read("alternate"), "DGD_GATEWAY=192.168.1.2\n");
    EXPECT_EQ(dir.read("alternate.old"), "DGD_GATEWAY=1.2.3.4\n");
    EXPECT_THAT(log.lines(), IsEmpty());
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
