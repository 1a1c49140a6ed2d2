/** The payload of XMSG_SNMP: contact, SNMPv3 users, communities and trap destinations of the agent. */
#ifndef XAS_AUTH_SNMP_MESSAGE_H
#define XAS_AUTH_SNMP_MESSAGE_H

#include "wire/address.h"
#include "wire/field.h"

/** Security levels of the SNMPv3 users (`v3security`); other values: authentication only. */
enum XasSnmpSecurity : std::uint32_t { XAS_SNMP_NOAUTH = 0, XAS_SNMP_PRIV = 2 };

/** What becomes of the community lines (`community_mode`); other values: they stay as they are. */
enum XasSnmpCommunityMode : std::uint32_t { XAS_SNMP_WRITE_COMMUNITIES = 0, XAS_SNMP_NO_COMMUNITIES = 1 };

/** A text of the agent's settings: at most 20 characters are meant. */
using XasSnmpText = char[21];

struct XasSnmpPayload {
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

namespace xasSnmpFields {

inline constexpr XasMsgGroup TRAPS =
    XAS_GROUP("trap", XasSnmpPayload, trap_hosts, "the hosts that traps are sent to").alwaysUsed();

inline constexpr XasValueName LEVELS[] = {{XAS_SNMP_NOAUTH, "noauth"}, {1, "auth"}, {XAS_SNMP_PRIV, "priv"}};
inline constexpr XasValueName HASHES[] = {{0, "md5"}, {1, "sha"}};
inline constexpr XasValueName CIPHERS[] = {{0, "des"}, {1, "aes"}};
inline constexpr XasValueName MODES[] = {
    {XAS_SNMP_WRITE_COMMUNITIES, "write"}, {XAS_SNMP_NO_COMMUNITIES, "remove"}, {2, "keep"}};

inline bool areCommunitiesWritten(const XasMessage &msg, std::size_t /*element*/)
{
    return xasReadPayload<XasSnmpPayload>(msg).community_mode == XAS_SNMP_WRITE_COMMUNITIES;
}

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD(XasSnmpPayload, enabled, flag, "the agent runs").byDefault("yes"),
    XAS_FIELD(XasSnmpPayload, alarm_delay, number, "delay of alarms, for others"),
    XAS_FIELD_AS("", XasSnmpPayload, trap_hosts[0], hostAddr,
                 "a host that traps are sent to, of version 1 and 2")
        .byDefault("none")
        .in(TRAPS),
    XAS_FIELD(XasSnmpPayload, syslocation, text, "where the appliance stands"),
    XAS_FIELD(XasSnmpPayload, syscontact, text, "who looks after it"),
    XAS_FIELD(XasSnmpPayload, v3user, text, "read-only user of version 3"),
    XAS_FIELD(XasSnmpPayload, v3pass, text, "its pass phrase for authentication").secret(),
    XAS_FIELD(XasSnmpPayload, v3phrase, text, "its pass phrase for privacy").secret(),
    XAS_FIELD(XasSnmpPayload, v3rwuser, text, "read-write user of version 3"),
    XAS_FIELD(XasSnmpPayload, v3rwpass, text, "its pass phrase for authentication").secret(),
    XAS_FIELD(XasSnmpPayload, v3rwphrase, text, "its pass phrase for privacy").secret(),
    XAS_FIELD(XasSnmpPayload, v3security, choice,
              "what both users must do: nothing, prove who they are, or encrypt too")
        .of(LEVELS)
        .byDefault("priv"),
    XAS_FIELD(XasSnmpPayload, v3auth, choice, "hash of the authentication").of(HASHES).byDefault("sha"),
    XAS_FIELD(XasSnmpPayload, v3encrypt, choice, "cipher of the privacy").of(CIPHERS).byDefault("aes"),
    XAS_FIELD(XasSnmpPayload, ro_community, text, "community that may read, of version 1 and 2")
        .secret()
        .readIf(areCommunitiesWritten),
    XAS_FIELD(XasSnmpPayload, rw_community, text, "community that may write, too")
        .secret()
        .readIf(areCommunitiesWritten),
    XAS_FIELD(XasSnmpPayload, trap_community, text, "community that traps are sent with").secret(),
    XAS_FIELD(XasSnmpPayload, community_mode, choice,
              "what becomes of the two communities in the agent's file")
        .of(MODES),
};
static_assert(xasFieldsAreSound<XasSnmpPayload>(FIELDS, {XAS_PLACE(XasSnmpPayload, unused)}));

} // namespace xasSnmpFields

inline constexpr XasMsgFields XAS_SNMP_MESSAGE = {
    .msgtype = XMSG_SNMP, .meaning = "the SNMP agent", .fields = xasSnmpFields::FIELDS};

#endif
