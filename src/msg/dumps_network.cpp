#include "msg/dumps.h"
#include "wire/reply_message.h"

#include "config/dns_message.h"
#include "config/hostname_message.h"
#include "config/ntp_message.h"
#include "config/routing_message.h"
#include "config/timezone_message.h"
#include "core/text.h"
#include "core/utils.h"
#include "msg/enum_names.h"
#include "msg/print.h"
#include "platform/config_library.h"

#include <algorithm>

namespace {

std::string routeLine(const XasRoute &route)
{
    return xasFormat("  destination: %s mask: %s gateway: %s\n", msgIPv4Text(route.destination).c_str(),
                     msgIPv4Text(route.mask).c_str(), msgIPv4Text(route.gateway).c_str());
}

} // namespace

std::string msgDumpHostname(const XasMessage &msg)
{
    const auto payload = xasReadPayload<XasHostnamePayload>(msg);
    return xasFormat("hostname: %s domain: %s\n", xasFieldString(payload.hostname).c_str(),
                     xasFieldString(payload.domain).c_str());
}

std::string msgDumpDns(const XasMessage &msg)
{
    const auto payload = xasReadPayload<XasDnsPayload>(msg);
    const std::string dns1 = xmlIPv4Or6ToStr(&payload.dns1);
    const std::string dns2 = xmlIPv4Or6ToStr(&payload.dns2);
    const std::string dns3 = xmlIPv4Or6ToStr(&payload.dns3);
    return xasFormat("dns: %s\n", msgThreeText(dns1, dns2, dns3).c_str()) +
           xasFormat("prefer IPv4 DNS records: %s\n", msgYesNoName(payload.prefer_ipv4));
}

std::string msgDumpNtp(const XasMessage &msg)
{
    const auto payload = xasReadPayload<XasNtpPayload>(msg);
    return xasFormat("enabled: %s sync: %s poll: %s local1: %s\n", msgYesNoName(payload.enabled),
                     msgYesNoName(payload.sync), msgYesNoName(payload.poll),
                     xasHostToStr(payload.servers[0]).c_str());
}

std::string msgDumpTimezone(const XasMessage &msg)
{
    return xasFormat("zone: %s\n", xasFieldString(xasReadPayload<XasTimezonePayload>(msg).zone).c_str());
}

std::string msgDumpRouting(const XasMessage &msg)
{
    const auto payload = xasReadPayload<XasRoutingPayload>(msg);
    constexpr const char *VERSIONS[] = {"1", "2", "both"};
    std::string text = xasFormat("static_enabled: %s rip_enabled: %s rip_version: %s num_routes: %d\n",
                                 msgYesNoName(payload.static_enabled), msgYesNoName(payload.rip_enabled),
                                 VERSIONS[std::min<std::uint32_t>(payload.rip_version, 2)],
                                 static_cast<int>(payload.num_routes));
    const std::size_t count = std::min<std::size_t>(payload.num_routes, std::size(payload.routes));
    for (const XasRoute &route : std::span{payload.routes}.first(count))
        text += routeLine(route);
    return text;
}

std::string msgDumpReply(const XasMessage &msg)
{
    const auto payload = xasReadPayload<XasReplyPayload>(msg);
    return xasFormat("success: %s complete: %s\nrcode: %u rstr: %s\n", msgYesNoName(payload.success),
                     msgYesNoName(payload.complete), payload.rcode, xasFieldString(payload.rstr).c_str());
}
