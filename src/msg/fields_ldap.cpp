/** XMSG_LDAP: login through a directory. */
#include "auth/ldap_payload.h"
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasValueName MEMBER_TYPES[] = {{0, "uniqueMember"}, {1, "memberUID"}};

constexpr XasMsgField FIELDS[] = {
    {.name = "enabled",
     .place = XAS_PLACE(XasLdapPayload, enabled),
     .kind = flag,
     .meaning = "LDAP is used",
     .initial = "yes"},
    {.name = "order",
     .place = XAS_PLACE(XasLdapPayload, order),
     .kind = number,
     .meaning = "position among the login methods, for others: the order on disk counts"},
    {.name = "server",
     .place = XAS_PLACE(XasLdapPayload, server),
     .kind = hostAddr,
     .meaning = "first server",
     .initial = "none"},
    {.name = "server2",
     .place = XAS_PLACE(XasLdapPayload, server2),
     .kind = hostAddr,
     .meaning = "second server",
     .initial = "none"},
    {.name = "base", .place = XAS_PLACE(XasLdapPayload, base), .kind = text, .meaning = "search base"},
    {.name = "bind_name",
     .place = XAS_PLACE(XasLdapPayload, bind_name),
     .kind = text,
     .meaning = "bind DN; empty: none"},
    {.name = "bind_passwd",
     .place = XAS_PLACE(XasLdapPayload, bind_passwd),
     .kind = text,
     .meaning = "bind password; empty: none"},
    {.name = "bind_with_login",
     .place = XAS_PLACE(XasLdapPayload, bind_with_login),
     .kind = flag,
     .meaning = "the current login goes into the bind name"},
    {.name = "port",
     .place = XAS_PLACE(XasLdapPayload, port),
     .kind = number,
     .meaning = "port; 0: the default"},
    {.name = "ad_support",
     .place = XAS_PLACE(XasLdapPayload, ad_support),
     .kind = flag,
     .meaning = "the directory is an Active Directory"},
    {.name = "encrypt", .place = XAS_PLACE(XasLdapPayload, encrypt), .kind = flag, .meaning = "TLS"},
    {.name = "map_uid",
     .place = XAS_PLACE(XasLdapPayload, map_uid),
     .kind = text,
     .meaning = "attribute that is the uid; empty: none, as below"},
    {.name = "map_posix_group",
     .place = XAS_PLACE(XasLdapPayload, map_posix_group),
     .kind = text,
     .meaning = "object class that is posixGroup"},
    {.name = "map_member",
     .place = XAS_PLACE(XasLdapPayload, map_member),
     .kind = text,
     .meaning = "attribute that names the members of a group"},
    {.name = "map_member_type",
     .place = XAS_PLACE(XasLdapPayload, map_member_type),
     .kind = choice,
     .meaning = "which attribute it takes the place of",
     .names = MEMBER_TYPES},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_LDAP_FIELDS = {.msgtype = XMSG_LDAP, .meaning = "LDAP", .fields = FIELDS};
