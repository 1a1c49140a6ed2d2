/** XMSG_KERBEROS: the realm and its key distribution centre. */
#include "auth/kerberos_payload.h"
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasMsgField FIELDS[] = {
    {.name = "enabled",
     .place = XAS_PLACE(XasKerberosPayload, enabled),
     .kind = flag,
     .meaning = "Kerberos is used",
     .initial = "yes"},
    {.name = "order",
     .place = XAS_PLACE(XasKerberosPayload, order),
     .kind = number,
     .meaning = "position among the login methods, for others: the order on disk counts"},
    {.name = "realm", .place = XAS_PLACE(XasKerberosPayload, realm), .kind = text, .meaning = "realm"},
    {.name = "kdc",
     .place = XAS_PLACE(XasKerberosPayload, kdc),
     .kind = text,
     .meaning = "full host name of the key distribution centre"},
    {.name = "kdc_ip",
     .place = XAS_PLACE(XasKerberosPayload, kdc_ip),
     .kind = ipAddr,
     .meaning = "its address"},
    {.name = "kdc_port",
     .place = XAS_PLACE(XasKerberosPayload, kdc_port),
     .kind = number,
     .meaning = "its port",
     .initial = "88"},
    {.name = "use_ldap",
     .place = XAS_PLACE(XasKerberosPayload, use_ldap),
     .kind = flag,
     .meaning = "who a user is, is asked of the directory"},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_KERBEROS_FIELDS = {.msgtype = XMSG_KERBEROS, .meaning = "Kerberos", .fields = FIELDS};
