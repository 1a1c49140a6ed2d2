/** The payloads of XMSG_IPFILTER_SET and XMSG_IPFILTER_ASSIGN. */
#ifndef XAS_DISPATCH_IPFILTER_MESSAGE_H
#define XAS_DISPATCH_IPFILTER_MESSAGE_H

#include "wire/address.h"
#include "wire/field.h"

/** What an XMSG_IPFILTER_SET asks for. */
enum XasFilterAction : std::uint32_t { XAS_FILTER_CREATE = 0, XAS_FILTER_REPLACE = 1, XAS_FILTER_REMOVE = 2 };

/** One rule of a filter set. */
struct XasIpFilterRule {
    XasIPv4 ip;               /**< source address, or the first of a range */
    XasIPv4 range_end;        /**< the last of a range; none: no range */
    std::uint32_t masklength; /**< prefix length where there is no range */
    std::uint32_t protocol;   /**< protocol code; 0 = the rule is skipped */
    char portrange[16];       /**< destination ports, separated by commas; empty = any */
    std::uint32_t target;     /**< 0 accept, 1 reject, else drop */
};

/** A message holds this many rules; further ones cannot be there, whatever the count says. */
inline constexpr std::uint32_t XAS_FILTER_RULES_MAX = 65;

struct XasIpFilterSetPayload {
    std::uint8_t id;      /**< set number, 1 to 64 */
    char name[16];        /**< the chain's name */
    std::uint32_t action; /**< XasFilterAction */
    std::uint32_t num_rules;
    XasIpFilterRule rules[XAS_FILTER_RULES_MAX];
};

/** `iface_type` of an Ethernet port; any other value is a PPP link. */
inline constexpr std::uint32_t XAS_IFACE_ETHERNET = 1;
inline constexpr std::uint32_t XAS_IFACE_PPP = 2;

struct XasIpFilterAssignPayload {
    std::uint32_t iface_type;
    std::uint8_t iface_id;                 /**< Ethernet port from 1, or PPP link */
    char filterName[XAS_PAYLOAD_SIZE - 5]; /**< the set to attach; empty: detach only */
};

namespace xasIpFilterFields {

inline constexpr XasMsgGroup RULES =
    XAS_GROUP("rule", XasIpFilterSetPayload, rules, "the rules, tried in this order");

inline constexpr XasValueName ACTIONS[] = {
    {XAS_FILTER_CREATE, "create"}, {XAS_FILTER_REPLACE, "replace"}, {XAS_FILTER_REMOVE, "remove"}};

inline constexpr XasValueName PROTOCOLS[] = {
    {0, "none"}, {1, "all"},  {2, "tcp"},       {3, "tcp-syn"}, {4, "tcp-not-syn"},
    {5, "udp"},  {6, "icmp"}, {7, "icmp-echo"}, {8, "esp"},
};

inline constexpr XasValueName TARGETS[] = {{0, "accept"}, {1, "reject"}, {2, "drop"}};

/** A removed set's rules are not looked at, nor are those behind the count. */
inline bool isRuleTaken(const XasMessage &msg, std::size_t rule)
{
    const auto set = xasReadPayload<XasIpFilterSetPayload>(msg);
    return rule < set.num_rules && (set.action == XAS_FILTER_CREATE || set.action == XAS_FILTER_REPLACE);
}

inline constexpr XasMsgField SET_FIELDS[] = {
    XAS_FIELD(XasIpFilterSetPayload, id, number, "the set's number").within(1, 64).byDefault("1"),
    XAS_FIELD(XasIpFilterSetPayload, name, text, "the set's name, and that of its iptables chain")
        .holding(XasTextRule::option),
    XAS_FIELD(XasIpFilterSetPayload, action, choice, "what is done with the set; replace: its rules")
        .of(ACTIONS),
    XAS_FIELD(XasIpFilterSetPayload, num_rules, number, "how many rules there are")
        .within(0, XAS_FILTER_RULES_MAX)
        .counting(RULES),
    XAS_FIELD_OF(XasIpFilterSetPayload, rules[0], ip, ipv4, "source address, or the first one of a range")
        .in(RULES),
    XAS_FIELD_OF(XasIpFilterSetPayload, rules[0], range_end, ipv4, "last source address of a range")
        .orNone()
        .byDefault("none")
        .in(RULES),
    XAS_FIELD_OF(XasIpFilterSetPayload, rules[0], masklength, number,
                 "prefix length of the address where there is no range")
        .within(0, 32)
        .byDefault("32")
        .in(RULES),
    XAS_FIELD_OF(XasIpFilterSetPayload, rules[0], protocol, choice,
                 "the packets meant; none: the rule is skipped")
        .of(PROTOCOLS)
        .byDefault("all")
        .in(RULES),
    XAS_FIELD_OF(XasIpFilterSetPayload, rules[0], portrange, text,
                 "destination ports and ranges as in 22,8000:8080; empty: any")
        .readIf(isRuleTaken)
        .in(RULES),
    XAS_FIELD_OF(XasIpFilterSetPayload, rules[0], target, choice, "what becomes of the packet")
        .of(TARGETS)
        .in(RULES),
};
static_assert(xasFieldsAreSound<XasIpFilterSetPayload>(SET_FIELDS));

inline constexpr XasValueName INTERFACES[] = {{XAS_IFACE_ETHERNET, "eth"}, {XAS_IFACE_PPP, "ppp"}};

inline constexpr XasMsgField ASSIGN_FIELDS[] = {
    XAS_FIELD(XasIpFilterAssignPayload, iface_type, choice, "kind of interface")
        .of(INTERFACES)
        .byDefault("eth"),
    XAS_FIELD(XasIpFilterAssignPayload, iface_id, number,
              "number of the Ethernet port (1 is the device eth0) or of the PPP link (1 is ppp1)")
        .within(1, 255)
        .byDefault("1"),
    XAS_FIELD(XasIpFilterAssignPayload, filterName, text,
              "the set that it uses; empty: none, nothing is filtered")
        .holding(XasTextRule::option),
};
static_assert(xasFieldsAreSound<XasIpFilterAssignPayload>(ASSIGN_FIELDS));

} // namespace xasIpFilterFields

inline constexpr XasMsgFields XAS_IPFILTER_SET_MESSAGE = {.msgtype = XMSG_IPFILTER_SET,
                                                          .meaning = "a set of IP filter rules",
                                                          .fields = xasIpFilterFields::SET_FIELDS};

inline constexpr XasMsgFields XAS_IPFILTER_ASSIGN_MESSAGE = {.msgtype = XMSG_IPFILTER_ASSIGN,
                                                             .meaning = "the IP filter set of an interface",
                                                             .fields = xasIpFilterFields::ASSIGN_FIELDS};

#endif
