// Gateway precedence and the alternate gateway.
#include "config/gateway.h"

#include "support/eth.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"

#include <cerrno>
#include <gmock/gmock.h>
#include <initializer_list>

using testing::ElementsAre;
using testing::IsEmpty;

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

class GatewayFiles : public XasFilesTest {
  protected:
    void expectFailure(std::uint32_t rcode, const char *reason, const std::string &logged)
    {
        EXPECT_EQ(reply.rcode, rcode);
        EXPECT_EQ(reply.rstr, reason);
        EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine(logged)));
    }

    int editPrecedence(const char *path, std::uint32_t precedence)
    {
        const XasEthPayload eth = preferring(precedence);
        return xasEditGWPrecFile(path, &eth, &reply);
    }

    int editAlternate(const char *path)
    {
        const XasEthPayload eth = values();
        return xasEditAltGWFile(path, &eth, &reply);
    }

    XasLogCapture log;
    XasReplyStatus reply;
};

using GatewayFilesDeathTest = GatewayFiles;

} // namespace

TEST_F(GatewayFilesDeathTest, NeedTheirPaths)
{
    EXPECT_DEATH(editPrecedence(nullptr, 1), "cfgFileName != \\(\\(void \\*\\)0\\)");
    EXPECT_DEATH(editAlternate(nullptr), "cfgFileName != \\(\\(void \\*\\)0\\)");
}

TEST_F(GatewayFiles, PrecedenceMustExist)
{
    const std::string path = dir.path("precedence");
    EXPECT_EQ(editPrecedence(path.c_str(), 1), 1);
    expectFailure(2, "Error opening dhcp gateway precedenc config file",
                  "Error opening config file \"" + path + "\"\n");
    EXPECT_THAT(dir.names(), IsEmpty());
}

TEST_F(GatewayFiles, PrecedenceStaysWhenItCannotBeSaved)
{
    const std::string path = dir.write("precedence", "old\n");
    const XasFault fault{"rename", EIO, 1};
    EXPECT_EQ(editPrecedence(path.c_str(), 1), 1);
    expectFailure(3, "Error saving new hostname config file",
                  "Error renaming new config file \"" + path + "\"\n");
    EXPECT_EQ(dir.read("precedence"), "old\n");
}

TEST_F(GatewayFiles, PrecedenceForgetsItsEarlierContent)
{
    const std::string path = dir.write("precedence", "# comment\nDHCP_GW_PRECEDENCE=1\nOTHER=2\n");
    EXPECT_EQ(editPrecedence(path.c_str(), 5), 0);
    EXPECT_EQ(dir.read("precedence"), "DHCP_GW_PRECEDENCE=0\n");
    EXPECT_EQ(dir.read("precedence.old"), "# comment\nDHCP_GW_PRECEDENCE=1\nOTHER=2\n");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(GatewayFiles, AlternateGatewayMustExist)
{
    const std::string path = dir.path("alternate");
    EXPECT_EQ(editAlternate(path.c_str()), 1);
    expectFailure(2, "Error opening alternate gateway config file",
                  "Error opening config file \"" + path + "\"\n");
}

TEST_F(GatewayFiles, AlternateGatewayStaysWhenItCannotBeSaved)
{
    const std::string path = dir.write("alternate", "DGD_GATEWAY=1.2.3.4\n");
    const XasFault fault{"rename", EIO, 1};
    EXPECT_EQ(editAlternate(path.c_str()), 1);
    expectFailure(3, "Error saving new altenate gateway config file",
                  "Error renaming new config file \"" + path + "\"\n");
    EXPECT_EQ(dir.read("alternate"), "DGD_GATEWAY=1.2.3.4\n");
}

TEST_F(GatewayFiles, AlternateGatewayIsReplacedAndItsOldContentKept)
{
    const std::string path = dir.write("alternate", "DGD_GATEWAY=1.2.3.4\n");
    EXPECT_EQ(editAlternate(path.c_str()), 0);
    EXPECT_EQ(dir.read("alternate"), "DGD_GATEWAY=192.168.1.2\n");
    EXPECT_EQ(dir.read("alternate.old"), "DGD_GATEWAY=1.2.3.4\n");
    EXPECT_THAT(log.lines(), IsEmpty());
}

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
