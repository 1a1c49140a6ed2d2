/** XMSG_IPFILTER_SET and XMSG_IPFILTER_ASSIGN: filter sets, and the set that each interface uses. */
#include "dispatch/ipfilter_payload.h"
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasMsgGroup RULES = {.name = "rule",
                               .place = XAS_PLACE(XasIpFilterSetPayload, rules),
                               .stride = sizeof(XasIpFilterRule),
                               .meaning = "the rules, tried in this order"};

constexpr XasValueName ACTIONS[] = {
    {XAS_FILTER_CREATE, "create"}, {XAS_FILTER_REPLACE, "replace"}, {XAS_FILTER_REMOVE, "remove"}};

constexpr XasValueName PROTOCOLS[] = {
    {0, "none"}, {1, "all"},  {2, "tcp"},       {3, "tcp-syn"}, {4, "tcp-not-syn"},
    {5, "udp"},  {6, "icmp"}, {7, "icmp-echo"}, {8, "esp"},
};

constexpr XasValueName TARGETS[] = {{0, "accept"}, {1, "reject"}, {2, "drop"}};

constexpr XasMsgField SET_FIELDS[] = {
    {.name = "id",
     .place = XAS_PLACE(XasIpFilterSetPayload, id),
     .kind = number,
     .meaning = "the set's number",
     .range = XasRange{1, 64},
     .initial = "1"},
    {.name = "name",
     .place = XAS_PLACE(XasIpFilterSetPayload, name),
     .kind = text,
     .meaning = "the set's name, and that of its iptables chain"},
    {.name = "action",
     .place = XAS_PLACE(XasIpFilterSetPayload, action),
     .kind = choice,
     .meaning = "what is done with the set; replace: its rules",
     .names = ACTIONS},
    {.name = "num_rules",
     .place = XAS_PLACE(XasIpFilterSetPayload, num_rules),
     .kind = number,
     .meaning = "how many rules there are",
     .range = XasRange{0, XAS_FILTER_RULES_MAX},
     .counts = &RULES},
    {.name = "ip",
     .place = XAS_PLACE(XasIpFilterSetPayload, rules[0].ip),
     .kind = ipv4,
     .meaning = "source address, or the first one of a range",
     .group = &RULES},
    {.name = "range_end",
     .place = XAS_PLACE(XasIpFilterSetPayload, rules[0].range_end),
     .kind = ipv4,
     .meaning = "last source address of a range",
     .none = true,
     .initial = "none",
     .group = &RULES},
    {.name = "masklength",
     .place = XAS_PLACE(XasIpFilterSetPayload, rules[0].masklength),
     .kind = number,
     .meaning = "prefix length of the address where there is no range",
     .range = XasRange{0, 32},
     .initial = "32",
     .group = &RULES},
    {.name = "protocol",
     .place = XAS_PLACE(XasIpFilterSetPayload, rules[0].protocol),
     .kind = choice,
     .meaning = "the packets meant; none: the rule is skipped",
     .names = PROTOCOLS,
     .initial = "all",
     .group = &RULES},
    {.name = "portrange",
     .place = XAS_PLACE(XasIpFilterSetPayload, rules[0].portrange),
     .kind = text,
     .meaning = "destination ports and ranges as in 22,8000:8080; empty: any",
     .group = &RULES},
    {.name = "target",
     .place = XAS_PLACE(XasIpFilterSetPayload, rules[0].target),
     .kind = choice,
     .meaning = "what becomes of the packet",
     .names = TARGETS,
     .group = &RULES},
};
static_assert(xasMsgFieldsAreSound(SET_FIELDS));

constexpr XasValueName INTERFACES[] = {{XAS_IFACE_ETHERNET, "eth"}, {XAS_IFACE_PPP, "ppp"}};

constexpr XasMsgField ASSIGN_FIELDS[] = {
    {.name = "iface_type",
     .place = XAS_PLACE(XasIpFilterAssignPayload, iface_type),
     .kind = choice,
     .meaning = "kind of interface",
     .names = INTERFACES,
     .initial = "eth"},
    {.name = "iface_id",
     .place = XAS_PLACE(XasIpFilterAssignPayload, iface_id),
     .kind = number,
     .meaning = "number of the Ethernet port (1 is the device eth0) or of the PPP link (1 is ppp1)",
     .range = XasRange{1, 255},
     .initial = "1"},
    {.name = "filterName",
     .place = XAS_PLACE(XasIpFilterAssignPayload, filterName),
     .kind = text,
     .meaning = "the set that it uses; empty: none, nothing is filtered"},
};
static_assert(xasMsgFieldsAreSound(ASSIGN_FIELDS));

} // namespace

const XasMsgFields XAS_IPFILTER_SET_FIELDS = {
    .msgtype = XMSG_IPFILTER_SET, .meaning = "a set of IP filter rules", .fields = SET_FIELDS};

const XasMsgFields XAS_IPFILTER_ASSIGN_FIELDS = {
    .msgtype = XMSG_IPFILTER_ASSIGN, .meaning = "the IP filter set of an interface", .fields = ASSIGN_FIELDS};
