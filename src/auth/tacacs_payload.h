/** The payload of XMSG_TACACS: up to three servers that share a secret. */
#ifndef XAS_AUTH_TACACS_PAYLOAD_H
#define XAS_AUTH_TACACS_PAYLOAD_H

#include "wire/address.h"
#include "wire/message.h"

inline constexpr std::size_t XAS_TACACS_SERVERS = 3;

/** How the user's password travels (`XasTacacsPayload::service`); any other value means PAP. */
enum XasTacacsService : std::uint32_t { XAS_TACACS_PAP = 0, XAS_TACACS_CHAP = 1, XAS_TACACS_LOGIN = 2 };

struct XasTacacsPayload {
    std::uint32_t enabled; /**< non-zero: the application is started; the file is written anyway */
    std::uint8_t order;    /**< for others; the order on disk counts */
    XasHostAddr servers[XAS_TACACS_SERVERS]; /**< an empty name: none */
    char server1_secret[128];
    std::uint32_t encrypt; /**< 1: the traffic is encrypted */
    std::uint32_t service; /**< XasTacacsService */
};

static_assert(offsetof(XasTacacsPayload, enabled) + XAS_PAYLOAD_OFFSET == 120);
static_assert(offsetof(XasTacacsPayload, order) + XAS_PAYLOAD_OFFSET == 124);
static_assert(offsetof(XasTacacsPayload, servers) + XAS_PAYLOAD_OFFSET == 128);
static_assert(offsetof(XasTacacsPayload, servers[1]) + XAS_PAYLOAD_OFFSET == 204);
static_assert(offsetof(XasTacacsPayload, servers[2]) + XAS_PAYLOAD_OFFSET == 280);
static_assert(offsetof(XasTacacsPayload, server1_secret) + XAS_PAYLOAD_OFFSET == 356);
static_assert(offsetof(XasTacacsPayload, encrypt) + XAS_PAYLOAD_OFFSET == 484);
static_assert(offsetof(XasTacacsPayload, service) + XAS_PAYLOAD_OFFSET == 488);

#endif
