/** XMSG_HOSTNAME: the appliance's name and domain. */
#include "config/hostname_payload.h"
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasMsgField FIELDS[] = {
    {.name = "hostname",
     .place = XAS_PLACE(XasHostnamePayload, hostname),
     .kind = text,
     .meaning = "the appliance's host name"},
    {.name = "domain",
     .place = XAS_PLACE(XasHostnamePayload, domain),
     .kind = text,
     .meaning = "its domain; empty: none. The full name is hostname.domain, at most 255 characters"},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_HOSTNAME_FIELDS = {
    .msgtype = XMSG_HOSTNAME, .meaning = "host name and domain", .fields = FIELDS};
