#include "config/ethernet.h"

#include "config/gateway.h"
#include "config/interface_file.h"
#include "config/kernel.h"
#include "config/modprobe.h"
#include "config/network_file.h"
#include "core/log.h"
#include "files/generated_file.h"

#include <vector>

namespace {

int editPort(const XasEditCall &call, unsigned port)
{
    const auto eth = xasReadPayload<XasEthPayload>(call.msg);
    const XasEthInterface edited{eth.ports[port], port == 0 ? "eth0" : "eth1", eth.bonding != 0, eth.bonding};
    return xasEditEthCfgFile(call.path, &edited, call.reply);
}

/** The bonding interface has the addresses of eth0; without bonding it has no file. */
int editBond(const XasEditCall &call)
{
    const auto eth = xasReadPayload<XasEthPayload>(call.msg);
    if (eth.bonding == 0) {
        xasRemoveFile(call.path);
        return 0;
    }
    const XasEthInterface edited{eth.ports[0], XAS_BOND_DEVICE, false, eth.bonding};
    return xasEditEthCfgFile(call.path, &edited, call.reply);
}

int editGateways(const XasEditCall &call)
{
    const auto eth = xasReadPayload<XasEthPayload>(call.msg);
    XasNetInfo netInfo;
    netInfo.setGateway = true;
    netInfo.gateway = eth.gateway;
    netInfo.gatewayIPv6 = eth.gateway_ipv6;
    netInfo.ipv6Enabled = eth.ipv6_enabled;
    return xasEditNetCfgFile(call.path, &netInfo, call.reply);
}

constexpr std::string_view RESTORED_FOR_ETH1[] = {"gatewayprec", "kernel", "modprobe", "eth0", "bond0"};

/** The last two are written when they are there; their failures have roll-backs of their own. */
constexpr XasFileRow FILES[] = {
    {.type = "gatewayprec",
     .edit = xasEditedBy<xasEditGWPrecFile>,
     .missingLog = "Error determining gateway precedence config file\n",
     .missingReason = "Error determining gateway precedence config file",
     .editLog = "Error editing dhcp gateway precedence config file\n"},
    {.type = "kernel",
     .edit = xasEditedBy<xasEditKernelCfgFile>,
     .missingLog = "Error determining config file for kernel parameters\n",
     .missingReason = "Error determining config file for kernel parameters",
     .editLog = "Error editing kernel config file\n"},
    {.type = "modprobe",
     .edit = xasEditedBy<xasEditModProbeCfgFile>,
     .missingLog = "Error determining config file for modprobe parameters\n",
     .missingReason = "Error determining config file for modprobe parameters",
     .editLog = "Error editing modprobe config file\n"},
    {.type = "bond0",
     .edit = {editBond, &xasEditEthCfgFile.texts},
     .missingLog = "Error determining config file for bonding interface\n",
     .missingReason = "Error determining config file for bonding interface",
     .editLog = "Error editing config file for bond0\n"},
    {.type = "eth0",
     .edit = {[](const XasEditCall &call) { return editPort(call, 0); }, &xasEditEthCfgFile.texts},
     .missingLog = "Error determining config file for Ethernet 0\n",
     .missingReason = "Error determining Eth0 config file",
     .editLog = "Error editing config file for Ethernet 0\n"},
    {.type = "eth1",
     .edit = {[](const XasEditCall &call) { return editPort(call, 1); }, &xasEditEthCfgFile.texts},
     .missingLog = "Error determining config file for Ethernet 1\n",
     .missingReason = "Error determining Eth1 config file",
     .editLog = "Error editing config file for Ethernet 1\n",
     .restored = RESTORED_FOR_ETH1},
    {.type = "network",
     .edit = {editGateways, &xasEditNetCfgFile.texts},
     .editLog = "Error editing network config file\n"},
    {.type = "altgateway",
     .edit = xasEditedBy<xasEditAltGWFile>,
     .editLog = "Error editing network config file\n"},
};
constexpr std::size_t NEEDED = std::size(FILES) - 2;
constexpr const XasFileRow &NETWORK = FILES[NEEDED];
constexpr const XasFileRow &ALT_GATEWAY = FILES[NEEDED + 1];

constexpr XasFilesUpdate NEEDED_FILES{.msgtype = XMSG_ETH, .files = std::span{FILES}.first(NEEDED)};

/** Edits an optional file. False when that failed. */
bool editIfThere(const XasFileRow &row, XasMessage &msg, const XasCfgFileList &cfgFiles,
                 XasReplyStatus *reply)
{
    const char *path = xasGetCfgFilePath(row.type, cfgFiles);
    if (path == nullptr || row.edit.run({path, msg, cfgFiles, reply}) == 0)
        return true;
    xasLogError("%s", row.editLog);
    return false;
}

/** The ports are rolled back only where the message really brought settings for them. */
void restoreForNetwork(const XasMessage &msg, const XasCfgFileList &cfgFiles)
{
    const auto eth = xasReadPayload<XasEthPayload>(msg);
    std::vector<std::string_view> changed = {"gatewayprec", "kernel", "modprobe", "bond0"};
    if (eth.ports[0].marker != 0)
        changed.emplace_back("eth0");
    if (eth.ports[1].marker != 0)
        changed.emplace_back("eth1");
    xasRestoreCfgTypes(cfgFiles, changed);
}

} // namespace

constexpr XasFilesUpdate xasEthFiles{
    .msgtype = XMSG_ETH, .files = FILES, .reasons = {&XAS_INVALID_SOURCE, 1}};

int xasUpdateEthCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    if (NEEDED_FILES(msg, cfgFiles, reply) != 0)
        return 1;
    const bool networkDone = editIfThere(NETWORK, *msg, *cfgFiles, reply);
    if (!networkDone)
        restoreForNetwork(*msg, *cfgFiles);
    const bool altGatewayDone = editIfThere(ALT_GATEWAY, *msg, *cfgFiles, reply);
    if (!altGatewayDone)
        xasRestoreCfgTypes(*cfgFiles, {&ALT_GATEWAY.type, 1});
    return networkDone && altGatewayDone ? 0 : 1;
}
