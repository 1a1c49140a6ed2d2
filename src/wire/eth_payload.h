/**
 * The payload of XMSG_ETH: both Ethernet ports, IPv6, gateways, bonding and kernel parameters. It stands on
 * the ground floor because the link watch and the script parameters read it too. IPv4 addresses are in
 * network byte order; 0xFFFFFFFF means none where "none" is allowed.
 */
#ifndef XAS_WIRE_ETH_PAYLOAD_H
#define XAS_WIRE_ETH_PAYLOAD_H

#include "wire/message.h"

#include <netinet/in.h>

/** Where a port takes its address from (`XasEthPort::source`). */
enum XasAddressSource : std::uint32_t { XAS_SOURCE_BOOTP = 0, XAS_SOURCE_DHCP = 1, XAS_SOURCE_STATIC = 2 };

/** One Ethernet port. */
struct XasEthPort {
    std::uint32_t marker;  /**< non-zero: the record is filled; the script parameters read it as "in use" */
    std::uint32_t enabled; /**< non-zero: the interface comes up at boot */
    std::uint32_t source;  /**< XasAddressSource */
    std::uint32_t ip;
    std::uint32_t mask;
    unsigned char ipv6[16]; /**< all zero: none */
    std::uint32_t maskv6;   /**< prefix length */
    std::uint32_t mode;     /**< link mode, 0 (auto) to 6 */
    std::uint32_t mtu;
};

static_assert(sizeof(XasEthPort) == 48);
static_assert(offsetof(XasEthPort, enabled) == 4 && offsetof(XasEthPort, source) == 8);
static_assert(offsetof(XasEthPort, ip) == 12 && offsetof(XasEthPort, mask) == 16);
static_assert(offsetof(XasEthPort, ipv6) == 20 && offsetof(XasEthPort, maskv6) == 36);
static_assert(offsetof(XasEthPort, mode) == 40 && offsetof(XasEthPort, mtu) == 44);

inline constexpr unsigned XAS_ETH_PORTS = 2;

struct XasEthPayload {
    XasEthPort ports[XAS_ETH_PORTS]; /**< eth0, eth1 */
    std::uint32_t ipv6_enabled;
    std::uint32_t gateway;
    sockaddr_in6 gateway_ipv6;   /**< address all zero: none */
    std::uint32_t bonding;       /**< 0 none, 1 active-backup, 2 802.3ad, 3 balance-tlb */
    std::uint32_t gw_precedence; /**< which port's DHCP gateway wins: 1, 2, or neither */
    std::uint32_t alt_gateway;
    std::uint32_t ping_ip;
    std::uint8_t ping_ifc; /**< 1 = eth0, else eth1 */
    std::uint8_t ping_delay;
    std::uint8_t ping_failed;
    std::uint32_t timer;    /**< TCP keepalive time */
    std::uint16_t probes;   /**< TCP keepalive probes */
    std::uint16_t interval; /**< TCP keepalive interval */
    std::uint32_t ip_forwarding;
};

static_assert(offsetof(XasEthPayload, ports) + XAS_PAYLOAD_OFFSET == 120);
static_assert(offsetof(XasEthPayload, ports[1]) + XAS_PAYLOAD_OFFSET == 168);
static_assert(offsetof(XasEthPayload, ipv6_enabled) + XAS_PAYLOAD_OFFSET == 216);
static_assert(offsetof(XasEthPayload, gateway) + XAS_PAYLOAD_OFFSET == 220);
static_assert(offsetof(XasEthPayload, gateway_ipv6) + XAS_PAYLOAD_OFFSET == 224);
static_assert(offsetof(XasEthPayload, gateway_ipv6.sin6_addr) + XAS_PAYLOAD_OFFSET == 232);
static_assert(sizeof(sockaddr_in6) == 28);
static_assert(offsetof(XasEthPayload, bonding) + XAS_PAYLOAD_OFFSET == 252);
static_assert(offsetof(XasEthPayload, gw_precedence) + XAS_PAYLOAD_OFFSET == 256);
static_assert(offsetof(XasEthPayload, alt_gateway) + XAS_PAYLOAD_OFFSET == 260);
static_assert(offsetof(XasEthPayload, ping_ip) + XAS_PAYLOAD_OFFSET == 264);
static_assert(offsetof(XasEthPayload, ping_ifc) + XAS_PAYLOAD_OFFSET == 268);
static_assert(offsetof(XasEthPayload, ping_delay) + XAS_PAYLOAD_OFFSET == 269);
static_assert(offsetof(XasEthPayload, ping_failed) + XAS_PAYLOAD_OFFSET == 270);
static_assert(offsetof(XasEthPayload, timer) + XAS_PAYLOAD_OFFSET == 272);
static_assert(offsetof(XasEthPayload, probes) + XAS_PAYLOAD_OFFSET == 276);
static_assert(offsetof(XasEthPayload, interval) + XAS_PAYLOAD_OFFSET == 278);
static_assert(offsetof(XasEthPayload, ip_forwarding) + XAS_PAYLOAD_OFFSET == 280);

#endif
