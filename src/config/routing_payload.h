/** The payload of XMSG_ROUTING: static routes and RIP. IPv4 addresses are in network byte order. */
#ifndef XAS_CONFIG_ROUTING_PAYLOAD_H
#define XAS_CONFIG_ROUTING_PAYLOAD_H

#include "wire/message.h"

struct XasRoute {
    std::uint32_t destination;
    std::uint32_t mask;
    std::uint32_t gateway;
};

static_assert(sizeof(XasRoute) == 12);
static_assert(offsetof(XasRoute, mask) == 4 && offsetof(XasRoute, gateway) == 8);

inline constexpr std::size_t XAS_ROUTES = 64;

struct XasRoutingPayload {
    std::uint32_t start; /**< non-zero, as also `static_enabled`: the routing daemons are started */
    std::uint32_t static_enabled;
    std::uint32_t rip_enabled;
    std::uint32_t rip_version; /**< 0 = version 1, 1 = version 2, other = both */
    std::uint32_t num_routes;  /**< says how many routes are used; all 64 are written */
    XasRoute routes[XAS_ROUTES];
};

static_assert(offsetof(XasRoutingPayload, start) + XAS_PAYLOAD_OFFSET == 120);
static_assert(offsetof(XasRoutingPayload, static_enabled) + XAS_PAYLOAD_OFFSET == 124);
static_assert(offsetof(XasRoutingPayload, rip_enabled) + XAS_PAYLOAD_OFFSET == 128);
static_assert(offsetof(XasRoutingPayload, rip_version) + XAS_PAYLOAD_OFFSET == 132);
static_assert(offsetof(XasRoutingPayload, num_routes) + XAS_PAYLOAD_OFFSET == 136);
static_assert(offsetof(XasRoutingPayload, routes) + XAS_PAYLOAD_OFFSET == 140);
static_assert(sizeof(XasRoutingPayload::routes) == 768);

#endif
