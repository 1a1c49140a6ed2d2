/** The list of settings: each message with its row, in the order of the message types. */
#ifndef XAS_DISPATCH_SETTINGS_LIST_H
#define XAS_DISPATCH_SETTINGS_LIST_H

#include "auth/auth_message.h"
#include "auth/cifs.h"
#include "auth/kerberos.h"
#include "auth/ldap.h"
#include "auth/nfs.h"
#include "auth/nis.h"
#include "auth/radius.h"
#include "auth/snmp.h"
#include "auth/tacacs.h"
#include "auth/update_auth.h"
#include "auth/user_message.h"
#include "auth/users.h"
#include "config/dns.h"
#include "config/ethernet.h"
#include "config/firewall_message.h"
#include "config/hostname.h"
#include "config/link_status.h"
#include "config/ntp.h"
#include "config/routing.h"
#include "config/syslog.h"
#include "config/timezone.h"
#include "dispatch/application_message.h"
#include "dispatch/ipfilter_message.h"
#include "dispatch/setting_steps.h"
#include "dispatch/settings.h"
#include "dispatch/update_firewall.h"
#include "dispatch/vpn.h"
#include "wire/eth_message.h"
#include "wire/notify_message.h"

struct XasListedSetting {
    const XasMsgFields *message;
    XasSetting setting;
};

inline constexpr XasListedSetting XAS_SETTINGS_LIST[] = {
    {&XAS_ETH_MESSAGE,
     {.application = "eth",
      .update = {xasUpdateEthCfg, &xasEthFiles},
      .onArrival = xasNoteEthArrived,
      .setScripts = xasSetEthScripts,
      .after = xasFinishEth}},
    {&XAS_HOSTNAME_MESSAGE,
     {.application = "hostname", .update = xasUpdateHostnameCfg, .after = xasTellLogger}},
    {&XAS_DNS_MESSAGE, {.application = "dns", .update = xasUpdateDnsCfg, .after = xasTellResolverUsers}},
    {&XAS_FIREWALL_MESSAGE, {.application = "firewall", .update = {xasUpdateFirewall, &xasFirewallReasons}}},
    {&XAS_IPFILTER_SET_MESSAGE,
     {.application = "firewall", .update = {xasUpdateFirewall, &xasFilterSetReasons}}},
    {&XAS_IPFILTER_ASSIGN_MESSAGE,
     {.application = "firewall", .update = {xasUpdateFirewall, &xasFilterAssignReasons}}},
    {&XAS_ROUTING_MESSAGE,
     {.application = "router", .update = xasUpdateRoutingCfg, .start = XasStartRule::word0or1}},
    {&XAS_VPN_MESSAGE, {.application = "ipsec", .update = xasUpdateVPNCfg, .start = XasStartRule::word0}},
    {&XAS_TIMEZONE_MESSAGE, {.application = "timezone", .update = {xasUpdateTimezoneCfg, &xasTimezoneFiles}}},
    {&XAS_NTP_MESSAGE, {.application = "ntp", .update = xasUpdateNtpCfg, .start = XasStartRule::word0}},
    {&XAS_SYSLOG_MESSAGE,
     {.application = "syslog", .update = xasUpdateSyslogCfg, .onArrival = xasReplaceFirstLogger}},
    {&XAS_SNMP_MESSAGE, {.application = "snmp", .update = xasUpdateSNMPCfg, .start = XasStartRule::word0}},
    {&XAS_NFS_MESSAGE, {.application = "nfs", .update = {xasUpdateNFSCfg, &xasNfsFiles}}},
    {&XAS_CIFS_MESSAGE, {.application = "samba", .update = xasUpdateSambaCfg, .start = XasStartRule::word0}},
    {&XAS_AUTH_MESSAGE,
     {.application = "authentication", .update = xasUpdateAuthenOrderCfg, .startedInstead = xasNisClientFor}},
    {&XAS_LOCALUSERS_MESSAGE,
     {.application = "localuser", .update = xasUpdateLocalUsersCfg, .start = XasStartRule::word0}},
    {&XAS_NIS_MESSAGE, {.application = "ypbind", .update = xasUpdateNisCfg, .start = XasStartRule::word0}},
    {&XAS_LDAP_MESSAGE, {.application = "ldap", .update = xasUpdateLdapCfg, .start = XasStartRule::word0}},
    {&XAS_RADIUS_MESSAGE,
     {.application = "radius", .update = xasUpdateRadiusCfg, .start = XasStartRule::word0}},
    {&XAS_KERBEROS_MESSAGE,
     {.application = "kerberos", .update = xasUpdateKerberosCfg, .start = XasStartRule::word0}},
    {&XAS_TACACS_MESSAGE,
     {.application = "tacacs", .update = xasUpdateTacacsCfg, .start = XasStartRule::word0}},
    {&XAS_APPLICATION_MESSAGE, {.application = "", .start = XasStartRule::word1AndModel}},
    {&XAS_USER_MESSAGE, {.application = "user", .update = xasUpdateSingleLocalUsersCfg}},
    {&XAS_USERLIST_MESSAGE, {.application = "userlist", .update = xasUpdateUserListCfg}},
    {&XAS_NAT_NOTIFY_MESSAGE, {.application = "nat", .setScripts = xasSetNatScript}},
    {&XAS_NOTIFY_MESSAGE,
     {.application = "netlink",
      .update = {xasUpdateEthIfStatusCfg, &xasEthIfStatusFiles},
      .setScripts = xasSetLinkScript}},
};

#endif
