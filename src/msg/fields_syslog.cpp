/** XMSG_SYSLOG: log levels, remote log servers and log sizes. */
#include "config/syslog_payload.h"
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasMsgGroup REMOTES = {.name = "remote",
                                 .place = XAS_PLACE(XasSyslogPayload, remotes),
                                 .stride = sizeof(XasHostAddr),
                                 .fixed = true,
                                 .meaning = "other log servers"};

constexpr XasValueName LEVELS[] = {{0, "off"}, {1, "info"}, {2, "warn"}, {3, "error"}, {4, "debug"}};

constexpr XasMsgField level(std::string_view name, std::size_t index, std::string_view meaning)
{
    constexpr XasPlace FIRST = XAS_PLACE(XasSyslogPayload, levels[0]);
    return {.name = name,
            .place = {FIRST.offset + index * FIRST.width, FIRST.width},
            .kind = choice,
            .meaning = meaning,
            .names = LEVELS,
            .initial = "info"};
}

constexpr XasMsgField FIELDS[] = {
    level("local0", 0, "least level that is logged of the network"),
    level("local1", 1, "least level that is logged of the services"),
    level("authpriv", 2, "least level that is logged of logins"),
    level("local3", 3, "least level that is logged of the device ports"),
    level("local4", 4, "least level that is logged of the diagnostics"),
    level("local5", 5, "least level that is logged of the system and the kernel"),
    {.place = XAS_PLACE(XasSyslogPayload, remotes[0]),
     .kind = hostAddr,
     .meaning = "a server that gets every log line too",
     .initial = "none",
     .group = &REMOTES},
    {.name = "nut_size",
     .place = XAS_PLACE(XasSyslogPayload, nut_size),
     .kind = number,
     .meaning = "kilobytes at which the logs from /var/log/nut on are rotated",
     .initial = "50"},
    {.name = "log_size",
     .place = XAS_PLACE(XasSyslogPayload, log_size),
     .kind = number,
     .meaning = "kilobytes at which all other logs are rotated",
     .initial = "100"},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_SYSLOG_FIELDS = {
    .msgtype = XMSG_SYSLOG, .meaning = "log levels, servers and sizes", .fields = FIELDS};
