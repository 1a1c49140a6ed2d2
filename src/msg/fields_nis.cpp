/** XMSG_NIS: the NIS domain and its servers. */
#include "auth/nis_payload.h"
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasMsgGroup SLAVES = {.name = "slave",
                                .place = XAS_PLACE(XasNisPayload, slaves),
                                .stride = sizeof(XasHostAddr),
                                .fixed = true,
                                .meaning = "the slave servers"};

constexpr XasMsgField FIELDS[] = {
    {.name = "enabled",
     .place = XAS_PLACE(XasNisPayload, enabled),
     .kind = flag,
     .meaning = "the NIS client runs",
     .initial = "yes"},
    {.name = "order",
     .place = XAS_PLACE(XasNisPayload, order),
     .kind = number,
     .meaning = "position among the login methods, for others: the order on disk counts"},
    {.name = "domain", .place = XAS_PLACE(XasNisPayload, domain), .kind = text, .meaning = "NIS domain"},
    {.name = "broadcast",
     .place = XAS_PLACE(XasNisPayload, broadcast),
     .kind = flag,
     .meaning = "servers are also found by broadcast"},
    {.name = "master",
     .place = XAS_PLACE(XasNisPayload, master),
     .kind = hostAddr,
     .meaning = "master server",
     .initial = "none"},
    {.place = XAS_PLACE(XasNisPayload, slaves[0]),
     .kind = hostAddr,
     .meaning = "a slave server",
     .initial = "none",
     .group = &SLAVES},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_NIS_FIELDS = {.msgtype = XMSG_NIS, .meaning = "NIS", .fields = FIELDS};
