/** The payload of XMSG_LDAP: login through a directory. */
#ifndef XAS_AUTH_LDAP_MESSAGE_H
#define XAS_AUTH_LDAP_MESSAGE_H

#include "wire/address.h"
#include "wire/field.h"

/** The port of a directory that speaks TLS from the first byte. */
inline constexpr std::uint32_t XAS_LDAPS_PORT = 636;

struct XasLdapPayload {
    std::uint32_t enabled; /**< zero: the client's file is removed */
    std::uint8_t order;    /**< for others; the order on disk counts */
    XasHostAddr server;
    XasHostAddr server2;
    char base[257];      /**< search base */
    char bind_name[257]; /**< bind DN; empty: none */
    char bind_passwd[130];
    std::uint32_t bind_with_login; /**< non-zero: the current login goes into the bind name */
    std::uint32_t unused;
    std::uint32_t port;            /**< 0: the default */
    std::uint32_t ad_support;      /**< non-zero: the directory is an Active Directory */
    std::uint32_t encrypt;         /**< 1: TLS */
    char map_uid[31];              /**< attribute that is the uid; empty: none, as below */
    char map_posix_group[31];      /**< object class that is posixGroup */
    char map_member[34];           /**< attribute that names a group's members */
    std::uint32_t map_member_type; /**< 1: it takes the place of memberUID, else of uniqueMember */
};

namespace xasLdapFields {

inline constexpr XasValueName MEMBER_TYPES[] = {{0, "uniqueMember"}, {1, "memberUID"}};

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD(XasLdapPayload, enabled, flag, "LDAP is used").byDefault("yes"),
    XAS_FIELD(XasLdapPayload, order, number,
              "position among the login methods, for others: the order on disk counts"),
    XAS_FIELD(XasLdapPayload, server, hostAddr, "first server")
        .byDefault("none")
        .readIf(xasIsSet<&XasLdapPayload::enabled>),
    XAS_FIELD(XasLdapPayload, server2, hostAddr, "second server")
        .byDefault("none")
        .readIf(xasIsSet<&XasLdapPayload::enabled>),
    XAS_FIELD(XasLdapPayload, base, text, "search base").readIf(xasIsSet<&XasLdapPayload::enabled>),
    XAS_FIELD(XasLdapPayload, bind_name, text, "bind DN; empty: none")
        .readIf(xasIsSet<&XasLdapPayload::enabled>),
    XAS_FIELD(XasLdapPayload, bind_passwd, text, "bind password; empty: none")
        .secret()
        .readIf(xasIsSet<&XasLdapPayload::enabled>),
    XAS_FIELD(XasLdapPayload, bind_with_login, flag, "the current login goes into the bind name"),
    XAS_FIELD(XasLdapPayload, port, number, "port; 0: the default"),
    XAS_FIELD(XasLdapPayload, ad_support, flag, "the directory is an Active Directory"),
    XAS_FIELD(XasLdapPayload, encrypt, flag, "TLS"),
    XAS_FIELD(XasLdapPayload, map_uid, text, "attribute that is the uid; empty: none, as below")
        .readIf(xasIsSet<&XasLdapPayload::enabled>),
    XAS_FIELD(XasLdapPayload, map_posix_group, text, "object class that is posixGroup")
        .readIf(xasIsSet<&XasLdapPayload::enabled>),
    XAS_FIELD(XasLdapPayload, map_member, text, "attribute that names the members of a group")
        .readIf(xasIsSet<&XasLdapPayload::enabled>),
    XAS_FIELD(XasLdapPayload, map_member_type, choice, "which attribute it takes the place of")
        .of(MEMBER_TYPES),
};
static_assert(xasFieldsAreSound<XasLdapPayload>(FIELDS));

} // namespace xasLdapFields

inline constexpr XasMsgFields XAS_LDAP_MESSAGE = {
    .msgtype = XMSG_LDAP, .meaning = "LDAP", .fields = xasLdapFields::FIELDS};

#endif
