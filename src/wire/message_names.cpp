#include "wire/message_names.h"

#include <array>
#include <cstddef>

namespace {

using Name = std::string_view;

constexpr std::array MSG_TYPE_NAMES = {
    Name{"XMSG_ETH"},
    Name{"XMSG_HOSTNAME"},
    Name{"XMSG_DNS"},
    Name{"XMSG_SECURITY"},
    Name{"XMSG_FIREWALL"},
    Name{"XMSG_IPFILTER_SET"},
    Name{"XMSG_IPFILTER_ASSIGN"},
    Name{"XMSG_ROUTING"},
    Name{"XMSG_VPN"},
    Name{"XMSG_TIMEZONE"},
    Name{"XMSG_NTP"},
    Name{"XMSG_SYSLOG"},
    Name{"XMSG_AUDITLOG"},
    Name{"XMSG_SSH"},
    Name{"XMSG_TELNET"},
    Name{"XMSG_SNMP"},
    Name{"XMSG_SMTP"},
    Name{"XMSG_PHONEHOME"},
    Name{"XMSG_NFS"},
    Name{"XMSG_CIFS"},
    Name{"XMSG_AUTH"},
    Name{"XMSG_LOCALUSERS"},
    Name{"XMSG_PWDHISTORY"},
    Name{"XMSG_NIS"},
    Name{"XMSG_LDAP"},
    Name{"XMSG_RADIUS"},
    Name{"XMSG_SECURID"},
    Name{"XMSG_KERBEROS"},
    Name{"XMSG_TACACS"},
    Name{"XMSG_REMOTEUSERS"},
    Name{"XMSG_GROUPS"},
    Name{"XMSG_TERMPORT"},
    Name{"XMSG_DP_GLOBAL"},
    Name{"XMSG_DP_DATA"},
    Name{"XMSG_DP_PPP"},
    Name{"XMSG_DP_LOGGING"},
    Name{"XMSG_DP_GENERAL"},
    Name{"XMSG_CONNECT"},
    Name{"XMSG_PCCARD"},
    Name{"XMSG_XPB_PWR"},
    Name{"XMSG_XPB_485"},
    Name{"XMSG_RPM"},
    Name{"XMSG_HOSTLIST"},
    Name{"XMSG_SITE"},
    Name{"XMSG_SERVER"},
    Name{"XMSG_EMAIL"},
    Name{"XMSG_KEYPAD"},
    Name{"XMSG_BANNER"},
    Name{"XMSG_BANNER2"},
    Name{"XMSG_WEB"},
    Name{"XMSG_USERMENU"},
    Name{"XMSG_ZELNETWORK"},
    Name{"XMSG_EVENTACTION"},
    Name{"XMSG_CONFIG"},
    Name{"XMSG_APPLICATION"},
    Name{"XMSG_GETUSER"},
    Name{"XMSG_USER"},
    Name{"XMSG_USERLIST"},
    Name{"XMSG_REMUSERLIST"},
    Name{"XMSG_PORTTEST"},
    Name{"XMSG_CLIQINSTANCE"},
    Name{"XMSG_PCCARD_NOTIFY"},
    Name{"XMSG_NAT_NOTIFY"},
    Name{"XMSG_NOTIFY"},
    Name{"XMSG_CMDDEVICE"},
    Name{},
    Name{"XMSG_ACKNAK"},
    Name{"XMSG_ERROR"},
};
static_assert(MSG_TYPE_NAMES.size() == 68);

constexpr std::array ACTION_NAMES = {Name{"Set"}, Name{"Get"}, Name{"Return"}};

constexpr std::array SENDER_NAMES = {
    Name{"XCS"}, Name{"XMS"}, Name{"XWS"}, Name{"CLI"}, Name{"APP"},   Name{"LCD"},
    Name{"XLD"}, Name{"XPB"}, Name{"XDD"}, Name{"XPC"}, Name{"SNMPD"},
};

template <std::size_t N>
Name nameAt(const std::array<Name, N> &table, std::size_t index)
{
    return index < N ? table[index] : Name{};
}

} // namespace

std::string_view xasMsgTypeName(std::uint32_t msgtype)
{
    return msgtype == 0 ? Name{} : nameAt(MSG_TYPE_NAMES, msgtype - 1);
}

std::uint32_t xasMsgTypeByName(std::string_view name)
{
    for (std::uint32_t type = 1; type <= MSG_TYPE_NAMES.size(); ++type) {
        if (!name.empty() && xasMsgTypeName(type) == name)
            return type;
    }
    return 0;
}

std::string_view xasActionName(std::uint32_t action)
{
    return nameAt(ACTION_NAMES, action);
}

std::string_view xasSenderName(std::uint32_t sender)
{
    return nameAt(SENDER_NAMES, sender);
}
