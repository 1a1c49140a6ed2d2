/** XMSG_NTP: network time. */
#include "config/ntp_payload.h"
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasMsgGroup SERVERS = {.name = "server",
                                 .place = XAS_PLACE(XasNtpPayload, servers),
                                 .stride = sizeof(XasHostAddr),
                                 .fixed = true,
                                 .meaning = "the servers of three-servers"};

constexpr XasValueName SYNCS[] = {{XAS_NTP_BROADCAST, "broadcast"}, {XAS_NTP_POLL, "poll"}, {2, "neither"}};

constexpr XasValueName POLLINGS[] = {{XAS_NTP_THREE_SERVERS, "three-servers"},
                                     {XAS_NTP_ONE_SERVER, "one-server"}};

constexpr XasMsgField FIELDS[] = {
    {.name = "enabled",
     .place = XAS_PLACE(XasNtpPayload, enabled),
     .kind = flag,
     .meaning = "the NTP daemon runs",
     .initial = "yes"},
    {.name = "sync",
     .place = XAS_PLACE(XasNtpPayload, sync),
     .kind = choice,
     .meaning = "how the time comes: from broadcasts or by polling servers",
     .names = SYNCS,
     .initial = "poll"},
    {.name = "poll",
     .place = XAS_PLACE(XasNtpPayload, poll),
     .kind = choice,
     .meaning = "which servers are polled",
     .names = POLLINGS},
    {.place = XAS_PLACE(XasNtpPayload, servers[0]),
     .kind = hostAddr,
     .meaning = "a server of three-servers",
     .initial = "none",
     .group = &SERVERS},
    {.name = "single",
     .place = XAS_PLACE(XasNtpPayload, single),
     .kind = hostAddr,
     .meaning = "the server of one-server",
     .initial = "none"},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_NTP_FIELDS = {.msgtype = XMSG_NTP, .meaning = "network time", .fields = FIELDS};
