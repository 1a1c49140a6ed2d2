/** The payload of XMSG_LDAP: login through a directory. */
#ifndef XAS_AUTH_LDAP_PAYLOAD_H
#define XAS_AUTH_LDAP_PAYLOAD_H

#include "wire/address.h"
#include "wire/message.h"

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

static_assert(offsetof(XasLdapPayload, enabled) + XAS_PAYLOAD_OFFSET == 120);
static_assert(offsetof(XasLdapPayload, order) + XAS_PAYLOAD_OFFSET == 124);
static_assert(offsetof(XasLdapPayload, server) + XAS_PAYLOAD_OFFSET == 128);
static_assert(offsetof(XasLdapPayload, server2) + XAS_PAYLOAD_OFFSET == 204);
static_assert(offsetof(XasLdapPayload, base) + XAS_PAYLOAD_OFFSET == 280);
static_assert(offsetof(XasLdapPayload, bind_name) + XAS_PAYLOAD_OFFSET == 537);
static_assert(offsetof(XasLdapPayload, bind_passwd) + XAS_PAYLOAD_OFFSET == 794);
static_assert(offsetof(XasLdapPayload, bind_with_login) + XAS_PAYLOAD_OFFSET == 924);
static_assert(offsetof(XasLdapPayload, port) + XAS_PAYLOAD_OFFSET == 932);
static_assert(offsetof(XasLdapPayload, ad_support) + XAS_PAYLOAD_OFFSET == 936);
static_assert(offsetof(XasLdapPayload, encrypt) + XAS_PAYLOAD_OFFSET == 940);
static_assert(offsetof(XasLdapPayload, map_uid) + XAS_PAYLOAD_OFFSET == 944);
static_assert(offsetof(XasLdapPayload, map_posix_group) + XAS_PAYLOAD_OFFSET == 975);
static_assert(offsetof(XasLdapPayload, map_member) + XAS_PAYLOAD_OFFSET == 1006);
static_assert(offsetof(XasLdapPayload, map_member_type) + XAS_PAYLOAD_OFFSET == 1040);

#endif
