/** The payload of XMSG_RADIUS: two servers with their secrets. */
#ifndef XAS_AUTH_RADIUS_PAYLOAD_H
#define XAS_AUTH_RADIUS_PAYLOAD_H

#include "wire/address.h"
#include "wire/message.h"

struct XasRadiusServer {
    XasHostAddr host;
    char secret[130]; /**< shared with the server */
    std::uint16_t port;
};

struct XasRadiusPayload {
    std::uint32_t enabled; /**< zero: no server is written */
    std::uint8_t order;    /**< for others; the order on disk counts */
    XasRadiusServer server1;
    XasRadiusServer server2; /**< an empty name: none */
    std::uint8_t timeout;    /**< seconds, of both */
};

static_assert(offsetof(XasRadiusPayload, enabled) + XAS_PAYLOAD_OFFSET == 120);
static_assert(offsetof(XasRadiusPayload, order) + XAS_PAYLOAD_OFFSET == 124);
static_assert(offsetof(XasRadiusPayload, server1.host) + XAS_PAYLOAD_OFFSET == 128);
static_assert(offsetof(XasRadiusPayload, server1.secret) + XAS_PAYLOAD_OFFSET == 204);
static_assert(offsetof(XasRadiusPayload, server1.port) + XAS_PAYLOAD_OFFSET == 334);
static_assert(offsetof(XasRadiusPayload, server2.host) + XAS_PAYLOAD_OFFSET == 336);
static_assert(offsetof(XasRadiusPayload, server2.secret) + XAS_PAYLOAD_OFFSET == 412);
static_assert(offsetof(XasRadiusPayload, server2.port) + XAS_PAYLOAD_OFFSET == 542);
static_assert(offsetof(XasRadiusPayload, timeout) + XAS_PAYLOAD_OFFSET == 544);

#endif
