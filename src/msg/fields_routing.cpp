/** XMSG_ROUTING: static routes and RIP. */
#include "config/routing_payload.h"
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasMsgGroup ROUTES = {.name = "route",
                                .place = XAS_PLACE(XasRoutingPayload, routes),
                                .stride = sizeof(XasRoute),
                                .meaning = "static routes"};

constexpr XasValueName RIP_VERSIONS[] = {{0, "v1"}, {1, "v2"}, {2, "both"}};

constexpr XasMsgField FIELDS[] = {
    {.name = "start",
     .place = XAS_PLACE(XasRoutingPayload, start),
     .kind = flag,
     .meaning = "start the routing daemons; static routing starts them too, RIP alone does not"},
    {.name = "static_enabled",
     .place = XAS_PLACE(XasRoutingPayload, static_enabled),
     .kind = flag,
     .meaning = "static routes are used"},
    {.name = "rip_enabled",
     .place = XAS_PLACE(XasRoutingPayload, rip_enabled),
     .kind = flag,
     .meaning = "RIP is spoken on both ports"},
    {.name = "rip_version",
     .place = XAS_PLACE(XasRoutingPayload, rip_version),
     .kind = choice,
     .meaning = "the version of RIP that is sent and received",
     .names = RIP_VERSIONS,
     .initial = "v2"},
    {.name = "num_routes",
     .place = XAS_PLACE(XasRoutingPayload, num_routes),
     .kind = number,
     .meaning = "how many static routes there are",
     .range = XasRange{0, XAS_ROUTES},
     .counts = &ROUTES},
    {.name = "destination",
     .place = XAS_PLACE(XasRoutingPayload, routes[0].destination),
     .kind = ipv4,
     .meaning = "network or host to reach",
     .group = &ROUTES},
    {.name = "mask",
     .place = XAS_PLACE(XasRoutingPayload, routes[0].mask),
     .kind = ipv4,
     .meaning = "its netmask",
     .group = &ROUTES},
    {.name = "gateway",
     .place = XAS_PLACE(XasRoutingPayload, routes[0].gateway),
     .kind = ipv4,
     .meaning = "the router that leads there",
     .group = &ROUTES},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_ROUTING_FIELDS = {
    .msgtype = XMSG_ROUTING, .meaning = "static routes and RIP", .fields = FIELDS};
