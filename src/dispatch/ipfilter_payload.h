/** The payloads of XMSG_IPFILTER_SET and XMSG_IPFILTER_ASSIGN. IPv4 values are in network byte order. */
#ifndef XAS_DISPATCH_IPFILTER_PAYLOAD_H
#define XAS_DISPATCH_IPFILTER_PAYLOAD_H

#include "wire/message.h"

/** What an XMSG_IPFILTER_SET asks for. */
enum XasFilterAction : std::uint32_t { XAS_FILTER_CREATE = 0, XAS_FILTER_REPLACE = 1, XAS_FILTER_REMOVE = 2 };

/** One rule of a filter set. */
struct XasIpFilterRule {
    std::uint32_t ip;         /**< source address, or the first of a range */
    std::uint32_t range_end;  /**< the last of a range; 0xFFFFFFFF = no range */
    std::uint32_t masklength; /**< prefix length where there is no range */
    std::uint32_t protocol;   /**< protocol code; 0 = the rule is skipped */
    char portrange[16];       /**< destination ports, separated by commas; empty = any */
    std::uint32_t target;     /**< 0 accept, 1 reject, else drop */
};

static_assert(sizeof(XasIpFilterRule) == 36);
static_assert(offsetof(XasIpFilterRule, protocol) == 12 && offsetof(XasIpFilterRule, portrange) == 16);
static_assert(offsetof(XasIpFilterRule, target) == 32);

/** A message holds this many rules; further ones cannot be there, whatever the count says. */
inline constexpr std::uint32_t XAS_FILTER_RULES_MAX = 65;

struct XasIpFilterSetPayload {
    std::uint8_t id;      /**< set number, 1 to 64 */
    char name[16];        /**< the chain's name */
    std::uint32_t action; /**< XasFilterAction */
    std::uint32_t num_rules;
    XasIpFilterRule rules[XAS_FILTER_RULES_MAX];
};

static_assert(offsetof(XasIpFilterSetPayload, id) + XAS_PAYLOAD_OFFSET == 120);
static_assert(offsetof(XasIpFilterSetPayload, name) + XAS_PAYLOAD_OFFSET == 121);
static_assert(offsetof(XasIpFilterSetPayload, action) + XAS_PAYLOAD_OFFSET == 140);
static_assert(offsetof(XasIpFilterSetPayload, num_rules) + XAS_PAYLOAD_OFFSET == 144);
static_assert(offsetof(XasIpFilterSetPayload, rules) + XAS_PAYLOAD_OFFSET == 148);
static_assert(sizeof(XasIpFilterSetPayload) == XAS_PAYLOAD_SIZE);

/** `iface_type` of an Ethernet port; any other value is a PPP link. */
inline constexpr std::uint32_t XAS_IFACE_ETHERNET = 1;
inline constexpr std::uint32_t XAS_IFACE_PPP = 2;

struct XasIpFilterAssignPayload {
    std::uint32_t iface_type;
    std::uint8_t iface_id;                 /**< Ethernet port from 1, or PPP link */
    char filterName[XAS_PAYLOAD_SIZE - 5]; /**< the set to attach; empty: detach only */
};

static_assert(offsetof(XasIpFilterAssignPayload, iface_id) + XAS_PAYLOAD_OFFSET == 124);
static_assert(offsetof(XasIpFilterAssignPayload, filterName) + XAS_PAYLOAD_OFFSET == 125);
static_assert(sizeof(XasIpFilterAssignPayload) == XAS_PAYLOAD_SIZE);

#endif
