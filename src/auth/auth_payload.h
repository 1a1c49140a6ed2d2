/** The payload of XMSG_AUTH: which login methods are used, and in which order. */
#ifndef XAS_AUTH_AUTH_PAYLOAD_H
#define XAS_AUTH_AUTH_PAYLOAD_H

#include "wire/message.h"

/** A method's position: 1 is tried first, 0 means that the method is not used. A larger one counts as 0. */
inline constexpr std::uint8_t XAS_AUTH_POSITIONS = 7;

struct XasAuthCfg {
    std::uint8_t local;
    std::uint8_t nis;
    std::uint8_t ldap;
    std::uint8_t radius;
    std::uint8_t securid;
    std::uint8_t kerberos;
    std::uint8_t tacacs;
    std::uint8_t unused;
    std::uint32_t first_responding; /**< non-zero: the first method that answers decides */
    std::uint32_t start_nis;        /**< non-zero: the NIS client is started when NIS has a position */
};

static_assert(offsetof(XasAuthCfg, local) + XAS_PAYLOAD_OFFSET == 120);
static_assert(offsetof(XasAuthCfg, nis) + XAS_PAYLOAD_OFFSET == 121);
static_assert(offsetof(XasAuthCfg, ldap) + XAS_PAYLOAD_OFFSET == 122);
static_assert(offsetof(XasAuthCfg, radius) + XAS_PAYLOAD_OFFSET == 123);
static_assert(offsetof(XasAuthCfg, securid) + XAS_PAYLOAD_OFFSET == 124);
static_assert(offsetof(XasAuthCfg, kerberos) + XAS_PAYLOAD_OFFSET == 125);
static_assert(offsetof(XasAuthCfg, tacacs) + XAS_PAYLOAD_OFFSET == 126);
static_assert(offsetof(XasAuthCfg, first_responding) + XAS_PAYLOAD_OFFSET == 128);
static_assert(offsetof(XasAuthCfg, start_nis) + XAS_PAYLOAD_OFFSET == 132);

#endif
