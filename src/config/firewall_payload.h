/**
 * The payload of XMSG_FIREWALL: the switch of the IP filter, and which services are open to everybody. The
 * filter reads the first two words, the firewall settings the rest.
 */
#ifndef XAS_CONFIG_FIREWALL_PAYLOAD_H
#define XAS_CONFIG_FIREWALL_PAYLOAD_H

#include "wire/message.h"

/** How a refused packet is answered (`XasFirewallPayload::reject_method`); other values are refused. */
enum XasRejectMethod : std::uint32_t { XAS_METHOD_REJECT = 0, XAS_METHOD_DROP = 1 };

struct XasFirewallPayload {
    std::uint32_t enabled;       /**< non-zero: the IP filter is on */
    std::int32_t test_time;      /**< minutes after which it is switched off again; 0 or below: never */
    std::uint32_t reject_method; /**< XasRejectMethod */
    std::uint32_t invisible;     /**< non-zero: pings are not answered */
    std::uint32_t ssh;           /**< non-zero: open, as for all below */
    std::uint32_t telnet;
    std::uint32_t www;
    std::uint32_t https;
    std::uint32_t smb;
};

static_assert(offsetof(XasFirewallPayload, enabled) + XAS_PAYLOAD_OFFSET == 120);
static_assert(offsetof(XasFirewallPayload, test_time) + XAS_PAYLOAD_OFFSET == 124);
static_assert(offsetof(XasFirewallPayload, reject_method) + XAS_PAYLOAD_OFFSET == 128);
static_assert(offsetof(XasFirewallPayload, invisible) + XAS_PAYLOAD_OFFSET == 132);
static_assert(offsetof(XasFirewallPayload, ssh) + XAS_PAYLOAD_OFFSET == 136);
static_assert(offsetof(XasFirewallPayload, telnet) + XAS_PAYLOAD_OFFSET == 140);
static_assert(offsetof(XasFirewallPayload, www) + XAS_PAYLOAD_OFFSET == 144);
static_assert(offsetof(XasFirewallPayload, https) + XAS_PAYLOAD_OFFSET == 148);
static_assert(offsetof(XasFirewallPayload, smb) + XAS_PAYLOAD_OFFSET == 152);

#endif
