#include "msg/fields.h"

#include "auth/auth_message.h"
#include "auth/cifs_message.h"
#include "auth/kerberos_message.h"
#include "auth/ldap_message.h"
#include "auth/nfs_message.h"
#include "auth/nis_message.h"
#include "auth/radius_message.h"
#include "auth/snmp_message.h"
#include "auth/tacacs_message.h"
#include "auth/user_message.h"
#include "config/dns_message.h"
#include "config/firewall_message.h"
#include "config/hostname_message.h"
#include "config/ntp_message.h"
#include "config/routing_message.h"
#include "config/syslog_message.h"
#include "config/timezone_message.h"
#include "dispatch/application_message.h"
#include "dispatch/ipfilter_message.h"
#include "dispatch/vpn_message.h"
#include "wire/eth_message.h"
#include "wire/notify_message.h"
#include "wire/reply_message.h"

#include <algorithm>
#include <array>

namespace {

/** The types that are described, in the order of their numbers. */
constexpr std::array DESCRIBED = {
    &XAS_ETH_MESSAGE,         &XAS_HOSTNAME_MESSAGE,     &XAS_DNS_MESSAGE,
    &XAS_FIREWALL_MESSAGE,    &XAS_IPFILTER_SET_MESSAGE, &XAS_IPFILTER_ASSIGN_MESSAGE,
    &XAS_ROUTING_MESSAGE,     &XAS_VPN_MESSAGE,          &XAS_TIMEZONE_MESSAGE,
    &XAS_NTP_MESSAGE,         &XAS_SYSLOG_MESSAGE,       &XAS_SNMP_MESSAGE,
    &XAS_NFS_MESSAGE,         &XAS_CIFS_MESSAGE,         &XAS_AUTH_MESSAGE,
    &XAS_LOCALUSERS_MESSAGE,  &XAS_NIS_MESSAGE,          &XAS_LDAP_MESSAGE,
    &XAS_RADIUS_MESSAGE,      &XAS_KERBEROS_MESSAGE,     &XAS_TACACS_MESSAGE,
    &XAS_APPLICATION_MESSAGE, &XAS_USER_MESSAGE,         &XAS_USERLIST_MESSAGE,
    &XAS_NAT_NOTIFY_MESSAGE,  &XAS_NOTIFY_MESSAGE,       &XAS_ACKNAK_MESSAGE,
};

} // namespace

const XasMsgFields *msgFieldsOf(std::uint32_t msgtype)
{
    const auto found = std::ranges::find(DESCRIBED, msgtype, &XasMsgFields::msgtype);
    return found == DESCRIBED.end() ? nullptr : *found;
}
