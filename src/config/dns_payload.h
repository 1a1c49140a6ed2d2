/** The payload of XMSG_DNS: up to three name servers and the address family to prefer. */
#ifndef XAS_CONFIG_DNS_PAYLOAD_H
#define XAS_CONFIG_DNS_PAYLOAD_H

#include "wire/address.h"
#include "wire/message.h"

struct XasDnsPayload {
    XasIpAddr dns1; /**< all zero: unset, as for the other two */
    XasIpAddr dns2;
    XasIpAddr dns3;
    std::uint32_t prefer_ipv4; /**< non-zero: prefer IPv4 records */
};

static_assert(offsetof(XasDnsPayload, dns1) + XAS_PAYLOAD_OFFSET == 120);
static_assert(offsetof(XasDnsPayload, dns2) + XAS_PAYLOAD_OFFSET == 140);
static_assert(offsetof(XasDnsPayload, dns3) + XAS_PAYLOAD_OFFSET == 160);
static_assert(offsetof(XasDnsPayload, prefer_ipv4) + XAS_PAYLOAD_OFFSET == 180);

#endif
