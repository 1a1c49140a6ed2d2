#include "config/dns.h"
#include "config/firewall_services.h"
#include "config/gateway.h"
#include "config/hostname.h"
#include "config/interface_file.h"
#include "config/kernel.h"
#include "config/modprobe.h"
#include "config/network_file.h"
#include "config/web_hostname.h"
#include "core/log.h"
#include "texts/editors.h"
#include "wire/eth_message.h"

namespace {

XasNewText interfaceText(const XasTextInput &in)
{
    const auto eth = xasReadPayload<XasEthPayload>(in.msg);
    const unsigned device = in.variant % 4;
    constexpr std::string_view DEVICES[] = {"eth0", "eth1", "bond0", "bond0"};
    XasReplyStatus reply;
    const XasEthInterface interface {
        eth.ports[device == 1 ? 1 : 0], DEVICES[device], in.variant / 4 != 0, eth.bonding
    };
    const bool asks = interface.port.source == XAS_SOURCE_DHCP;
    return xasEthCfgText(interface, asks ? xasWebHostname(in.old) : "", &reply);
}

XasNewText gatewaysText(const XasTextInput &in)
{
    const auto eth = xasReadPayload<XasEthPayload>(in.msg);
    XasNetInfo netInfo;
    netInfo.setGateway = true;
    netInfo.gateway = eth.gateway;
    netInfo.gatewayIPv6 = eth.gateway_ipv6;
    netInfo.ipv6Enabled = eth.ipv6_enabled;
    return xasNetCfgText(in.old, netInfo);
}

XasNewText networkNameText(const XasTextInput &in)
{
    XasNetInfo netInfo;
    netInfo.setHostname = true;
    netInfo.hostname =
        xasFullHostname(xasReadPayload<XasHostnamePayload>(in.msg)).substr(0, XAS_NETWORK_HOSTNAME_MAX);
    return xasNetCfgText(in.old, netInfo);
}

/** The text of an editor that takes a payload. */
template <class Payload, auto make>
XasNewText textOf(const XasTextInput &in)
{
    XasReplyStatus reply;
    return xasMadeBy<make>(in.old, xasReadPayload<Payload>(in.msg), &reply);
}

constexpr XasTextEditor EDITORS[] = {
    {"gateway precedence", XMSG_ETH, textOf<XasEthPayload, xasGWPrecText>, xasModelGWPrec},
    {"kernel", XMSG_ETH, textOf<XasEthPayload, xasKernelCfgText>, xasModelKernel, 1, true},
    {"modprobe", XMSG_ETH, textOf<XasEthPayload, xasModProbeCfgText>, xasModelModprobe},
    {"interface", XMSG_ETH, interfaceText, xasModelInterface, 8},
    {"onboot", XMSG_ETH,
     [](const XasTextInput &in) -> XasNewText { return xasEthEnableText(in.old, in.variant != 0); },
     xasModelEnable, 2, true},
    {"gateways", XMSG_ETH, gatewaysText, xasModelGateways, 1, true},
    {"alternate gateway", XMSG_ETH, textOf<XasEthPayload, xasAltGWText>, xasModelAltGW, 1, true},
    {"hosts", XMSG_HOSTNAME, textOf<XasHostnamePayload, xasHostsText>, xasModelHosts, 1, true},
    {"host name", XMSG_HOSTNAME, textOf<XasHostnamePayload, xasHostnameText>, xasModelHostname},
    {"network name", XMSG_HOSTNAME, networkNameText, xasModelNetworkName, 1, true},
    {"domain", XMSG_HOSTNAME, textOf<XasHostnamePayload, xasDomainText>, xasModelDomain},
    {"resolver", XMSG_DNS, textOf<XasDnsPayload, xasDnsText>, xasModelResolver},
    {"precedence", XMSG_DNS, textOf<XasDnsPayload, xasDnsPrecText>, xasModelPrecedence},
};

} // namespace

std::span<const XasTextEditor> xasNetworkEditors()
{
    return EDITORS;
}
