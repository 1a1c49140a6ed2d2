// The handler of XMSG_ETH: what is its own beside what all settings share.
#include "config/ethernet.h"

#include "support/apps.h"
#include "support/eth.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"
#include "support/message.h"
#include "support/reply.h"

namespace {

/** The TYPEs in the order of editing. */
const std::array<std::string, 8> TYPES = {"gatewayprec", "kernel", "modprobe", "bond0",
                                          "eth0",        "eth1",   "network",  "altgateway"};

std::string oldText(const std::string &type)
{
    if (type == "kernel")
        return "# parameters\nnet.ipv4.ip_forward=0\n";
    if (type == "network")
        return "NETWORKING=yes\nNETWORKING_IPV6=yes\nHOSTNAME=console\n";
    if (type == "altgateway")
        return "DGD_GATEWAY=1.2.3.4\nDGD_PING_DELAY=1\n";
    return "old " + type + "\n";
}

class EthUpdate : public XasFilesTest {
  protected:
    EthUpdate()
    {
        eth.bonding = 1;
        for (const std::string &type : TYPES)
            described.emplace_back(type, dir.path(type));
        restoreFiles();
    }

    void restoreFiles() const
    {
        for (const std::string &type : TYPES) {
            dir.write(type, oldText(type));
            std::filesystem::remove(dir.path(type + ".old"));
        }
    }

    int update()
    {
        XasMessage msg = XasMessageBuilder{XMSG_ETH}.payload(eth);
        const XasCfgFileList cfgFiles = xasTestCfgFiles(described);
        reply = {};
        return xasUpdateEthCfg(&msg, &cfgFiles, &reply);
    }

    void removeType(std::string_view type)
    {
        std::erase_if(described, [&](const auto &entry) { return entry.first == type; });
    }

    /** Keeps the temporary of a file from being made. */
    void block(const std::string &type) const { dir.write(type + ".tmp/in-the-way", ""); }

    [[nodiscard]] XasLogLine blockedLine(const std::string &type) const
    {
        return xasErrorLine("Error opening output file \"" + dir.path(type) + ".tmp\"\n");
    }

    [[nodiscard]] XasLogLine notRestoredLine(const std::string &type) const
    {
        return xasErrorLine("Error restoring old config file \"" + dir.path(type) + "\"\n");
    }

    /** The types whose files hold new content. What was rolled back is as if it had never been changed. */
    std::vector<std::string> newFiles()
    {
        std::vector<std::string> found;
        for (const std::string &type : TYPES) {
            if (dir.read(type) != oldText(type)) {
                found.push_back(type);
                EXPECT_EQ(dir.read(type + ".old"), oldText(type));
            } else {
                EXPECT_FALSE(dir.has(type + ".old")) << type;
            }
        }
        return found;
    }

    XasEthPayload eth = xasTestEth();
    std::vector<std::pair<std::string, std::string>> described;
    XasLogCapture log;
    XasReplyStatus reply;
};

/** A save of a file that is there renames twice: the backup, then the new file. */
constexpr unsigned RENAMES_PER_SAVE = 2;

} // namespace

TEST_F(EthUpdate, WithAnUnknownBondingModeRollsBackWhatCameBeforeTheModules)
{
    eth.bonding = 4;
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error getting Ethernet bonding options string\n"),
                                         xasErrorLine("Error editing modprobe config file\n")));
    EXPECT_THAT(newFiles(), IsEmpty());
    EXPECT_EQ(dir.read("modprobe.tmp"), "alias netdev-bond0 bonding\n");
}

TEST_F(EthUpdate, WithAnUnknownAddressSourceOfTheFirstPortFailsAtTheBondWhileBonding)
{
    eth.ports[0].source = 3;
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Invalid address source");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error editing config file for bond0\n")));
    EXPECT_THAT(newFiles(), IsEmpty());
}

TEST_F(EthUpdate, WithAnUnknownAddressSourceOfTheSecondPortFailsThere)
{
    eth.bonding = 0;
    eth.ports[1].source = 3;
    dir.write("bond0.old", "bond0 of an earlier save\n");
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Invalid address source");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error editing config file for Ethernet 1\n")));
    EXPECT_EQ(dir.read("eth0"), "old eth0\n");
    EXPECT_EQ(dir.read("eth1"), "old eth1\n");
    EXPECT_EQ(dir.read("eth1.tmp"), "DEVICE=eth1\nTYPE=Ethernet\n");
    EXPECT_EQ(dir.read("bond0"), "bond0 of an earlier save\n");
}

