// The handler of XMSG_ETH: eight files, and what happens to the others when one fails.
#include "config/ethernet.h"

#include "support/apps.h"
#include "support/eth.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"
#include "support/message.h"
#include "support/reply.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

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
        for (const std::string &type : TYPES) {
            dir.write(type, oldText(type));
            described.emplace_back(type, dir.path(type));
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

using EthUpdateDeathTest = EthUpdate;

/** A step whose failure ends the update. */
struct Step {
    const char *type;
    const char *missingLog;
    const char *missingReason;
    const char *openReason;
    const char *saveReason;
    const char *editLog;
    std::vector<std::string> restored; /**< in this order, whatever the failure */
};

void PrintTo(const Step &step, std::ostream *out)
{
    *out << step.type;
}

class EthUpdateStep : public EthUpdate, public testing::WithParamInterface<Step> {
  protected:
    /** How many files are saved before this step. */
    static unsigned savedBefore()
    {
        return static_cast<unsigned>(std::ranges::find(TYPES, GetParam().type) - TYPES.begin());
    }

    /** The lines of roll-backs that all fail, in order. */
    [[nodiscard]] std::vector<XasLogLine> notRestoredLines() const
    {
        std::vector<XasLogLine> lines;
        for (const std::string &type : GetParam().restored)
            lines.push_back(notRestoredLine(type));
        return lines;
    }
};

/** A save of a file that is there renames twice: the backup, then the new file. */
constexpr unsigned RENAMES_PER_SAVE = 2;

const std::array STEPS = {
    Step{"gatewayprec",
         "Error determining gateway precedence config file\n",
         "Error determining gateway precedence config file",
         "Error opening dhcp gateway precedenc config file",
         "Error saving new hostname config file",
         "Error editing dhcp gateway precedence config file\n",
         {}},
    Step{"kernel",
         "Error determining config file for kernel parameters\n",
         "Error determining config file for kernel parameters",
         "Error opening kernel config file",
         "Error saving new kernel config file",
         "Error editing kernel config file\n",
         {"gatewayprec"}},
    Step{"modprobe",
         "Error determining config file for modprobe parameters\n",
         "Error determining config file for modprobe parameters",
         "Error opening modprobe config file",
         "Error saving new modprobe config file",
         "Error editing modprobe config file\n",
         {"gatewayprec", "kernel"}},
    Step{"bond0",
         "Error determining config file for bonding interface\n",
         "Error determining config file for bonding interface",
         "Error opening ethernet config file",
         "Error saving new ethernet config file",
         "Error editing config file for bond0\n",
         {"gatewayprec", "kernel", "modprobe"}},
    Step{"eth0",
         "Error determining config file for Ethernet 0\n",
         "Error determining Eth0 config file",
         "Error opening ethernet config file",
         "Error saving new ethernet config file",
         "Error editing config file for Ethernet 0\n",
         {"gatewayprec", "kernel", "modprobe", "bond0"}},
    Step{"eth1",
         "Error determining config file for Ethernet 1\n",
         "Error determining Eth1 config file",
         "Error opening ethernet config file",
         "Error saving new ethernet config file",
         "Error editing config file for Ethernet 1\n",
         {"gatewayprec", "kernel", "modprobe", "eth0", "bond0"}},
};

} // namespace

TEST_F(EthUpdateDeathTest, NeedsItsArgumentsAndItsType)
{
    XasMessage msg = XasMessageBuilder{XMSG_ETH};
    const XasCfgFileList none;
    EXPECT_DEATH(xasUpdateEthCfg(nullptr, &none, &reply), "msg != \\(\\(void \\*\\)0\\)");
    EXPECT_DEATH(xasUpdateEthCfg(&msg, nullptr, &reply), "cfgFiles != \\(\\(void \\*\\)0\\)");
    msg.xH.msgtype = XMSG_DNS;
    EXPECT_DEATH(xasUpdateEthCfg(&msg, &none, &reply), "XMSG_ETH == msg->xH.msgtype");
}

TEST_P(EthUpdateStep, EndsTheUpdateWhenItsFileIsNotInTheList)
{
    const Step &step = GetParam();
    removeType(step.type);
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(xasReplyText(reply), std::string{"1 "} + step.missingReason);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine(step.missingLog)));
    EXPECT_THAT(newFiles(), IsEmpty());
}

TEST_P(EthUpdateStep, RollsBackInItsOrderWhenItsFileIsNotInTheList)
{
    const Step &step = GetParam();
    removeType(step.type);
    const XasFault fault{"rename", EIO, RENAMES_PER_SAVE * savedBefore()};
    EXPECT_EQ(update(), 1);
    std::vector<XasLogLine> expected = notRestoredLines();
    expected.insert(expected.begin(), xasErrorLine(step.missingLog));
    EXPECT_THAT(log.lines(), ElementsAreArray(expected));
    EXPECT_EQ(newFiles().size(), savedBefore());
}

