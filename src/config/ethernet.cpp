#include "config/ethernet.h"

#include "config/gateway.h"
#include "config/interface_file.h"
#include "config/kernel.h"
#include "config/modprobe.h"
#include "config/network_file.h"
#include "core/assert.h"
#include "core/log.h"
#include "files/config_file.h"
#include "files/update.h"
#include "wire/eth_message.h"

#include <array>
#include <unistd.h>

namespace {

/** The new settings and what their steps need. */
struct Update {
    const XasEthPayload &eth;
    const XasCfgFileList &cfgFiles;
    XasReplyStatus *reply;

    [[nodiscard]] bool isBonding() const { return eth.bonding != 0; }
};

XasKernCfg kernelValues(const XasEthPayload &eth)
{
    return {.ipForwarding = eth.ip_forwarding,
            .keepaliveTime = eth.timer,
            .keepaliveProbes = eth.probes,
            .keepaliveInterval = eth.interval};
}

XasNetInfo networkValues(const XasEthPayload &eth)
{
    XasNetInfo netInfo;
    netInfo.setGateway = true;
    netInfo.gateway = eth.gateway;
    netInfo.gatewayIPv6 = eth.gateway_ipv6;
    netInfo.ipv6Enabled = eth.ipv6_enabled;
    return netInfo;
}

XasAltGateway altGatewayValues(const XasEthPayload &eth)
{
    return {.gateway = eth.alt_gateway,
            .pingAddress = eth.ping_ip,
            .pingInterface = eth.ping_ifc,
            .pingDelay = eth.ping_delay,
            .pingFailures = eth.ping_failed};
}

/** The bonding interface has the addresses of eth0; without bonding it has no file. */
int updateBond(const Update &update, const char *cfgFileName)
{
    if (update.isBonding())
        return xasEditEthCfgFile(cfgFileName, &update.eth.ports[0], XAS_BOND_DEVICE, false,
                                 update.eth.bonding, update.reply);
    ::unlink(cfgFileName);
    return 0;
}

int updatePort(const Update &update, unsigned port, const char *cfgFileName)
{
    return xasEditEthCfgFile(cfgFileName, &update.eth.ports[port], port == 0 ? "eth0" : "eth1",
                             update.isBonding(), update.eth.bonding, update.reply);
}

int updateGlobalFiles(const Update &update)
{
    const std::array<XasFileStep, 3> steps = {{
        {.type = "gatewayprec",
         .missingLog = "Error determining gateway precedence config file\n",
         .missingReason = "Error determining gateway precedence config file",
         .editLog = "Error editing dhcp gateway precedence config file\n",
         .edit =
             [&](const char *path) {
                 return xasEditGWPrecFile(path, update.eth.gw_precedence, update.reply);
             },
         .restoreIfMissing = {},
         .restoreIfEditFails = {}},
        {.type = "kernel",
         .missingLog = "Error determining config file for kernel parameters\n",
         .missingReason = "Error determining config file for kernel parameters",
         .editLog = "Error editing kernel config file\n",
         .edit =
             [&](const char *path) {
                 const XasKernCfg kernCfg = kernelValues(update.eth);
                 return xasEditKernelCfgFile(path, &kernCfg, update.reply);
             },
         .restoreIfMissing = {"gatewayprec"},
         .restoreIfEditFails = {"gatewayprec"}},
        {.type = "modprobe",
         .missingLog = "Error determining config file for modprobe parameters\n",
         .missingReason = "Error determining config file for modprobe parameters",
         .editLog = "Error editing modprobe config file\n",
         .edit =
             [&](const char *path) {
                 return xasEditModProbeCfgFile(path, update.eth.bonding, update.eth.ipv6_enabled != 0,
                                               update.reply);
             },
         .restoreIfMissing = {"gatewayprec", "kernel"},
         .restoreIfEditFails = {"gatewayprec", "kernel"}},
    }};
    return xasRunFileSteps(update.cfgFiles, update.reply, steps);
}

int updateInterfaceFiles(const Update &update)
{
    const std::array<XasFileStep, 3> steps = {{
        {.type = "bond0",
         .missingLog = "Error determining config file for bonding interface\n",
         .missingReason = "Error determining config file for bonding interface",
         .editLog = "Error editing config file for bond0\n",
         .edit = [&](const char *path) { return updateBond(update, path); },
         .restoreIfMissing = {"gatewayprec", "kernel", "modprobe"},
         .restoreIfEditFails = {"gatewayprec", "kernel", "modprobe"}},
        {.type = "eth0",
         .missingLog = "Error determining config file for Ethernet 0\n",
         .missingReason = "Error determining Eth0 config file",
         .editLog = "Error editing config file for Ethernet 0\n",
         .edit = [&](const char *path) { return updatePort(update, 0, path); },
         .restoreIfMissing = {"gatewayprec", "kernel", "modprobe", "bond0"},
         .restoreIfEditFails = {"gatewayprec", "kernel", "modprobe", "bond0"}},
        {.type = "eth1",
         .missingLog = "Error determining config file for Ethernet 1\n",
         .missingReason = "Error determining Eth1 config file",
         .editLog = "Error editing config file for Ethernet 1\n",
         .edit = [&](const char *path) { return updatePort(update, 1, path); },
         .restoreIfMissing = {"gatewayprec", "kernel", "modprobe", "eth0", "bond0"},
         .restoreIfEditFails = {"gatewayprec", "kernel", "modprobe", "eth0", "bond0"}},
    }};
    return xasRunFileSteps(update.cfgFiles, update.reply, steps);
}

/** After a failure the ports are rolled back only where the message really brought settings for them. */
int updateNetwork(const Update &update)
{
    const char *cfgFileName = xasGetCfgFilePath("network", update.cfgFiles);
    const XasNetInfo netInfo = networkValues(update.eth);
    if (cfgFileName == nullptr || xasEditNetCfgFile(cfgFileName, &netInfo, update.reply) == 0)
        return 0;
    xasLogError("Error editing network config file\n");
    std::vector<std::string_view> changed = {"gatewayprec", "kernel", "modprobe", "bond0"};
    if (update.eth.ports[0].marker != 0)
        changed.emplace_back("eth0");
    if (update.eth.ports[1].marker != 0)
        changed.emplace_back("eth1");
    xasRestoreCfgTypes(update.cfgFiles, changed);
    return 1;
}

int updateAltGateway(const Update &update)
{
    const char *cfgFileName = xasGetCfgFilePath("altgateway", update.cfgFiles);
    if (cfgFileName == nullptr ||
        xasEditAltGWFile(cfgFileName, altGatewayValues(update.eth), update.reply) == 0)
        return 0;
    xasLogError("Error editing network config file\n");
    xasRestoreCfgFile(cfgFileName);
    return 1;
}

} // namespace

int xasUpdateEthCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    xasAssertGiven(msg, "msg");
    xasAssert(XMSG_ETH == msg->xH.msgtype, "XMSG_ETH == msg->xH.msgtype");
    xasAssertGiven(cfgFiles, "cfgFiles");
    const auto eth = xasReadPayload<XasEthPayload>(*msg);
    const Update update{eth, *cfgFiles, reply};
    if (updateGlobalFiles(update) != 0 || updateInterfaceFiles(update) != 0)
        return 1;
    const int networkResult = updateNetwork(update);
    const int altGatewayResult = updateAltGateway(update);
    return networkResult != 0 || altGatewayResult != 0 ? 1 : 0;
}
