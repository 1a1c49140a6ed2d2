#include "config/interface_file.h"

#include "config/web_hostname.h"
#include "core/log.h"
#include "core/text.h"
#include "core/utils.h"
#include "files/key_lines.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace {

/** Names of XasAddressSource. */
constexpr std::array<const char *, 3> SOURCES = {"bootp", "dhcp", "static"};

std::string keyLine(const char *key, const std::string &value)
{
    return xasFormatLine("%s=%s\n", key, value.c_str());
}

std::string onBootLine(bool enabled)
{
    return keyLine("ONBOOT", enabled ? "yes" : "no");
}

std::string ipv4Lines(const XasEthPort &port)
{
    return keyLine("IPADDR", xasIPv4ToStr(port.ip)) + keyLine("NETMASK", xasIPv4ToStr(port.mask)) +
           keyLine("NETWORK", xasIPv4ToStr(xasNetworkAddr(port.ip, port.mask))) +
           keyLine("BROADCAST", xasIPv4ToStr(xasBroadcastAddr(port.ip, port.mask)));
}

std::string ipv6Lines(const XasEthPort &port)
{
    const bool isUnset = std::ranges::all_of(port.ipv6, [](unsigned char byte) { return byte == 0; });
    return keyLine("IPV6INIT", "yes") +
           keyLine("IPV6ADDR", isUnset ? "" : xasIPv6PrefixToStr(port.ipv6, port.maskv6));
}

std::string slaveLines()
{
    return "MASTER=bond0\nSLAVE=yes\nBOOTPROTO=none\nONBOOT=yes\n";
}

/** The text with the name to ask a DHCP server with, which is read only for a port that asks one. */
XasNewText ethCfgText(const XasEthInterface &interface, XasReplyStatus *reply)
{
    std::string hostname;
    if (!interface.isSlave && interface.port.source == XAS_SOURCE_DHCP)
        std::ignore = xasGetXmlHostname(hostname); // without it the port asks with an empty name
    return xasEthCfgText(interface, hostname, reply);
}

} // namespace

XasNewText xasEthCfgText(const XasEthInterface &interface, const std::string &dhcpHostname,
                         XasReplyStatus *reply)
{
    const XasEthPort &port = interface.port;
    const bool isBond = interface.device == XAS_BOND_DEVICE;
    std::string text = keyLine("DEVICE", std::string{interface.device});
    text += keyLine("TYPE", isBond ? "Bonding" : "Ethernet");
    if (interface.isSlave)
        return text + slaveLines();
    if (port.source >= SOURCES.size()) {
        xasSetReply(*reply, XAS_INVALID_SOURCE);
        return {std::move(text), false};
    }
    text += keyLine("BOOTPROTO", SOURCES[port.source]) + ipv4Lines(port) + ipv6Lines(port) +
            keyLine("DHCP_HOSTNAME", dhcpHostname) + onBootLine(port.enabled != 0) +
            xasFormatLine("%s=%d\n", "MTU", static_cast<int>(port.mtu));
    if (!isBond)
        return text;
    std::string options;
    if (xasGetBondingOptions(interface.bonding, options) != 0) {
        xasLogError("Error getting Ethernet bonding options string\n");
        return {std::move(text), false};
    }
    return text + xasFormatLine("BONDING_OPTS=\"%s\"\n", options.c_str());
}

std::string xasEthEnableText(std::string_view oldText, bool enabled)
{
    return xasReplaceKeyLines(oldText, "=", std::array{XasKeyLine{"ONBOOT", onBootLine(enabled)}});
}

constexpr XasEditor<XasEthInterface> xasEditEthCfgFile{
    .argument = "ethPort",
    .texts = {.openReason = "Error opening ethernet config file",
              .writeLog = "Error printing line to Ethernet config file\n",
              .saveReason = "Error saving new ethernet config file",
              .anew = true},
    .text = [](std::string_view /*oldText*/, const XasEthInterface &interface, XasReplyStatus *reply) {
        return ethCfgText(interface, reply);
    }};

constexpr XasEditor<bool> xasEditEthEnableCfgFile{
    .argument = "enabled",
    .texts = {.openReason = "Error opening ethernet enable config file",
              .writeLog = "Error printing line to Ethernet config file\n",
              .saveReason = "Error saving new ethernet config file"},
    .text = xasMadeBy<xasEthEnableText>};
