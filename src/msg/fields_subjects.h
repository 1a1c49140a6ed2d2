/** The tables of all described message types; each is defined in its subject's file. */
#ifndef XAS_MSG_FIELDS_SUBJECTS_H
#define XAS_MSG_FIELDS_SUBJECTS_H

#include "msg/fields.h"

extern const XasMsgFields XAS_ETH_FIELDS;             // msg_fields_eth.cpp
extern const XasMsgFields XAS_HOSTNAME_FIELDS;        // msg_fields_hostname.cpp
extern const XasMsgFields XAS_DNS_FIELDS;             // msg_fields_dns.cpp
extern const XasMsgFields XAS_FIREWALL_FIELDS;        // msg_fields_firewall.cpp
extern const XasMsgFields XAS_IPFILTER_SET_FIELDS;    // msg_fields_ipfilter.cpp
extern const XasMsgFields XAS_IPFILTER_ASSIGN_FIELDS; // msg_fields_ipfilter.cpp
extern const XasMsgFields XAS_ROUTING_FIELDS;         // msg_fields_routing.cpp
extern const XasMsgFields XAS_VPN_FIELDS;             // msg_fields_vpn.cpp
extern const XasMsgFields XAS_TIMEZONE_FIELDS;        // msg_fields_timezone.cpp
extern const XasMsgFields XAS_NTP_FIELDS;             // msg_fields_ntp.cpp
extern const XasMsgFields XAS_SYSLOG_FIELDS;          // msg_fields_syslog.cpp
extern const XasMsgFields XAS_SNMP_FIELDS;            // msg_fields_snmp.cpp
extern const XasMsgFields XAS_NFS_FIELDS;             // msg_fields_nfs.cpp
extern const XasMsgFields XAS_CIFS_FIELDS;            // msg_fields_cifs.cpp
extern const XasMsgFields XAS_AUTH_FIELDS;            // msg_fields_auth.cpp
extern const XasMsgFields XAS_LOCALUSERS_FIELDS;      // msg_fields_localusers.cpp
extern const XasMsgFields XAS_NIS_FIELDS;             // msg_fields_nis.cpp
extern const XasMsgFields XAS_LDAP_FIELDS;            // msg_fields_ldap.cpp
extern const XasMsgFields XAS_RADIUS_FIELDS;          // msg_fields_radius.cpp
extern const XasMsgFields XAS_KERBEROS_FIELDS;        // msg_fields_kerberos.cpp
extern const XasMsgFields XAS_TACACS_FIELDS;          // msg_fields_tacacs.cpp
extern const XasMsgFields XAS_APPLICATION_FIELDS;     // msg_fields_application.cpp
extern const XasMsgFields XAS_USER_FIELDS;            // msg_fields_user.cpp
extern const XasMsgFields XAS_USERLIST_FIELDS;        // msg_fields_userlist.cpp
extern const XasMsgFields XAS_NAT_NOTIFY_FIELDS;      // msg_fields_notify.cpp
extern const XasMsgFields XAS_NOTIFY_FIELDS;          // msg_fields_notify.cpp
extern const XasMsgFields XAS_ACKNAK_FIELDS;          // msg_fields_acknak.cpp

/**
 * One user of the list that accompanies XMSG_LOCALUSERS in a second queue entry. Not in the list of message
 * types: the first user stands at offset 120 of that entry, each further one XAS_USER_RECORD_SIZE behind.
 */
extern const XasMsgFields XAS_LISTED_USER_FIELDS; // msg_fields_user.cpp

#endif
