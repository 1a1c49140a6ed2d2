/** The tables of all described message types; each is defined in its subject's file. */
#ifndef XAS_MSG_MSG_FIELDS_SUBJECTS_H
#define XAS_MSG_MSG_FIELDS_SUBJECTS_H

#include "msg/msg_fields.h"

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
extern const XasMsgFields XAS_APPLICATION_FIELDS;     // msg_fields_application.cpp
extern const XasMsgFields XAS_USERLIST_FIELDS;        // msg_fields_userlist.cpp
extern const XasMsgFields XAS_NAT_NOTIFY_FIELDS;      // msg_fields_notify.cpp
extern const XasMsgFields XAS_NOTIFY_FIELDS;          // msg_fields_notify.cpp
extern const XasMsgFields XAS_ACKNAK_FIELDS;          // msg_fields_acknak.cpp

#endif
