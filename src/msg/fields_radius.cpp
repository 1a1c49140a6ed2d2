/** XMSG_RADIUS: the RADIUS servers. */
#include "auth/radius_payload.h"
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasMsgField FIELDS[] = {
    {.name = "enabled",
     .place = XAS_PLACE(XasRadiusPayload, enabled),
     .kind = flag,
     .meaning = "RADIUS is used",
     .initial = "yes"},
    {.name = "order",
     .place = XAS_PLACE(XasRadiusPayload, order),
     .kind = number,
     .meaning = "position among the login methods, for others: the order on disk counts"},
    {.name = "server1",
     .place = XAS_PLACE(XasRadiusPayload, server1.host),
     .kind = hostAddr,
     .meaning = "first server",
     .initial = "none"},
    {.name = "secret1",
     .place = XAS_PLACE(XasRadiusPayload, server1.secret),
     .kind = text,
     .meaning = "its shared secret"},
    {.name = "port1",
     .place = XAS_PLACE(XasRadiusPayload, server1.port),
     .kind = number,
     .meaning = "its port",
     .initial = "1812"},
    {.name = "server2",
     .place = XAS_PLACE(XasRadiusPayload, server2.host),
     .kind = hostAddr,
     .meaning = "second server",
     .initial = "none"},
    {.name = "secret2",
     .place = XAS_PLACE(XasRadiusPayload, server2.secret),
     .kind = text,
     .meaning = "its shared secret"},
    {.name = "port2",
     .place = XAS_PLACE(XasRadiusPayload, server2.port),
     .kind = number,
     .meaning = "its port",
     .initial = "1812"},
    {.name = "timeout",
     .place = XAS_PLACE(XasRadiusPayload, timeout),
     .kind = number,
     .meaning = "seconds, of both",
     .initial = "3"},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_RADIUS_FIELDS = {.msgtype = XMSG_RADIUS, .meaning = "RADIUS", .fields = FIELDS};
