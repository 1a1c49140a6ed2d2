/** The payload of XMSG_SYSLOG: what is logged, where else it goes, and how large a log may grow. */
#ifndef XAS_CONFIG_SYSLOG_PAYLOAD_H
#define XAS_CONFIG_SYSLOG_PAYLOAD_H

#include "wire/address.h"
#include "wire/message.h"

/** Level indexes run from 0 (nothing is logged) to one below this. */
inline constexpr std::uint32_t XAS_SYSLOG_LEVELS = 5;

/** The facilities whose level can be set: local0, local1, authpriv, local3, local4, local5. */
inline constexpr std::size_t XAS_SYSLOG_FACILITIES = 6;

struct XasSyslogPayload {
    std::uint32_t levels[XAS_SYSLOG_FACILITIES]; /**< level indexes; the sixth also serves "kern" */
    XasHostAddr remotes[2];                      /**< other log servers; an empty name: none */
    std::uint16_t nut_size;                      /**< kilobytes, of the logs from /var/log/nut on */
    std::uint16_t log_size;                      /**< kilobytes, of all logs before */
};

static_assert(offsetof(XasSyslogPayload, levels) + XAS_PAYLOAD_OFFSET == 120);
static_assert(offsetof(XasSyslogPayload, remotes) + XAS_PAYLOAD_OFFSET == 144);
static_assert(offsetof(XasSyslogPayload, remotes[1]) + XAS_PAYLOAD_OFFSET == 220);
static_assert(offsetof(XasSyslogPayload, nut_size) + XAS_PAYLOAD_OFFSET == 296);
static_assert(offsetof(XasSyslogPayload, log_size) + XAS_PAYLOAD_OFFSET == 298);

#endif
