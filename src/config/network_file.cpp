#include "config/network_file.h"

#include "core/text.h"
#include "core/utils.h"
#include "platform/config_library.h"

#include <algorithm>

namespace {

bool isUnset(const in6_addr &address)
{
    return std::ranges::all_of(address.s6_addr, [](unsigned char byte) { return byte == 0; });
}

/** The gateway's line; empty when there is none. */
std::string gatewayLine(const XasNetInfo &netInfo)
{
    if (netInfo.gateway.isNone())
        return {};
    return xasFormatLine("%s=%s\n", "GATEWAY", xasIPv4ToStr(netInfo.gateway).c_str());
}

std::string gatewayIPv6Line(const XasNetInfo &netInfo)
{
    if (isUnset(netInfo.gatewayIPv6.sin6_addr))
        return {};
    return xasFormatLine("%s=%s\n", "IPV6_GATEWAY", xmlSockAddr6ToStr(&netInfo.gatewayIPv6));
}

} // namespace

std::string xasNetCfgText(std::string_view oldText, const XasNetInfo &netInfo)
{
    std::string newText = xasBeginNewText(oldText);
    bool hasGateway = false;
    bool hasGatewayIPv6 = false;
    xasForEachLine(oldText, [&](std::string_view line) {
        const std::string_view key = xasFirstToken(line, "=");
        if (key == "HOSTNAME" && netInfo.setHostname) {
            newText += xasFormatLine("%s=%s\n", "HOSTNAME", netInfo.hostname.c_str());
        } else if (key == "GATEWAY" && netInfo.setGateway) {
            newText += gatewayLine(netInfo);
            hasGateway = true;
        } else if (key == "IPV6_GATEWAY" && netInfo.setGateway) {
            newText += gatewayIPv6Line(netInfo);
            hasGatewayIPv6 = true;
        } else if (key == "NETWORKING_IPV6" && netInfo.setGateway) {
            newText += xasFormatLine("%s=%s\n", "NETWORKING_IPV6", netInfo.ipv6Enabled != 0 ? "yes" : "no");
        } else {
            newText += line;
        }
    });
    if (netInfo.setGateway && !hasGateway)
        newText += gatewayLine(netInfo);
    if (netInfo.setGateway && !hasGatewayIPv6)
        newText += gatewayIPv6Line(netInfo);
    return newText;
}

constexpr XasEditor<XasNetInfo> xasEditNetCfgFile{
    .argument = "netInfo",
    .texts = {.openReason = "Error opening network config file",
              .writeLog = "Error printing line to network config file\n",
              .saveReason = "Error saving new network config file"},
    .text = xasMadeBy<xasNetCfgText>};
