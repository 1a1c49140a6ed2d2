/** Tunnels as tests build them. */
#ifndef XAS_TEST_SUPPORT_VPN_H
#define XAS_TEST_SUPPORT_VPN_H

#include "dispatch/vpn_message.h"
#include "support/eth.h"
#include "support/message.h"

/** A tunnel to 198.51.100.7 with a pre-shared key and nothing else. */
inline XasVpnPayload xasTestVpn()
{
    XasVpnPayload vpn{};
    vpn.tunnel = 1;
    xasSetFieldText(vpn.name, "branch");
    vpn.ifac = 1;
    vpn.auth = XAS_VPN_PSK;
    xasSetFieldText(vpn.auth_key, "s3cret");
    const XasIPv4 remote = xasTestIPv4("198.51.100.7");
    std::memcpy(vpn.remote_host.value, &remote, sizeof remote);
    vpn.remote_hop = XAS_NO_IPV4;
    vpn.local_hop = XAS_NO_IPV4;
    return vpn;
}

/** The same with everything set that can be. */
inline XasVpnPayload xasTestFullVpn()
{
    XasVpnPayload vpn = xasTestVpn();
    xasSetFieldText(vpn.remote_id, "branch.example");
    vpn.remote_hop = xasTestIPv4("198.51.100.1");
    xasSetFieldText(vpn.remote_subnet, "10.20.0.0/16,10.21.0.0/16");
    xasSetFieldText(vpn.local_id, "office.example");
    vpn.local_hop = xasTestIPv4("192.0.2.1");
    xasSetFieldText(vpn.local_subnet, "10.10.0.0/16");
    vpn.aggressive = 1;
    vpn.ike = {.enc = 2, .hash = 1, .dhgroup = 2};
    vpn.esp = {.enc = 1, .hash = 2, .dhgroup = 1};
    vpn.pfs = 1;
    vpn.modecfg = 1;
    vpn.xauth = 1;
    xasSetFieldText(vpn.xauth_login, "joe");
    xasSetFieldText(vpn.xauth_passwd, "pass");
    return vpn;
}

inline void xasSetTestRemoteName(XasVpnPayload &vpn, std::string_view name)
{
    vpn.remote_host = {};
    vpn.remote_host.is_name = 1;
    xasSetFieldText(vpn.remote_host.value, name);
}

#endif
