// The network files as the programs read them for which they are written: sysctl, modprobe and the shell.
#include "config/gateway.h"
#include "config/interface_file.h"
#include "config/kernel.h"
#include "config/modprobe.h"
#include "config/network_file.h"
#include "support/eth.h"
#include "support/programs.h"
#include "wire/address.h"

namespace {

class NetworkConsumers : public XasFilesTest {
  protected:
    /** Runs a shell command in an empty directory of its own. */
    XasProgramResult run(const std::string &command)
    {
        return xasRunShell("cd '" + workplace.path() + "' && { " + command + "; }");
    }

    /** Sources `path` with nothing to execute, then prints the values of `keys`, one a line. */
    XasProgramResult source(const std::string &path, const std::vector<std::string> &keys)
    {
        std::string script = "PATH=/none; set -eu; . " + path;
        for (const std::string &key : keys)
            script += "; echo \"$" + key + "\"";
        return run("/bin/sh -c '" + script + "'");
    }

    void editPort(const XasEthPort &port, std::string_view device, bool isSlave, std::uint32_t bonding)
    {
        XasReplyStatus reply;
        const XasEthInterface interface {
            port, device, isSlave, bonding
        };
        ASSERT_EQ(xasEditEthCfgFile(file.c_str(), &interface, &reply), 0);
    }

    XasTestDir workplace;
    std::string file = dir.path("file");
};

} // namespace

TEST_F(NetworkConsumers, SysctlSetsTheKernelParameters)
{
    XasEthPayload eth{};
    eth.ip_forwarding = 1;
    eth.timer = 7300;
    eth.probes = 11;
    eth.interval = 80;
    dir.write("file", "# parameters\n\nnet.ipv4.ip_forward=0\nnet.ipv4.tcp_keepalive_time = 1\n"
                      "  net.ipv4.tcp_keepalive_probes= 1\nnet.ipv4.tcp_keepalive_intvl =1");
    XasReplyStatus reply;
    ASSERT_EQ(xasEditKernelCfgFile(file.c_str(), &eth, &reply), 0);
    const XasProgramResult result = run("sysctl -p " + file);
    EXPECT_EQ(result.exitStatus, 0) << result.output;
    EXPECT_EQ(xasReadFile("/proc/sys/net/ipv4/ip_forward"), "1\n");
    EXPECT_EQ(xasReadFile("/proc/sys/net/ipv4/tcp_keepalive_time"), "7300\n");
    EXPECT_EQ(xasReadFile("/proc/sys/net/ipv4/tcp_keepalive_probes"), "11\n");
    EXPECT_EQ(xasReadFile("/proc/sys/net/ipv4/tcp_keepalive_intvl"), "80\n");
}

TEST_F(NetworkConsumers, ModprobeReadsTheModuleOptions)
{
    if (!xasExists("/sbin/modprobe"))
        GTEST_SKIP() << "this machine has no modprobe";
    const auto options = dir.path("modprobe.d/network.conf");
    dir.write("modprobe.d/network.conf", "");
    constexpr std::array MODES = {"mode=active-backup primary=eth0", "mode=802.3ad", "mode=balance-tlb"};
    for (std::uint32_t mode = 1; mode <= MODES.size(); ++mode) {
        XasReplyStatus reply;
        XasEthPayload eth{};
        eth.bonding = mode;
        ASSERT_EQ(xasEditModProbeCfgFile(options.c_str(), &eth, &reply), 0);
        const XasProgramResult result = run("modprobe --showconfig -C " + options);
        EXPECT_EQ(result.exitStatus, 0);
        // The program takes "-" and "_" in names of modules for the same.
        EXPECT_THAT(result.output, HasSubstr("alias netdev_bond0 bonding\n"));
        EXPECT_THAT(result.output, HasSubstr("options bond0 " + std::string{MODES[mode - 1]} +
                                             " miimon=250 use_carrier=1 downdelay=2500 updelay=2500\n"));
        EXPECT_THAT(result.output, HasSubstr("options ipv6 disable=1\n"));
        EXPECT_THAT(result.output, Not(HasSubstr("ignoring")));
    }
}

