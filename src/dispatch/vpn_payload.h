/** The payload of XMSG_VPN: one IPsec tunnel. IPv4 values are in network byte order. */
#ifndef XAS_DISPATCH_VPN_PAYLOAD_H
#define XAS_DISPATCH_VPN_PAYLOAD_H

#include "wire/address.h"
#include "wire/message.h"

/** How the peers authenticate (`XasVpnPayload::auth`); other values stand for neither. */
enum XasVpnAuth : std::uint32_t { XAS_VPN_RSA = 0, XAS_VPN_PSK = 1 };

/** The algorithms of one phase: 0 is none. */
struct XasVpnAlgorithms {
    std::uint32_t enc;     /**< 1 3des, else aes */
    std::uint32_t hash;    /**< 1 sha1, else md5 */
    std::uint32_t dhgroup; /**< 1 modp1024, else modp1536 */
};

struct XasVpnPayload {
    std::uint32_t tunnel; /**< non-zero: a tunnel is configured */
    char name[20];
    std::uint32_t ifac;      /**< local interface: 1 = Eth1 (eth0), else Eth2 (eth1) */
    std::uint32_t auth;      /**< XasVpnAuth */
    char auth_key[516];      /**< the pre-shared key, or the remote RSA public key */
    XasHostAddr remote_host; /**< text or IPv4 address */
    char remote_id[20];
    std::uint32_t remote_hop; /**< 0xFFFFFFFF = none, as for local_hop */
    char remote_subnet[80];   /**< one subnet, or several separated by commas, as for local_subnet */
    char local_id[20];
    std::uint32_t local_hop;
    char local_subnet[80];
    std::uint32_t aggressive;
    XasVpnAlgorithms ike;
    XasVpnAlgorithms esp;
    std::uint32_t pfs;
    std::uint32_t modecfg;
    std::uint32_t xauth;
    char xauth_login[33];
    char xauth_passwd[XAS_PAYLOAD_SIZE - 905];
};

static_assert(offsetof(XasVpnPayload, name) == 4 && offsetof(XasVpnPayload, ifac) == 24);
static_assert(offsetof(XasVpnPayload, auth) == 28 && offsetof(XasVpnPayload, auth_key) == 32);
static_assert(offsetof(XasVpnPayload, remote_host) == 548);
static_assert(offsetof(XasVpnPayload, remote_host.value) == 556);
static_assert(offsetof(XasVpnPayload, remote_id) == 624 && offsetof(XasVpnPayload, remote_hop) == 644);
static_assert(offsetof(XasVpnPayload, remote_subnet) == 648 && offsetof(XasVpnPayload, local_id) == 728);
static_assert(offsetof(XasVpnPayload, local_hop) == 748 && offsetof(XasVpnPayload, local_subnet) == 752);
static_assert(offsetof(XasVpnPayload, aggressive) == 832);
static_assert(offsetof(XasVpnPayload, ike.enc) == 836 && offsetof(XasVpnPayload, ike.hash) == 840);
static_assert(offsetof(XasVpnPayload, ike.dhgroup) == 844);
static_assert(offsetof(XasVpnPayload, esp.enc) == 848 && offsetof(XasVpnPayload, esp.hash) == 852);
static_assert(offsetof(XasVpnPayload, esp.dhgroup) == 856);
static_assert(offsetof(XasVpnPayload, pfs) == 860 && offsetof(XasVpnPayload, modecfg) == 864);
static_assert(offsetof(XasVpnPayload, xauth) == 868 && offsetof(XasVpnPayload, xauth_login) == 872);
static_assert(offsetof(XasVpnPayload, xauth_passwd) == 905);
static_assert(sizeof(XasVpnPayload) == XAS_PAYLOAD_SIZE);

#endif
