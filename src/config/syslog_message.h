/** The payload of XMSG_SYSLOG: what is logged, where else it goes, and how large a log may grow. */
#ifndef XAS_CONFIG_SYSLOG_MESSAGE_H
#define XAS_CONFIG_SYSLOG_MESSAGE_H

#include "wire/address.h"
#include "wire/field.h"

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

namespace xasSyslogFields {

inline constexpr XasMsgGroup REMOTES =
    XAS_GROUP("remote", XasSyslogPayload, remotes, "other log servers").alwaysUsed();

inline constexpr XasValueName LEVELS[] = {{0, "off"}, {1, "info"}, {2, "warn"}, {3, "error"}, {4, "debug"}};

constexpr XasMsgField level(std::string_view name, std::size_t index, std::string_view meaning)
{
    constexpr XasPlace FIRST = XAS_PLACE(XasSyslogPayload, levels[0]);
    return {.name = name,
            .place = {FIRST.offset + index * FIRST.width, FIRST.width},
            .kind = XasFieldKind::choice,
            .meaning = meaning,
            .names = LEVELS,
            .initial = "info"};
}

inline constexpr XasMsgField FIELDS[] = {
    level("local0", 0, "least level that is logged of the network"),
    level("local1", 1, "least level that is logged of the services"),
    level("authpriv", 2, "least level that is logged of logins"),
    level("local3", 3, "least level that is logged of the device ports"),
    level("local4", 4, "least level that is logged of the diagnostics"),
    level("local5", 5, "least level that is logged of the system and the kernel"),
    XAS_FIELD_AS("", XasSyslogPayload, remotes[0], hostAddr, "a server that gets every log line too")
        .byDefault("none")
        .in(REMOTES),
    XAS_FIELD(XasSyslogPayload, nut_size, number,
              "kilobytes at which the logs from /var/log/nut on are rotated")
        .byDefault("50"),
    XAS_FIELD(XasSyslogPayload, log_size, number, "kilobytes at which all other logs are rotated")
        .byDefault("100"),
};
static_assert(xasFieldsAreSound<XasSyslogPayload>(FIELDS));

} // namespace xasSyslogFields

inline constexpr XasMsgFields XAS_SYSLOG_MESSAGE = {
    .msgtype = XMSG_SYSLOG, .meaning = "log levels, servers and sizes", .fields = xasSyslogFields::FIELDS};

#endif
