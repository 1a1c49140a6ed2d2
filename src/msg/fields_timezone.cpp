/** XMSG_TIMEZONE: the time zone. */
#include "config/timezone_payload.h"
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasMsgField FIELDS[] = {
    {.name = "zone",
     .place = XAS_PLACE(XasTimezonePayload, zone),
     .kind = text,
     .meaning = "the zone's name: Europe/Berlin",
     .initial = "UTC"},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_TIMEZONE_FIELDS = {.msgtype = XMSG_TIMEZONE, .meaning = "time zone", .fields = FIELDS};
