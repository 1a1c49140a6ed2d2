/** IP filter sets and assignments as tests build them. */
#ifndef XAS_TEST_SUPPORT_IPFILTER_H
#define XAS_TEST_SUPPORT_IPFILTER_H

#include "dispatch/ipfilter_message.h"
#include "support/eth.h"
#include "support/message.h"

#include <vector>

/** A rule as people would write it down; one address and whatever port unless told otherwise. */
struct XasTestRule {
    const char *ip = "192.0.2.1";
    const char *rangeEnd = "255.255.255.255";
    std::uint32_t masklength = 32;
    std::uint32_t protocol = 1;
    std::string_view portrange = {};
    std::uint32_t target = 0;
};

/** The rule's record; a text that fills its field has no terminating NUL. */
inline XasIpFilterRule xasTestRuleRecord(const XasTestRule &rule)
{
    XasIpFilterRule record{};
    record.ip = xasTestIPv4(rule.ip);
    record.range_end = xasTestIPv4(rule.rangeEnd);
    record.masklength = rule.masklength;
    record.protocol = rule.protocol;
    rule.portrange.copy(record.portrange, sizeof record.portrange);
    record.target = rule.target;
    return record;
}

inline XasIpFilterSetPayload xasTestFilterSet(std::string_view name, const std::vector<XasTestRule> &rules,
                                              std::uint32_t action = XAS_FILTER_CREATE, std::uint8_t id = 1)
{
    XasIpFilterSetPayload set{};
    set.id = id;
    name.copy(set.name, sizeof set.name);
    set.action = action;
    for (const XasTestRule &rule : rules)
        set.rules[set.num_rules++] = xasTestRuleRecord(rule);
    return set;
}

inline XasMessage xasTestFilterSetMessage(const XasIpFilterSetPayload &set)
{
    return XasMessageBuilder{XMSG_IPFILTER_SET}.payload(set);
}

inline XasMessage xasTestAssignMessage(std::uint32_t ifaceType, std::uint8_t ifaceId,
                                       std::string_view filterName)
{
    return XasMessageBuilder{XMSG_IPFILTER_ASSIGN}
        .set("iface_type", ifaceType)
        .set("iface_id", ifaceId)
        .set("filterName", filterName);
}

inline XasMessage xasTestFirewallMessage(std::uint32_t enabled, std::int32_t testTime)
{
    return XasMessageBuilder{XMSG_FIREWALL}.set("enabled", enabled).set("test_time", testTime);
}

/** The commands that switch the filter as a whole. */
inline constexpr const char *XAS_DISABLE_FILTER =
    "XTABLES_LIBDIR=/libexec/xtables;export XTABLES_LIBDIR;/bin/iptables -I INPUT 1 -j ACCEPT";
inline constexpr const char *XAS_ENABLE_FILTER =
    "XTABLES_LIBDIR=/libexec/xtables;export XTABLES_LIBDIR;/bin/iptables -D INPUT -j ACCEPT";

#endif
