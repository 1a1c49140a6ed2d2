/** XMSG_TACACS: the TACACS+ servers. */
#include "auth/tacacs_payload.h"
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasMsgGroup SERVERS = {.name = "server",
                                 .place = XAS_PLACE(XasTacacsPayload, servers),
                                 .stride = sizeof(XasHostAddr),
                                 .fixed = true,
                                 .meaning = "the servers, tried in order"};

constexpr XasValueName SERVICES[] = {
    {XAS_TACACS_PAP, "pap"}, {XAS_TACACS_CHAP, "chap"}, {XAS_TACACS_LOGIN, "login"}};

constexpr XasMsgField FIELDS[] = {
    {.name = "enabled",
     .place = XAS_PLACE(XasTacacsPayload, enabled),
     .kind = flag,
     .meaning = "TACACS+ is used",
     .initial = "yes"},
    {.name = "order",
     .place = XAS_PLACE(XasTacacsPayload, order),
     .kind = number,
     .meaning = "position among the login methods, for others: the order on disk counts"},
    {.place = XAS_PLACE(XasTacacsPayload, servers[0]),
     .kind = hostAddr,
     .meaning = "a server",
     .initial = "none",
     .group = &SERVERS},
    {.name = "server1_secret",
     .place = XAS_PLACE(XasTacacsPayload, server1_secret),
     .kind = text,
     .meaning = "the secret shared with all of them"},
    {.name = "encrypt",
     .place = XAS_PLACE(XasTacacsPayload, encrypt),
     .kind = flag,
     .meaning = "the traffic is encrypted",
     .initial = "yes"},
    {.name = "service",
     .place = XAS_PLACE(XasTacacsPayload, service),
     .kind = choice,
     .meaning = "how the password travels",
     .names = SERVICES},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_TACACS_FIELDS = {.msgtype = XMSG_TACACS, .meaning = "TACACS+", .fields = FIELDS};