TEST_P(EthUpdateStep, EndsTheUpdateWhenItsFileCannotBeOpened)
{
    const Step &step = GetParam();
    block(step.type);
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(xasReplyText(reply), std::string{"2 "} + step.openReason);
    EXPECT_THAT(log.lines(), ElementsAre(blockedLine(step.type), xasErrorLine(step.editLog)));
    EXPECT_THAT(newFiles(), IsEmpty());
}

TEST_P(EthUpdateStep, RollsBackInItsOrderWhenItsFileCannotBeOpened)
{
    const Step &step = GetParam();
    block(step.type);
    const XasFault fault{"rename", EIO, RENAMES_PER_SAVE * savedBefore()};
    EXPECT_EQ(update(), 1);
    std::vector<XasLogLine> expected = notRestoredLines();
    expected.insert(expected.begin(), {blockedLine(step.type), xasErrorLine(step.editLog)});
    EXPECT_THAT(log.lines(), ElementsAreArray(expected));
    EXPECT_EQ(newFiles().size(), savedBefore());
}

TEST_P(EthUpdateStep, EndsTheUpdateWhenItsFileCannotBeSaved)
{
    const Step &step = GetParam();
    const XasFault fault{"rename", EIO, RENAMES_PER_SAVE * savedBefore() + 1, 1};
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(xasReplyText(reply), std::string{"3 "} + step.saveReason);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error renaming new config file \"" + dir.path(step.type) + "\"\n"),
                            xasErrorLine(step.editLog)));
    for (const std::string &type : TYPES) {
        EXPECT_EQ(dir.read(type), oldText(type));
        // The failed save had made its backup; its file is not among those rolled back.
        EXPECT_EQ(dir.has(type + ".old"), type == step.type) << type;
    }
}

INSTANTIATE_TEST_SUITE_P(Steps, EthUpdateStep, testing::ValuesIn(STEPS),
                         [](const auto &test) { return std::string{test.param.type}; });

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

TEST_F(EthUpdate, GoesOnToTheAlternateGatewayWhenTheNetworkFileFails)
{
    block("network");
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(xasReplyText(reply), "2 Error opening network config file");
    EXPECT_THAT(log.lines(),
                ElementsAre(blockedLine("network"), xasErrorLine("Error editing network config file\n")));
    EXPECT_THAT(newFiles(), ElementsAre("altgateway"));
    EXPECT_EQ(dir.read("altgateway"), "DGD_GATEWAY=192.168.1.2\nDGD_PING_DELAY=10\n");
}

TEST_F(EthUpdate, RollsBackOnlyFilledPortsWhenTheNetworkFileFails)
{
    block("network");
    eth.ports[0].marker = 0;
    eth.ports[1].marker = 0x80000000U;
    EXPECT_EQ(update(), 1);
    EXPECT_THAT(newFiles(), ElementsAre("eth0", "altgateway"));
}

TEST_F(EthUpdate, RollsBackOnlyTheFirstPortWhenTheSecondIsNotFilled)
{
    block("network");
    eth.ports[0].marker = 0x100;
    eth.ports[1].marker = 0;
    EXPECT_EQ(update(), 1);
    EXPECT_THAT(newFiles(), ElementsAre("eth1", "altgateway"));
}

TEST_F(EthUpdate, RollsBackNoPortWhenNeitherIsFilled)
{
    block("network");
    eth.ports[0].marker = 0;
    eth.ports[1].marker = 0;
    EXPECT_EQ(update(), 1);
    EXPECT_THAT(newFiles(), ElementsAre("eth0", "eth1", "altgateway"));
}

TEST_F(EthUpdate, RollsBackInOrderWhenTheNetworkFileFails)
{
    block("network");
    removeType("altgateway");
    const XasFault fault{"rename", EIO, RENAMES_PER_SAVE * 6};
    EXPECT_EQ(update(), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(blockedLine("network"), xasErrorLine("Error editing network config file\n"),
                            notRestoredLine("gatewayprec"), notRestoredLine("kernel"),
                            notRestoredLine("modprobe"), notRestoredLine("bond0"), notRestoredLine("eth0"),
                            notRestoredLine("eth1")));
}

TEST_F(EthUpdate, FailsForTheNetworkFileAlsoWithoutAnAlternateGateway)
{
    const XasFault fault{"rename", EIO, RENAMES_PER_SAVE * 6 + 1, 1};
    removeType("altgateway");
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(xasReplyText(reply), "3 Error saving new network config file");
}

