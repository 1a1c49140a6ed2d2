/** The payload of XMSG_ROUTING: static routes and RIP. */
#ifndef XAS_CONFIG_ROUTING_MESSAGE_H
#define XAS_CONFIG_ROUTING_MESSAGE_H

#include "wire/address.h"
#include "wire/field.h"

struct XasRoute {
    XasIPv4 destination;
    XasIPv4 mask;
    XasIPv4 gateway;
};

inline constexpr std::size_t XAS_ROUTES = 64;

struct XasRoutingPayload {
    std::uint32_t start; /**< non-zero, as also `static_enabled`: the routing daemons are started */
    std::uint32_t static_enabled;
    std::uint32_t rip_enabled;
    std::uint32_t rip_version; /**< 0 = version 1, 1 = version 2, other = both */
    std::uint32_t num_routes;  /**< says how many routes are used; all 64 are written */
    XasRoute routes[XAS_ROUTES];
};

namespace xasRoutingFields {

inline constexpr XasMsgGroup ROUTES = XAS_GROUP("route", XasRoutingPayload, routes, "static routes");

inline constexpr XasValueName RIP_VERSIONS[] = {{0, "v1"}, {1, "v2"}, {2, "both"}};

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD(XasRoutingPayload, start, flag,
              "start the routing daemons; static routing starts them too, RIP alone does not"),
    XAS_FIELD(XasRoutingPayload, static_enabled, flag, "static routes are used"),
    XAS_FIELD(XasRoutingPayload, rip_enabled, flag, "RIP is spoken on both ports"),
    XAS_FIELD(XasRoutingPayload, rip_version, choice, "the version of RIP that is sent and received")
        .of(RIP_VERSIONS)
        .byDefault("v2"),
    XAS_FIELD(XasRoutingPayload, num_routes, number, "how many static routes there are")
        .within(0, XAS_ROUTES)
        .counting(ROUTES),
    XAS_FIELD_OF(XasRoutingPayload, routes[0], destination, ipv4, "network or host to reach").in(ROUTES),
    XAS_FIELD_OF(XasRoutingPayload, routes[0], mask, ipv4, "its netmask").in(ROUTES),
    XAS_FIELD_OF(XasRoutingPayload, routes[0], gateway, ipv4, "the router that leads there").in(ROUTES),
};
static_assert(xasFieldsAreSound<XasRoutingPayload>(FIELDS));

} // namespace xasRoutingFields

inline constexpr XasMsgFields XAS_ROUTING_MESSAGE = {
    .msgtype = XMSG_ROUTING, .meaning = "static routes and RIP", .fields = xasRoutingFields::FIELDS};

#endif
