/** The payload of XMSG_NTP: whether and from whom the appliance takes its time. */
#ifndef XAS_CONFIG_NTP_PAYLOAD_H
#define XAS_CONFIG_NTP_PAYLOAD_H

#include "wire/address.h"
#include "wire/message.h"

/** How the time is kept (`XasNtpPayload::sync`); any other value is neither of the two. */
enum XasNtpSync : std::uint32_t { XAS_NTP_BROADCAST = 0, XAS_NTP_POLL = 1 };

/** Which servers are polled (`XasNtpPayload::poll`). */
enum XasNtpPolling : std::uint32_t { XAS_NTP_THREE_SERVERS = 0, XAS_NTP_ONE_SERVER = 1 };

inline constexpr std::size_t XAS_NTP_SERVERS = 3;

struct XasNtpPayload {
    std::uint32_t enabled;                /**< non-zero: the NTP daemon runs */
    std::uint32_t sync;                   /**< XasNtpSync */
    std::uint32_t poll;                   /**< XasNtpPolling */
    XasHostAddr servers[XAS_NTP_SERVERS]; /**< of XAS_NTP_THREE_SERVERS */
    XasHostAddr single;                   /**< of XAS_NTP_ONE_SERVER */
};

static_assert(offsetof(XasNtpPayload, enabled) + XAS_PAYLOAD_OFFSET == 120);
static_assert(offsetof(XasNtpPayload, sync) + XAS_PAYLOAD_OFFSET == 124);
static_assert(offsetof(XasNtpPayload, poll) + XAS_PAYLOAD_OFFSET == 128);
static_assert(offsetof(XasNtpPayload, servers) + XAS_PAYLOAD_OFFSET == 132);
static_assert(offsetof(XasNtpPayload, servers[1]) + XAS_PAYLOAD_OFFSET == 208);
static_assert(offsetof(XasNtpPayload, servers[2]) + XAS_PAYLOAD_OFFSET == 284);
static_assert(offsetof(XasNtpPayload, single) + XAS_PAYLOAD_OFFSET == 360);

#endif
