/** The payload of XMSG_NIS: the NIS domain and its servers. */
#ifndef XAS_AUTH_NIS_PAYLOAD_H
#define XAS_AUTH_NIS_PAYLOAD_H

#include "wire/address.h"
#include "wire/message.h"

inline constexpr std::size_t XAS_NIS_SLAVES = 5;

struct XasNisPayload {
    std::uint32_t enabled; /**< non-zero: the NIS client is started */
    std::uint8_t order;    /**< for others; the order on disk counts */
    char domain[103];
    std::uint32_t broadcast; /**< non-zero: servers are also found by broadcast */
    XasHostAddr master;
    XasHostAddr slaves[XAS_NIS_SLAVES]; /**< an empty name: none */
};

static_assert(offsetof(XasNisPayload, enabled) + XAS_PAYLOAD_OFFSET == 120);
static_assert(offsetof(XasNisPayload, order) + XAS_PAYLOAD_OFFSET == 124);
static_assert(offsetof(XasNisPayload, domain) + XAS_PAYLOAD_OFFSET == 125);
static_assert(offsetof(XasNisPayload, broadcast) + XAS_PAYLOAD_OFFSET == 228);
static_assert(offsetof(XasNisPayload, master) + XAS_PAYLOAD_OFFSET == 232);
static_assert(offsetof(XasNisPayload, slaves) + XAS_PAYLOAD_OFFSET == 308);
static_assert(offsetof(XasNisPayload, slaves[1]) + XAS_PAYLOAD_OFFSET == 384);
static_assert(offsetof(XasNisPayload, slaves[2]) + XAS_PAYLOAD_OFFSET == 460);
static_assert(offsetof(XasNisPayload, slaves[3]) + XAS_PAYLOAD_OFFSET == 536);
static_assert(offsetof(XasNisPayload, slaves[4]) + XAS_PAYLOAD_OFFSET == 612);

#endif