TEST_F(EthUpdate, IgnoresTheAddressSourceOfASlave)
{
    eth.ports[1].source = 3;
    EXPECT_EQ(update(), 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
}

TEST_F(EthUpdate, HasDeletedTheBondWithoutBondingAndCannotRollItBack)
{
    eth.bonding = 0;
    block("eth0");
    EXPECT_EQ(update(), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(blockedLine("eth0"), xasErrorLine("Error editing config file for Ethernet 0\n"),
                            notRestoredLine("bond0")));
    EXPECT_FALSE(dir.has("bond0"));
    EXPECT_EQ(dir.read("modprobe"), "old modprobe\n");
}

TEST_F(EthUpdate, RollsBackOnlyFilledPortsWhenTheNetworkFileFails)
{
    struct Filling {
        std::uint32_t first, second;
        std::vector<std::string> newFiles;
    };
    const Filling fillings[] = {{0, 0x80000000U, {"eth0", "altgateway"}},
                                {0x100, 0, {"eth1", "altgateway"}},
                                {0, 0, {"eth0", "eth1", "altgateway"}}};
    block("network");
    for (const Filling &filling : fillings) {
        restoreFiles();
        eth.ports[0].marker = filling.first;
        eth.ports[1].marker = filling.second;
        EXPECT_EQ(update(), 1);
        EXPECT_EQ(newFiles(), filling.newFiles);
    }
}

TEST_F(EthUpdate, FailsForTheNetworkFileAlsoWithoutAnAlternateGateway)
{
    const XasFault fault{"rename", EIO, RENAMES_PER_SAVE * 6 + 1, 1};
    removeType("altgateway");
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(xasReplyText(reply), "3 Error saving new network config file");
}

TEST_F(EthUpdate, ReportsTheLastOfTwoFailures)
{
    block("network");
    const XasFault fault{"rename", EIO, RENAMES_PER_SAVE * 6 + 6 + 1, 1};
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(xasReplyText(reply), "3 Error saving new altenate gateway config file");
    EXPECT_THAT(
        log.lines(),
        ElementsAre(blockedLine("network"), xasErrorLine("Error editing network config file\n"),
                    xasErrorLine("Error renaming new config file \"" + dir.path("altgateway") + "\"\n"),
                    xasErrorLine("Error editing network config file\n")));
    EXPECT_THAT(newFiles(), IsEmpty());
}

TEST_F(EthUpdate, MakesBothPortsSlavesInEveryBondingMode)
{
    for (const std::uint32_t mode : {2U, 3U}) {
        eth.bonding = mode;
        EXPECT_EQ(update(), 0) << mode;
        EXPECT_EQ(dir.read("eth0"),
                  "DEVICE=eth0\nTYPE=Ethernet\nMASTER=bond0\nSLAVE=yes\nBOOTPROTO=none\nONBOOT=yes\n");
        EXPECT_EQ(dir.read("eth1"),
                  "DEVICE=eth1\nTYPE=Ethernet\nMASTER=bond0\nSLAVE=yes\nBOOTPROTO=none\nONBOOT=yes\n");
        EXPECT_TRUE(dir.has("bond0")) << mode;
    }
}

TEST_F(EthUpdate, PutsEveryFieldOfTheRecordWhereItBelongs)
{
    dir.write("kernel", "net.ipv4.tcp_keepalive_time=\nnet.ipv4.tcp_keepalive_probes=\n"
                        "net.ipv4.tcp_keepalive_intvl=\nnet.ipv4.ip_forward=\n");
    dir.write("altgateway", "DGD_GATEWAY=\nDGD_PING_IP=\nDGD_PING_IFC=\nDGD_PING_DELAY=\nDGD_PING_FAILED=\n");
    dir.write("network", "NETWORKING_IPV6=\n");
    XasMessage msg = XasMessageBuilder{XMSG_ETH}.set(
        "ipv6_enabled=1 gateway=10.1.2.3 gateway_ipv6=2001:db8::9 gw_precedence=1 alt_gateway=10.1.2.4 "
        "ping_ip=10.1.2.5 ping_ifc=1 ping_delay=11 ping_failed=12 timer=1300 probes=14 interval=15 "
        "ip_forwarding=1");
    const XasCfgFileList cfgFiles = xasTestCfgFiles(described);
    EXPECT_EQ(xasUpdateEthCfg(&msg, &cfgFiles, &reply), 0);
    EXPECT_EQ(dir.read("gatewayprec"), "DHCP_GW_PRECEDENCE=1\n");
    EXPECT_EQ(dir.read("kernel"), "net.ipv4.tcp_keepalive_time = 1300\nnet.ipv4.tcp_keepalive_probes = 14\n"
                                  "net.ipv4.tcp_keepalive_intvl = 15\nnet.ipv4.ip_forward = 1\n");
    EXPECT_EQ(dir.read("network"), "NETWORKING_IPV6=yes\nGATEWAY=10.1.2.3\nIPV6_GATEWAY=2001:db8::9\n");
    EXPECT_EQ(dir.read("altgateway"), "DGD_GATEWAY=10.1.2.4\nDGD_PING_IP=10.1.2.5\nDGD_PING_IFC=eth0\n"
                                      "DGD_PING_DELAY=11\nDGD_PING_FAILED=12\n");
}

TEST_F(EthUpdate, TakesTheBondAwayWhenBondingIsSwitchedOff)
{
    EXPECT_EQ(update(), 0);
    EXPECT_TRUE(dir.has("bond0"));
    eth.bonding = 0;
    EXPECT_EQ(update(), 0);
    EXPECT_FALSE(dir.has("bond0"));
    EXPECT_EQ(dir.read("bond0.old"), "old bond0\n");
    EXPECT_EQ(dir.read("modprobe"), "");
    EXPECT_EQ(update(), 0);
    EXPECT_THAT(log.lines(), IsEmpty());
}
