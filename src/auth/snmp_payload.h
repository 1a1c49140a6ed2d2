/** The payload of XMSG_SNMP: contact, SNMPv3 users, communities and trap destinations of the agent. */
#ifndef XAS_AUTH_SNMP_PAYLOAD_H
#define XAS_AUTH_SNMP_PAYLOAD_H

#include "wire/address.h"
#include "wire/message.h"

/** Security levels of the SNMPv3 users (`v3security`); other values: authentication only. */
enum XasSnmpSecurity : std::uint32_t { XAS_SNMP_NOAUTH = 0, XAS_SNMP_PRIV = 2 };

/** What becomes of the community lines (`community_mode`); other values: they stay as they are. */
enum XasSnmpCommunityMode : std::uint32_t { XAS_SNMP_WRITE_COMMUNITIES = 0, XAS_SNMP_NO_COMMUNITIES = 1 };

/** A text of the agent's settings: at most 20 characters are meant. */
using XasSnmpText = char[21];

struct XasSnmpCfg {
    std::uint32_t enabled;
    std::uint32_t alarm_delay;
    XasHostAddr trap_hosts[2];
    XasSnmpText syslocation;
    XasSnmpText syscontact;
    XasSnmpText v3user; /**< read-only user, its authentication and its privacy pass phrase */
    XasSnmpText v3pass;
    XasSnmpText v3phrase;
    XasSnmpText v3rwuser; /**< the same of the read-write user */
    XasSnmpText v3rwpass;
    XasSnmpText v3rwphrase;
    std::uint32_t v3security; /**< XasSnmpSecurity */
    std::uint32_t v3auth;     /**< 1 SHA, else MD5 */
    std::uint32_t v3encrypt;  /**< 1 AES, else DES */
    XasSnmpText ro_community;
    XasSnmpText rw_community;
    XasSnmpText trap_community;
    std::uint32_t unused[2];
    std::uint32_t community_mode; /**< XasSnmpCommunityMode */
};

static_assert(offsetof(XasSnmpCfg, alarm_delay) + XAS_PAYLOAD_OFFSET == 124);
static_assert(offsetof(XasSnmpCfg, trap_hosts) + XAS_PAYLOAD_OFFSET == 128);
static_assert(offsetof(XasSnmpCfg, trap_hosts[1]) + XAS_PAYLOAD_OFFSET == 204);
static_assert(offsetof(XasSnmpCfg, syslocation) + XAS_PAYLOAD_OFFSET == 280);
static_assert(offsetof(XasSnmpCfg, syscontact) + XAS_PAYLOAD_OFFSET == 301);
static_assert(offsetof(XasSnmpCfg, v3user) + XAS_PAYLOAD_OFFSET == 322);
static_assert(offsetof(XasSnmpCfg, v3pass) + XAS_PAYLOAD_OFFSET == 343);
static_assert(offsetof(XasSnmpCfg, v3phrase) + XAS_PAYLOAD_OFFSET == 364);
static_assert(offsetof(XasSnmpCfg, v3rwuser) + XAS_PAYLOAD_OFFSET == 385);
static_assert(offsetof(XasSnmpCfg, v3rwpass) + XAS_PAYLOAD_OFFSET == 406);
static_assert(offsetof(XasSnmpCfg, v3rwphrase) + XAS_PAYLOAD_OFFSET == 427);
static_assert(offsetof(XasSnmpCfg, v3security) + XAS_PAYLOAD_OFFSET == 448);
static_assert(offsetof(XasSnmpCfg, v3auth) + XAS_PAYLOAD_OFFSET == 452);
static_assert(offsetof(XasSnmpCfg, v3encrypt) + XAS_PAYLOAD_OFFSET == 456);
static_assert(offsetof(XasSnmpCfg, ro_community) + XAS_PAYLOAD_OFFSET == 460);
static_assert(offsetof(XasSnmpCfg, rw_community) + XAS_PAYLOAD_OFFSET == 481);
static_assert(offsetof(XasSnmpCfg, trap_community) + XAS_PAYLOAD_OFFSET == 502);
static_assert(offsetof(XasSnmpCfg, community_mode) + XAS_PAYLOAD_OFFSET == 532);

#endif
