/** The payload of XMSG_VPN: one IPsec tunnel. */
#ifndef XAS_DISPATCH_VPN_MESSAGE_H
#define XAS_DISPATCH_VPN_MESSAGE_H

#include "wire/address.h"
#include "wire/field.h"

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
    XasIPv4 remote_hop;     /**< may be none, as local_hop */
    char remote_subnet[80]; /**< one subnet, or several separated by commas, as for local_subnet */
    char local_id[20];
    XasIPv4 local_hop;
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

namespace xasVpnFields {

inline constexpr XasValueName PORTS[] = {{1, "eth1"}, {2, "eth2"}};

inline constexpr XasValueName METHODS[] = {{XAS_VPN_RSA, "rsa"}, {XAS_VPN_PSK, "psk"}, {2, "none"}};

inline constexpr XasValueName CIPHERS[] = {{0, "none"}, {1, "3des"}, {2, "aes"}};
inline constexpr XasValueName HASHES[] = {{0, "none"}, {1, "sha1"}, {2, "md5"}};
inline constexpr XasValueName GROUPS[] = {{0, "none"}, {1, "modp1024"}, {2, "modp1536"}};

inline bool isKeyWritten(const XasMessage &msg, std::size_t /*element*/)
{
    const auto vpn = xasReadPayload<XasVpnPayload>(msg);
    return vpn.tunnel != 0 && (vpn.auth == XAS_VPN_RSA || vpn.auth == XAS_VPN_PSK);
}

inline bool isLoginWritten(const XasMessage &msg, std::size_t /*element*/)
{
    const auto vpn = xasReadPayload<XasVpnPayload>(msg);
    return vpn.tunnel != 0 && vpn.xauth != 0;
}

/** With RSA keys the secrets are the host's own. */
inline bool isLoginSecretWritten(const XasMessage &msg, std::size_t element)
{
    return isLoginWritten(msg, element) && xasReadPayload<XasVpnPayload>(msg).auth != XAS_VPN_RSA;
}

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD(XasVpnPayload, tunnel, flag, "there is a tunnel").byDefault("yes"),
    XAS_FIELD(XasVpnPayload, name, text, "the tunnel's name").readIf(xasIsSet<&XasVpnPayload::tunnel>),
    XAS_FIELD(XasVpnPayload, ifac, choice, "port that the tunnel begins at").of(PORTS).byDefault("eth1"),
    XAS_FIELD(XasVpnPayload, auth, choice, "how the two ends prove who they are")
        .of(METHODS)
        .byDefault("psk"),
    XAS_FIELD(XasVpnPayload, auth_key, text, "the pre-shared key, or the remote public RSA key")
        .secret()
        .holding(XasTextRule::quoted)
        .readIf(isKeyWritten),
    XAS_FIELD(XasVpnPayload, remote_host, hostAddr, "the other end; none: whoever knows the key")
        .byDefault("none")
        .readIf(xasIsSet<&XasVpnPayload::tunnel>),
    XAS_FIELD(XasVpnPayload, remote_id, text, "what the other end calls itself")
        .readIf(xasIsSet<&XasVpnPayload::tunnel>),
    XAS_FIELD(XasVpnPayload, remote_hop, ipv4, "the other end's gateway").orNone().byDefault("none"),
    XAS_FIELD(XasVpnPayload, remote_subnet, text, "networks behind the other end, separated by commas")
        .readIf(xasIsSet<&XasVpnPayload::tunnel>),
    XAS_FIELD(XasVpnPayload, local_id, text, "what the appliance calls itself")
        .readIf(xasIsSet<&XasVpnPayload::tunnel>),
    XAS_FIELD(XasVpnPayload, local_hop, ipv4, "the appliance's gateway").orNone().byDefault("none"),
    XAS_FIELD(XasVpnPayload, local_subnet, text, "networks behind the appliance, separated by commas")
        .readIf(xasIsSet<&XasVpnPayload::tunnel>),
    XAS_FIELD(XasVpnPayload, aggressive, flag, "keys are exchanged in aggressive mode"),
    XAS_FIELD_AS("ike_enc", XasVpnPayload, ike.enc, choice, "cipher of the key exchange").of(CIPHERS),
    XAS_FIELD_AS("ike_hash", XasVpnPayload, ike.hash, choice, "hash of the key exchange").of(HASHES),
    XAS_FIELD_AS("ike_dhgroup", XasVpnPayload, ike.dhgroup, choice,
                 "Diffie-Hellman group of the key exchange")
        .of(GROUPS),
    XAS_FIELD_AS("esp_enc", XasVpnPayload, esp.enc, choice, "cipher of the packets").of(CIPHERS),
    XAS_FIELD_AS("esp_hash", XasVpnPayload, esp.hash, choice, "hash of the packets").of(HASHES),
    XAS_FIELD_AS("esp_dhgroup", XasVpnPayload, esp.dhgroup, choice,
                 "Diffie-Hellman group of the packets' keys")
        .of(GROUPS),
    XAS_FIELD(XasVpnPayload, pfs, flag, "perfect forward secrecy").byDefault("yes"),
    XAS_FIELD(XasVpnPayload, modecfg, flag, "the other end configures the appliance's address"),
    XAS_FIELD(XasVpnPayload, xauth, flag, "the appliance logs in at the other end"),
    XAS_FIELD(XasVpnPayload, xauth_login, text, "user name of that login").readIf(isLoginWritten),
    XAS_FIELD(XasVpnPayload, xauth_passwd, text, "its password").secret().readIf(isLoginSecretWritten),
};
static_assert(xasFieldsAreSound<XasVpnPayload>(FIELDS));

} // namespace xasVpnFields

inline constexpr XasMsgFields XAS_VPN_MESSAGE = {
    .msgtype = XMSG_VPN, .meaning = "the IPsec tunnel", .fields = xasVpnFields::FIELDS};

#endif
