/** The built daemon on an appliance with network files, scripts that note their calls, and stored settings.
 */
#ifndef XAS_TEST_DAEMON_ETH_APPLIANCE_H
#define XAS_TEST_DAEMON_ETH_APPLIANCE_H

#include "support/daemon.h"
#include "support/eth.h"

class XasEthAppliance : public testing::Test {
  protected:
    XasEthAppliance()
    {
        files.write("kernel", "net.ipv4.ip_forward = 0\n");
        files.write("network", "HOSTNAME=console\n");
        files.write("altgateway", "DGD_GATEWAY=1.2.3.4\n");
        files.write("gatewayprec", "DHCP_GW_PRECEDENCE=1\n");
        files.write("eth0", "DEVICE=eth0\nONBOOT=yes\n");
        files.write("eth1", "DEVICE=eth1\nONBOOT=yes\n");
        store(eth);
    }

    void start()
    {
        daemon.start({
            {.name = "eth",
             .startScript = daemon.stubs.make("eth") + " start 0 0 0",
             .stopScript = daemon.stubs.path("eth") + " stop 0 0 0",
             .cfgFiles = cfgFiles(
                 {"gatewayprec", "kernel", "modprobe", "bond0", "eth0", "eth1", "network", "altgateway"})},
            {.name = "router",
             .startScript = daemon.stubs.make("router") + " start",
             .stopScript = daemon.stubs.path("router") + " stop"},
            {.name = "nat", .startScript = daemon.stubs.make("nat") + " add 0 0.0.0.0"},
            {.name = "netlink",
             .startScript = daemon.stubs.make("netlink") + " linkup 0 0",
             .cfgFiles = cfgFiles({"eth0", "eth1"})},
        });
        daemon.stubs.forget();
        EXPECT_EQ(calls(), std::vector<std::string>{});
    }

    /** Makes these the settings that are stored for the daemon to read. */
    static void store(const XasEthPayload &settings)
    {
        xasWriteFile("/r58/store/XMSG_ETH.new", xasMessageBytes(message(settings)));
        std::filesystem::rename("/r58/store/XMSG_ETH.new", "/r58/store/XMSG_ETH");
    }

    static XasMessage message(const XasEthPayload &settings)
    {
        return XasMessageBuilder{XMSG_ETH}.id(77).payload(settings);
    }

    /** Sends the settings; the acknowledgement in short. */
    std::string apply() { return daemon.outcome(message(eth)); }

    /** The scripts that were called, by name and arguments; forgets them. */
    std::vector<std::string> calls()
    {
        std::vector<std::string> lines = daemon.stubs.lines();
        for (std::string &line : lines)
            line.erase(0, line.rfind('/', line.find(' ')) + 1);
        daemon.stubs.forget();
        return lines;
    }

    /** The line that is logged when a script is called. */
    [[nodiscard]] XasLogLine running(std::string_view script) const
    {
        return xasInfoLine("Running " + daemon.stubs.path(script) + "\n");
    }

    [[nodiscard]] std::vector<std::pair<std::string, std::string>>
    cfgFiles(const std::vector<std::string> &types) const
    {
        std::vector<std::pair<std::string, std::string>> described;
        for (const std::string &type : types)
            described.emplace_back(type, files.path(type));
        return described;
    }

    XasTestDir files;
    XasEthPayload eth = xasTestEth();
    XasTestDaemon daemon;
};

#endif
