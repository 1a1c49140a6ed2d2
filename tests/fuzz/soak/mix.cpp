#include "soak/mix.h"

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
#include "dispatch/ipfilter_message.h"
#include "dispatch/vpn_message.h"
#include "wire/eth_message.h"
#include "wire/notify_message.h"

#include <array>

namespace {

std::string name(XasMix &mix, const char *prefix)
{
    return prefix + std::to_string(mix.below(50));
}

XasIPv4 address(XasMix &mix)
{
    return {0x0000000AU + (mix.below(250) << 24)};
}

XasHostAddr host(XasMix &mix)
{
    XasHostAddr record{};
    if (mix.below(2) == 0) {
        record.is_name = 1;
        xasSetFieldText(record.value, name(mix, "server"));
    } else {
        const XasIPv4 ip = address(mix);
        std::memcpy(record.value, &ip, sizeof ip);
    }
    return record;
}

template <class Payload>
XasMessage message(std::uint32_t msgtype, const Payload &payload)
{
    XasMessage msg{};
    msg.xH.msgtype = msgtype;
    xasWritePayload(msg, payload);
    return msg;
}

XasMessage eth(XasMix &mix)
{
    XasEthPayload payload{};
    for (XasEthPort &port : payload.ports) {
        port = {.marker = 1,
                .enabled = mix.below(2),
                .source = mix.below(3),
                .ip = address(mix),
                .mask = {0x00FFFFFF},
                .ipv6 = {},
                .maskv6 = 64,
                .mode = mix.below(5),
                .mtu = 1500};
    }
    payload.ipv6_enabled = mix.below(2);
    payload.gateway = address(mix);
    payload.gateway_ipv6.sin6_addr.s6_addr[15] = static_cast<std::uint8_t>(1 + mix.below(9));
    payload.bonding = mix.below(4);
    payload.gw_precedence = mix.below(3);
    payload.alt_gateway = address(mix);
    payload.timer = mix.below(7200);
    return message(XMSG_ETH, payload);
}

XasMessage hostname(XasMix &mix)
{
    XasHostnamePayload payload{};
    xasSetFieldText(payload.hostname, name(mix, "console"));
    xasSetFieldText(payload.domain, mix.below(2) == 0 ? "" : name(mix, "example"));
    return message(XMSG_HOSTNAME, payload);
}

XasMessage dns(XasMix &mix)
{
    XasDnsPayload payload{};
    payload.dns1.address[0] = static_cast<unsigned char>(mix.below(200));
    payload.dns2.is_ipv6 = mix.below(2);
    payload.prefer_ipv4 = mix.below(2);
    return message(XMSG_DNS, payload);
}

XasMessage firewall(XasMix &mix)
{
    XasFirewallPayload payload{};
    payload.enabled = mix.below(2);
    payload.test_time = static_cast<std::int32_t>(payload.enabled * mix.below(2));
    return message(XMSG_FIREWALL, payload);
}

XasMessage filterSet(XasMix &mix)
{
    XasIpFilterSetPayload payload{};
    payload.id = 1;
    xasSetFieldText(payload.name, name(mix, "my set "));
    payload.action = mix.below(3);
    payload.num_rules = mix.below(5);
    for (XasIpFilterRule &rule : payload.rules)
        rule = {.ip = address(mix),
                .range_end = XAS_NO_IPV4,
                .masklength = 24,
                .protocol = mix.below(9),
                .portrange = "22,80",
                .target = mix.below(3)};
    return message(XMSG_IPFILTER_SET, payload);
}

XasMessage filterAssign(XasMix &mix)
{
    XasIpFilterAssignPayload payload{};
    payload.iface_type = 1 + mix.below(2);
    payload.iface_id = 1;
    xasSetFieldText(payload.filterName, mix.below(2) == 0 ? "" : name(mix, "set"));
    return message(XMSG_IPFILTER_ASSIGN, payload);
}

XasMessage routing(XasMix &mix)
{
    XasRoutingPayload payload{};
    payload.start = mix.below(2);
    payload.static_enabled = mix.below(2);
    payload.rip_enabled = mix.below(2);
    payload.rip_version = mix.below(3);
    payload.routes[0].destination = address(mix);
    return message(XMSG_ROUTING, payload);
}

XasMessage vpn(XasMix &mix)
{
    XasVpnPayload payload{};
    payload.tunnel = mix.below(4) != 0 ? 1 : 0;
    xasSetFieldText(payload.name, name(mix, "tunnel"));
    payload.ifac = 1;
    payload.auth = mix.below(2);
    xasSetFieldText(payload.auth_key, name(mix, "key"));
    payload.remote_host = host(mix);
    payload.remote_hop = payload.local_hop = XAS_NO_IPV4;
    return message(XMSG_VPN, payload);
}

XasMessage timezone(XasMix &mix)
{
    XasTimezonePayload payload{};
    xasSetFieldText(payload.zone, mix.below(2) == 0 ? "UTC" : "Europe/Berlin");
    return message(XMSG_TIMEZONE, payload);
}

XasMessage ntp(XasMix &mix)
{
    XasNtpPayload payload{};
    payload.enabled = mix.below(2);
    payload.sync = XAS_NTP_POLL;
    payload.poll = mix.below(2);
    for (XasHostAddr &server : payload.servers)
        server = host(mix);
    payload.single = host(mix);
    return message(XMSG_NTP, payload);
}

XasMessage syslog(XasMix &mix)
{
    XasSyslogPayload payload{};
    for (std::uint32_t &level : payload.levels)
        level = mix.below(5);
    payload.remotes[0] = host(mix);
    payload.nut_size = static_cast<std::uint16_t>(mix.below(100));
    payload.log_size = static_cast<std::uint16_t>(mix.below(100));
    return message(XMSG_SYSLOG, payload);
}

XasMessage snmp(XasMix &mix)
{
    XasSnmpPayload payload{};
    payload.enabled = mix.below(2);
    payload.trap_hosts[0] = host(mix);
    xasSetFieldText(payload.v3user, name(mix, "user"));
    xasSetFieldText(payload.v3pass, name(mix, "pass word"));
    xasSetFieldText(payload.ro_community, name(mix, "public"));
    xasSetFieldText(payload.rw_community, name(mix, "private"));
    payload.v3security = mix.below(3);
    return message(XMSG_SNMP, payload);
}

XasMessage nfs(XasMix &mix)
{
    XasNfsPayload payload{};
    for (XasNfsMount &mount : payload.mounts) {
        mount.mount = mix.below(2);
        mount.read_write = mix.below(2);
        xasSetFieldText(mount.rem_dir, name(mix, "server") + ":/my files");
        xasSetFieldText(mount.local_dir, "/" + name(mix, "share"));
    }
    return message(XMSG_NFS, payload);
}

XasMessage cifs(XasMix &mix)
{
    XasCifsPayload payload{};
    payload.enabled = 1;
    payload.eth1 = mix.below(2);
    payload.eth2 = mix.below(2);
    xasSetFieldText(payload.lanman_pwd, name(mix, "LM"));
    xasSetFieldText(payload.nt_pwd, name(mix, "NT"));
    xasSetFieldText(payload.lct_field, name(mix, "LCT-"));
    xasSetFieldText(payload.workgroup, name(mix, "GROUP"));
    return message(XMSG_CIFS, payload);
}

XasMessage auth(XasMix &mix)
{
    XasAuthPayload payload{};
    for (std::uint8_t *position : {&payload.local, &payload.nis, &payload.ldap, &payload.radius,
                                   &payload.securid, &payload.kerberos, &payload.tacacs})
        *position = static_cast<std::uint8_t>(mix.below(9));
    payload.first_responding = mix.below(2);
    payload.start_nis = mix.below(2);
    return message(XMSG_AUTH, payload);
}

XasMessage nis(XasMix &mix)
{
    XasNisPayload payload{};
    payload.enabled = mix.below(2);
    xasSetFieldText(payload.domain, mix.below(4) == 0 ? "" : name(mix, "nis"));
    payload.master = host(mix);
    for (XasHostAddr &slave : payload.slaves)
        slave.is_name = 1;
    return message(XMSG_NIS, payload);
}

XasMessage ldap(XasMix &mix)
{
    XasLdapPayload payload{};
    payload.enabled = mix.below(3) != 0 ? 1 : 0;
    payload.server = host(mix);
    xasSetFieldText(payload.base, name(mix, "dc=example"));
    xasSetFieldText(payload.bind_passwd, name(mix, "secret"));
    payload.encrypt = mix.below(2);
    return message(XMSG_LDAP, payload);
}

XasMessage radius(XasMix &mix)
{
    XasRadiusPayload payload{};
    payload.enabled = mix.below(2);
    payload.server1 = {.host = host(mix), .secret = "one", .port = 1812};
    payload.server2 = {.host = host(mix), .secret = "two", .port = 1812};
    return message(XMSG_RADIUS, payload);
}

/** The centre's name stays: an older one keeps its line in the hosts file. */
XasMessage kerberos(XasMix &mix)
{
    XasKerberosPayload payload{};
    payload.enabled = mix.below(3) != 0 ? 1 : 0;
    xasSetFieldText(payload.realm, name(mix, "REALM"));
    xasSetFieldText(payload.kdc, "kdc.example.org");
    payload.kdc_ip.address[0] = static_cast<unsigned char>(1 + mix.below(200));
    payload.kdc_port = 88;
    payload.use_ldap = mix.below(2);
    return message(XMSG_KERBEROS, payload);
}

XasMessage tacacs(XasMix &mix)
{
    XasTacacsPayload payload{};
    payload.enabled = mix.below(2);
    for (XasHostAddr &server : payload.servers)
        server = host(mix);
    xasSetFieldText(payload.server1_secret, name(mix, "secret"));
    payload.service = mix.below(3);
    return message(XMSG_TACACS, payload);
}

XasUserRecord user(XasMix &mix)
{
    XasUserRecord record{};
    xasSetFieldText(record.login, "user" + std::to_string(mix.below(6)));
    xasSetFieldText(record.password, name(mix, "$1$"));
    record.uid = 500 + mix.below(6);
    record.listen = mix.below(1000);
    return record;
}

XasMessage singleUser(XasMix &mix)
{
    return message(
        XMSG_USER,
        XasUserPayload{.user = user(mix), .valid_user = 1, .remote_user = 0, .action = mix.below(4)});
}

XasMessage notify(XasMix &mix)
{
    XasNotifyPayload payload{};
    payload.code = 2 + mix.below(2);
    xasSetFieldText(payload.text, mix.below(2) == 0 ? "Eth1 Link" : "Eth2 Link");
    return message(XMSG_NOTIFY, payload);
}

XasMessage application(XasMix &mix)
{
    return message(XMSG_APPLICATION, std::array<std::uint32_t, 2>{mix.below(6), mix.below(2)});
}

XasMessage natNotify(XasMix &mix)
{
    return message(XMSG_NAT_NOTIFY, XasNatNotifyPayload{.add = mix.below(2), .address = address(mix)});
}

XasMessage userList(XasMix & /*mix*/)
{
    return message(XMSG_USERLIST, std::uint32_t{0});
}

/** Types without a row, which are refused. */
XasMessage unknown(XasMix &mix)
{
    return message(mix.below(2) == 0 ? std::uint32_t{XMSG_SSH} : 66 + mix.below(9), mix.below(1000));
}

XasMessage localUsers(XasMix &mix)
{
    XasLocalUsersPayload payload{};
    payload.enabled = mix.below(2);
    payload.users_included = 1;
    payload.num_users = static_cast<std::uint16_t>(mix.below(4));
    return message(XMSG_LOCALUSERS, payload);
}

constexpr std::array MAKERS = {eth,    hostname,  dns,         firewall, filterSet, filterAssign, routing,
                               vpn,    timezone,  ntp,         syslog,   snmp,      nfs,          cifs,
                               auth,   nis,       ldap,        radius,   kerberos,  tacacs,       singleUser,
                               notify, natNotify, application, userList, unknown,   localUsers};

} // namespace

XasMixedMessage XasMix::next()
{
    XasMixedMessage made;
    made.msg = MAKERS[below(MAKERS.size())](*this);
    made.key = std::to_string(made.msg.xH.msgtype);
    if (made.msg.xH.msgtype == XMSG_NOTIFY)
        made.key += xasFieldString(xasReadPayload<XasNotifyPayload>(made.msg).text);
    if (made.msg.xH.msgtype == XMSG_LOCALUSERS) {
        const auto count = xasReadPayload<XasLocalUsersPayload>(made.msg).num_users;
        made.users.resize(count > 0 ? 120 : 0);
        for (unsigned i = 0; i < count; ++i) {
            const XasUserRecord record = user(*this);
            made.users.append(reinterpret_cast<const char *>(&record), sizeof record);
        }
    }
    return made;
}

XasMixedMessage XasMix::first()
{
    XasMixedMessage made;
    made.msg = eth(*this);
    made.key = std::to_string(XMSG_ETH);
    return made;
}
