/** XMSG_CIFS: the share that the appliance offers to others. */
#include "auth/cifs_payload.h"
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasMsgField FIELDS[] = {
    {.name = "enabled",
     .place = XAS_PLACE(XasCifsPayload, enabled),
     .kind = flag,
     .meaning = "the share is offered",
     .initial = "yes"},
    {.name = "eth1",
     .place = XAS_PLACE(XasCifsPayload, eth1),
     .kind = flag,
     .meaning = "on the first port",
     .initial = "yes"},
    {.name = "eth2", .place = XAS_PLACE(XasCifsPayload, eth2), .kind = flag, .meaning = "on the second port"},
    {.name = "lanman_pwd",
     .place = XAS_PLACE(XasCifsPayload, lanman_pwd),
     .kind = text,
     .meaning = "LAN Manager hash of the password, 32 hexadecimal digits"},
    {.name = "nt_pwd",
     .place = XAS_PLACE(XasCifsPayload, nt_pwd),
     .kind = text,
     .meaning = "NT hash of the password, 32 hexadecimal digits"},
    {.name = "lct_field",
     .place = XAS_PLACE(XasCifsPayload, lct_field),
     .kind = text,
     .meaning = "when the password was changed: LCT-, seconds since 1970 in hexadecimal"},
    {.name = "workgroup",
     .place = XAS_PLACE(XasCifsPayload, workgroup),
     .kind = text,
     .meaning = "workgroup that the appliance appears in",
     .initial = "WORKGROUP"},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_CIFS_FIELDS = {
    .msgtype = XMSG_CIFS, .meaning = "the share that is offered", .fields = FIELDS};
