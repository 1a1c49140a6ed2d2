/** XMSG_SNMP: the SNMP agent. */
#include "auth/snmp_payload.h"
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasMsgGroup TRAPS = {.name = "trap",
                               .place = XAS_PLACE(XasSnmpCfg, trap_hosts),
                               .stride = sizeof(XasHostAddr),
                               .fixed = true,
                               .meaning = "the hosts that traps are sent to"};

constexpr XasValueName LEVELS[] = {{XAS_SNMP_NOAUTH, "noauth"}, {1, "auth"}, {XAS_SNMP_PRIV, "priv"}};
constexpr XasValueName HASHES[] = {{0, "md5"}, {1, "sha"}};
constexpr XasValueName CIPHERS[] = {{0, "des"}, {1, "aes"}};
constexpr XasValueName MODES[] = {
    {XAS_SNMP_WRITE_COMMUNITIES, "write"}, {XAS_SNMP_NO_COMMUNITIES, "remove"}, {2, "keep"}};

constexpr XasMsgField FIELDS[] = {
    {.name = "enabled",
     .place = XAS_PLACE(XasSnmpCfg, enabled),
     .kind = flag,
     .meaning = "the agent runs",
     .initial = "yes"},
    {.name = "alarm_delay",
     .place = XAS_PLACE(XasSnmpCfg, alarm_delay),
     .kind = number,
     .meaning = "delay of alarms, for others"},
    {.place = XAS_PLACE(XasSnmpCfg, trap_hosts[0]),
     .kind = hostAddr,
     .meaning = "a host that traps are sent to, of version 1 and 2",
     .initial = "none",
     .group = &TRAPS},
    {.name = "syslocation",
     .place = XAS_PLACE(XasSnmpCfg, syslocation),
     .kind = text,
     .meaning = "where the appliance stands"},
    {.name = "syscontact",
     .place = XAS_PLACE(XasSnmpCfg, syscontact),
     .kind = text,
     .meaning = "who looks after it"},
    {.name = "v3user",
     .place = XAS_PLACE(XasSnmpCfg, v3user),
     .kind = text,
     .meaning = "read-only user of version 3"},
    {.name = "v3pass",
     .place = XAS_PLACE(XasSnmpCfg, v3pass),
     .kind = text,
     .meaning = "its pass phrase for authentication"},
    {.name = "v3phrase",
     .place = XAS_PLACE(XasSnmpCfg, v3phrase),
     .kind = text,
     .meaning = "its pass phrase for privacy"},
    {.name = "v3rwuser",
     .place = XAS_PLACE(XasSnmpCfg, v3rwuser),
     .kind = text,
     .meaning = "read-write user of version 3"},
    {.name = "v3rwpass",
     .place = XAS_PLACE(XasSnmpCfg, v3rwpass),
     .kind = text,
     .meaning = "its pass phrase for authentication"},
    {.name = "v3rwphrase",
     .place = XAS_PLACE(XasSnmpCfg, v3rwphrase),
     .kind = text,
     .meaning = "its pass phrase for privacy"},
    {.name = "v3security",
     .place = XAS_PLACE(XasSnmpCfg, v3security),
     .kind = choice,
     .meaning = "what both users must do: nothing, prove who they are, or encrypt too",
     .names = LEVELS,
     .initial = "priv"},
    {.name = "v3auth",
     .place = XAS_PLACE(XasSnmpCfg, v3auth),
     .kind = choice,
     .meaning = "hash of the authentication",
     .names = HASHES,
     .initial = "sha"},
    {.name = "v3encrypt",
     .place = XAS_PLACE(XasSnmpCfg, v3encrypt),
     .kind = choice,
     .meaning = "cipher of the privacy",
     .names = CIPHERS,
     .initial = "aes"},
    {.name = "ro_community",
     .place = XAS_PLACE(XasSnmpCfg, ro_community),
     .kind = text,
     .meaning = "community that may read, of version 1 and 2"},
    {.name = "rw_community",
     .place = XAS_PLACE(XasSnmpCfg, rw_community),
     .kind = text,
     .meaning = "community that may write, too"},
    {.name = "trap_community",
     .place = XAS_PLACE(XasSnmpCfg, trap_community),
     .kind = text,
     .meaning = "community that traps are sent with"},
    {.name = "community_mode",
     .place = XAS_PLACE(XasSnmpCfg, community_mode),
     .kind = choice,
     .meaning = "what becomes of the two communities in the agent's file",
     .names = MODES},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_SNMP_FIELDS = {.msgtype = XMSG_SNMP, .meaning = "the SNMP agent", .fields = FIELDS};