TEST_F(NetworkConsumers, TheShellReadsAPortBack)
{
    XasEthPort port = xasTestEth().ports[1];
    xasTestIPv6("2001:db8::5", port.ipv6);
    port.maskv6 = 64;
    editPort(port, "eth1", false, 0);
    const XasProgramResult result =
        source(file, {"DEVICE", "TYPE", "BOOTPROTO", "IPADDR", "NETMASK", "NETWORK", "BROADCAST", "IPV6INIT",
                      "IPV6ADDR", "DHCP_HOSTNAME", "ONBOOT", "MTU"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "eth1\nEthernet\nstatic\n172.16.37.5\n255.255.240.0\n172.16.32.0\n"
                             "172.16.47.255\nyes\n2001:db8::5/64\n\nyes\n9000\n");
}

TEST_F(NetworkConsumers, TheShellReadsTheBondBackWithItsOptionsAsOneValue)
{
    editPort(xasTestEth().ports[0], "bond0", false, 1);
    EXPECT_EQ(source(file, {"DEVICE", "TYPE", "BONDING_OPTS"}).output,
              "bond0\nBonding\nmode=active-backup primary=eth0 miimon=250 use_carrier=1 downdelay=2500 "
              "updelay=2500\n");
}

TEST_F(NetworkConsumers, TheShellReadsASlaveBack)
{
    editPort(xasTestEth().ports[0], "eth0", true, 1);
    EXPECT_EQ(source(file, {"DEVICE", "TYPE", "MASTER", "SLAVE", "BOOTPROTO", "ONBOOT"}).output,
              "eth0\nEthernet\nbond0\nyes\nnone\nyes\n");
}

TEST_F(NetworkConsumers, TheShellReadsTheGatewaysBack)
{
    XasEthPayload eth{};
    eth.alt_gateway = xasTestIPv4("192.168.1.2");
    eth.ping_ip = xasTestIPv4("192.168.1.3");
    eth.ping_ifc = 2;
    eth.ping_delay = 200;
    eth.ping_failed = 3;
    eth.gw_precedence = 2;
    dir.write("file", "DGD_GATEWAY=x\nDGD_PING_IP=x\nDGD_PING_IFC=x\nDGD_PING_DELAY=x\nDGD_PING_FAILED=x\n");
    XasReplyStatus reply;
    ASSERT_EQ(xasEditAltGWFile(file.c_str(), &eth, &reply), 0);
    EXPECT_EQ(
        source(file, {"DGD_GATEWAY", "DGD_PING_IP", "DGD_PING_IFC", "DGD_PING_DELAY", "DGD_PING_FAILED"})
            .output,
        "192.168.1.2\n192.168.1.3\neth1\n200\n3\n");
    ASSERT_EQ(xasEditGWPrecFile(file.c_str(), &eth, &reply), 0);
    EXPECT_EQ(source(file, {"DHCP_GW_PRECEDENCE"}).output, "2\n");
    XasNetInfo netInfo;
    netInfo.setGateway = true;
    netInfo.gateway = xasTestIPv4("192.168.1.1");
    xasTestIPv6("fe80::1", &netInfo.gatewayIPv6.sin6_addr);
    dir.write("file", "NETWORKING_IPV6=yes\n");
    ASSERT_EQ(xasEditNetCfgFile(file.c_str(), &netInfo, &reply), 0);
    EXPECT_EQ(source(file, {"NETWORKING_IPV6", "GATEWAY", "IPV6_GATEWAY"}).output,
              "no\n192.168.1.1\nfe80::1\n");
}

// A shell that found a command in such a file would say that there is none; one that found a redirection
// would leave a file behind.
TEST_F(NetworkConsumers, TheShellRunsNothingOfAPortRecordOfRandomBytes)
{
    std::mt19937 random{1005};
    for (int round = 0; round < 200; ++round) {
        XasEthPort port = xasTestRandomPort(random);
        port.source = random() % 2 == 0 ? XAS_SOURCE_STATIC : XAS_SOURCE_BOOTP;
        editPort(port, random() % 2 == 0 ? "bond0" : "eth0", random() % 4 == 0, 1);
        const XasProgramResult result = source(file, {"BOOTPROTO"});
        ASSERT_EQ(result.exitStatus, 0) << xasReadFile(file);
        ASSERT_THAT(result.output, AnyOf("static\n", "bootp\n", "none\n")) << xasReadFile(file);
        ASSERT_THAT(workplace.names(), IsEmpty());
    }
}

TEST_F(NetworkConsumers, TheShellRunsNothingOfAHostNameOfRandomBytes)
{
    XasEthPort port{};
    port.source = XAS_SOURCE_DHCP;
    std::mt19937 random{1006};
    // Bytes that a shell has a use for come more often than others.
    constexpr std::string_view SPECIAL = " \t\r;&|<>()$`\\\"'*?[]#~=%!{}";
    for (int round = 0; round < 200; ++round) {
        std::string name = round % 2 == 0 ? "a" : "";
        for (std::size_t length = random() % 12; name.size() < length;)
            name += random() % 2 == 0 ? SPECIAL[random() % SPECIAL.size()] : static_cast<char>(random());
        xasWriteFile("/www/xml/network.xml", "<HOSTNAME>" + name + "</HOSTNAME>\n");
        editPort(port, "eth0", false, 0);
        const XasProgramResult result = source(file, {"BOOTPROTO"});
        ASSERT_EQ(result.exitStatus, 0) << xasReadFile(file);
        ASSERT_EQ(result.output, "dhcp\n") << xasReadFile(file);
        ASSERT_THAT(workplace.names(), IsEmpty());
    }
}

TEST_F(NetworkConsumers, TheShellWouldTellIfAFileHeldACommand)
{
    dir.write("file", "DHCP_HOSTNAME=a reboot\n");
    EXPECT_NE(source(file, {}).exitStatus, 0);
    dir.write("file", "DHCP_HOSTNAME=a >trace\n");
    source(file, {});
    EXPECT_THAT(workplace.names(), ElementsAre("trace"));
}
