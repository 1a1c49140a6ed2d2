/** Tunnels as tests build them. */
#ifndef XAS_TEST_SUPPORT_VPN_H
#define XAS_TEST_SUPPORT_VPN_H

#include "dispatch/vpn_message.h"
#include "support/eth.h"
#include "support/message.h"

/** A tunnel to 198.51.100.7 with a pre-shared key and nothing else. */
inline XasVpnPayload xasTestVpn()
{
    return XasMessageBuilder{XMSG_VPN}
        .set("tunnel=yes name=branch ifac=eth1 auth=psk auth_key=s3cret remote_host=198.51.100.7 "
             "remote_hop=none local_hop=none")
        .as<XasVpnPayload>();
}

/** The same with everything set that can be. */
inline XasVpnPayload xasTestFullVpn()
{
    return XasMessageBuilder{XMSG_VPN}
        .payload(xasTestVpn())
        .set("remote_id=branch.example remote_hop=198.51.100.1 remote_subnet=10.20.0.0/16,10.21.0.0/16 "
             "local_id=office.example local_hop=192.0.2.1 local_subnet=10.10.0.0/16 aggressive=yes "
             "ike_enc=aes ike_hash=sha1 ike_dhgroup=modp1536 esp_enc=3des esp_hash=md5 "
             "esp_dhgroup=modp1024 pfs=yes modecfg=yes xauth=yes xauth_login=joe xauth_passwd=pass")
        .as<XasVpnPayload>();
}

inline void xasSetTestRemoteName(XasVpnPayload &vpn, std::string_view name)
{
    vpn.remote_host = {};
    vpn.remote_host.is_name = 1;
    xasSetFieldText(vpn.remote_host.value, name);
}

#endif
