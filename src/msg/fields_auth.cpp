/** XMSG_AUTH: which login methods are used, and in which order. */
#include "auth/auth_payload.h"
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasMsgField FIELDS[] = {
    {.name = "local",
     .place = XAS_PLACE(XasAuthCfg, local),
     .kind = number,
     .meaning = "position of local accounts; 0, here and below: not used",
     .range = XasRange{0, 7},
     .initial = "1"},
    {.name = "nis",
     .place = XAS_PLACE(XasAuthCfg, nis),
     .kind = number,
     .meaning = "position of NIS",
     .range = XasRange{0, 7}},
    {.name = "ldap",
     .place = XAS_PLACE(XasAuthCfg, ldap),
     .kind = number,
     .meaning = "position of LDAP",
     .range = XasRange{0, 7}},
    {.name = "radius",
     .place = XAS_PLACE(XasAuthCfg, radius),
     .kind = number,
     .meaning = "position of RADIUS",
     .range = XasRange{0, 7}},
    {.name = "securid",
     .place = XAS_PLACE(XasAuthCfg, securid),
     .kind = number,
     .meaning = "position of SecurID",
     .range = XasRange{0, 7}},
    {.name = "kerberos",
     .place = XAS_PLACE(XasAuthCfg, kerberos),
     .kind = number,
     .meaning = "position of Kerberos",
     .range = XasRange{0, 7}},
    {.name = "tacacs",
     .place = XAS_PLACE(XasAuthCfg, tacacs),
     .kind = number,
     .meaning = "position of TACACS+",
     .range = XasRange{0, 7}},
    {.name = "first_responding",
     .place = XAS_PLACE(XasAuthCfg, first_responding),
     .kind = flag,
     .meaning = "the first method that answers decides"},
    {.name = "start_nis",
     .place = XAS_PLACE(XasAuthCfg, start_nis),
     .kind = flag,
     .meaning = "the NIS client is started when NIS has a position"},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_AUTH_FIELDS = {
    .msgtype = XMSG_AUTH, .meaning = "order of the login methods", .fields = FIELDS};