TEST_F(EthUpdate, KeepsAllOtherFilesWhenTheAlternateGatewayFails)
{
    block("altgateway");
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(xasReplyText(reply), "2 Error opening alternate gateway config file");
    EXPECT_THAT(log.lines(),
                ElementsAre(blockedLine("altgateway"), xasErrorLine("Error editing network config file\n"),
                            notRestoredLine("altgateway")));
    EXPECT_THAT(newFiles(),
                ElementsAre("gatewayprec", "kernel", "modprobe", "bond0", "eth0", "eth1", "network"));
}

TEST_F(EthUpdate, BringsBackAnEarlierAlternateGatewayWhenItFails)
{
    block("altgateway");
    dir.write("altgateway.old", "of an earlier save\n");
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(dir.read("altgateway"), "of an earlier save\n");
    EXPECT_FALSE(dir.has("altgateway.old"));
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

TEST_F(EthUpdate, DoesWithoutNetworkFileAndAlternateGateway)
{
    removeType("network");
    removeType("altgateway");
    EXPECT_EQ(update(), 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_THAT(newFiles(), ElementsAre("gatewayprec", "kernel", "modprobe", "bond0", "eth0", "eth1"));
}

TEST_F(EthUpdate, WritesEveryFileWithoutBonding)
{
    eth.bonding = 0;
    eth.ipv6_enabled = 0;
    eth.ports[1].enabled = 0;
    EXPECT_EQ(update(), 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(dir.read("gatewayprec"), "DHCP_GW_PRECEDENCE=2\n");
    EXPECT_EQ(dir.read("kernel"), "# parameters\nnet.ipv4.ip_forward = 1\n");
    EXPECT_EQ(dir.read("modprobe"), "options ipv6 disable=1\n");
    EXPECT_FALSE(dir.has("bond0"));
    EXPECT_EQ(dir.read("eth0"), "DEVICE=eth0\nTYPE=Ethernet\nBOOTPROTO=static\nIPADDR=192.168.1.10\n"
                                "NETMASK=255.255.255.0\nNETWORK=192.168.1.0\nBROADCAST=192.168.1.255\n"
                                "IPV6INIT=yes\nIPV6ADDR=\nDHCP_HOSTNAME=\nONBOOT=yes\nMTU=1500\n");
    EXPECT_EQ(dir.read("eth1"), "DEVICE=eth1\nTYPE=Ethernet\nBOOTPROTO=static\nIPADDR=172.16.37.5\n"
                                "NETMASK=255.255.240.0\nNETWORK=172.16.32.0\nBROADCAST=172.16.47.255\n"
                                "IPV6INIT=yes\nIPV6ADDR=\nDHCP_HOSTNAME=\nONBOOT=no\nMTU=9000\n");
    EXPECT_EQ(dir.read("network"),
              "NETWORKING=yes\nNETWORKING_IPV6=no\nHOSTNAME=console\nGATEWAY=192.168.1.1\n");
    EXPECT_EQ(dir.read("altgateway"), "DGD_GATEWAY=192.168.1.2\nDGD_PING_DELAY=10\n");
}

TEST_F(EthUpdate, WritesEveryFileWithBonding)
{
    EXPECT_EQ(update(), 0);
    EXPECT_EQ(dir.read("modprobe"), "alias netdev-bond0 bonding\n"
                                    "options bond0 mode=active-backup primary=eth0 miimon=250 use_carrier=1 "
                                    "downdelay=2500 updelay=2500\n");
    EXPECT_EQ(dir.read("bond0"), "DEVICE=bond0\nTYPE=Bonding\nBOOTPROTO=static\nIPADDR=192.168.1.10\n"
                                 "NETMASK=255.255.255.0\nNETWORK=192.168.1.0\nBROADCAST=192.168.1.255\n"
                                 "IPV6INIT=yes\nIPV6ADDR=\nDHCP_HOSTNAME=\nONBOOT=yes\nMTU=1500\n"
                                 "BONDING_OPTS=\"mode=active-backup primary=eth0 miimon=250 use_carrier=1 "
                                 "downdelay=2500 updelay=2500\"\n");
    EXPECT_EQ(dir.read("eth0"),
              "DEVICE=eth0\nTYPE=Ethernet\nMASTER=bond0\nSLAVE=yes\nBOOTPROTO=none\nONBOOT=yes\n");
    EXPECT_EQ(dir.read("eth1"),
              "DEVICE=eth1\nTYPE=Ethernet\nMASTER=bond0\nSLAVE=yes\nBOOTPROTO=none\nONBOOT=yes\n");
    EXPECT_EQ(dir.read("network"),
              "NETWORKING=yes\nNETWORKING_IPV6=yes\nHOSTNAME=console\nGATEWAY=192.168.1.1\n");
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
