#include "auth/auth_order.h"
#include "auth/kerberos.h"
#include "auth/ldap.h"
#include "auth/local_users.h"
#include "auth/nis.h"
#include "auth/nsswitch.h"
#include "auth/pam.h"
#include "auth/radius.h"
#include "auth/tacacs.h"
#include "auth/user_ports.h"
#include "core/text.h"
#include "dispatch/vpn.h"
#include "platform/config_library.h"
#include "support/fuzz.h"
#include "texts/editors.h"

#include <algorithm>

namespace {

template <class Payload, auto make>
XasNewText textOf(const XasTextInput &in)
{
    return xasMadeBy<make>(in.old, xasReadPayload<Payload>(in.msg), nullptr);
}

/** A template as it is read: up to its first NUL, not more than is used of one. */
template <class Payload, auto expand>
XasNewText expanded(const XasTextInput &in)
{
    std::string text = in.old.substr(0, std::min(in.old.find('\0'), XAS_TEMPLATE_MAX));
    return expand(std::move(text), xasReadPayload<Payload>(in.msg));
}

std::string ldapText(std::string templateText, const XasLdapPayload &ldap)
{
    return xasLdapTemplateText(std::move(templateText), ldap) + xasLdapBindText(ldap) + xasLdapMapText(ldap);
}

XasAuthOrder orderIn(const XasMessage &msg)
{
    return xasReadPayload<XasAuthOrder>(msg);
}

/** The text, which must be read again as what it was written from. */
XasNewText authOrderText(const XasTextInput &in)
{
    auto auth = xasReadPayload<XasAuthPayload>(in.msg);
    xasClampAuthPositions(auth);
    const std::string text = xasAuthOrderCfgText(auth);
    XasAuthOrder order{};
    xasParseAuthOrder(text, order);
    xasFuzzRequire(order.local == auth.local && order.nis == auth.nis && order.ldap == auth.ldap &&
                       order.radius == auth.radius && order.securid == auth.securid &&
                       order.kerberos == auth.kerberos && order.tacacs == auth.tacacs &&
                       order.firstResponding == (auth.first_responding != 0 ? 1 : 0),
                   "the order is read as it was written", text);
    return text;
}

/** Where the modules' settings are, see the model. */
struct PamInput {
    XasAuthOrder order;
    char server1[257];
    char secret[128];
    char server2[257];
    char server3[257];
    char login[21];
    std::uint32_t useLdap;
    std::uint32_t encrypt;
};
static_assert(offsetof(PamInput, useLdap) == 1072 - XAS_PAYLOAD_OFFSET);

XasNewText pamText(const XasTextInput &in)
{
    const auto input = xasReadPayload<PamInput>(in.msg);
    return xasPamSystemAuthText(input.order, {.useLdap = input.useLdap,
                                              .encrypt = input.encrypt,
                                              .server1 = xasFieldString(input.server1),
                                              .server2 = xasFieldString(input.server2),
                                              .server3 = xasFieldString(input.server3),
                                              .server1_secret = xasFieldString(input.secret),
                                              .login = xasFieldString(input.login)});
}

XasNewText nisNetworkText(const XasTextInput &in)
{
    return xasNisNetworkText(in.old, xasFieldString(xasReadPayload<XasNisPayload>(in.msg).domain));
}

XasNewText kdcHostsText(const XasTextInput &in)
{
    const auto kerberos = xasReadPayload<XasKerberosPayload>(in.msg);
    const std::string kdc = xasFieldString(kerberos.kdc);
    const std::string address = xmlIPv4Or6ToStr(&kerberos.kdc_ip);
    // An unset address never gets here; the model, which knows none, writes it as 0.0.0.0.
    return xasHostsTextWithLine(in.old, address.empty() ? "0.0.0.0" : address.c_str(), kdc.c_str(),
                                kdc.c_str());
}

std::optional<std::string> localAddress(const XasTextInput &in)
{
    return in.variant != 0 ? std::optional<std::string>{"192.0.2.1"} : std::nullopt;
}

XasNewText vpnText(const XasTextInput &in)
{
    const auto vpn = xasReadPayload<XasVpnPayload>(in.msg);
    return xasIPsecGlobalText(in.old) + (vpn.tunnel != 0 ? xasIPsecConnText(vpn, localAddress(in)) : "");
}

XasNewText vpnSecretsText(const XasTextInput &in)
{
    return xasIPsecSecretsText(xasReadPayload<XasVpnPayload>(in.msg), localAddress(in));
}

/** Its secrets are written, those of the key's method among them. */
bool areSecretsWritten(const XasMessage &msg)
{
    const auto vpn = xasReadPayload<XasVpnPayload>(msg);
    return vpn.tunnel != 0 && vpn.auth != XAS_VPN_RSA;
}

bool isKdcGiven(const XasMessage &msg)
{
    const auto kerberos = xasReadPayload<XasKerberosPayload>(msg);
    return !xasFieldText(kerberos.kdc).empty() && *xmlIPv4Or6ToStr(&kerberos.kdc_ip) != '\0';
}

template <class Payload>
bool isEnabled(const XasMessage &msg)
{
    return xasReadPayload<Payload>(msg).enabled != 0;
}

bool isPortFileWritten(const XasMessage &msg)
{
    return xasIsValidUser(xasReadPayload<XasUserPayload>(msg).user);
}

constexpr XasTextEditor EDITORS[] = {
    {"order", XMSG_AUTH, authOrderText, xasModelAuthOrder},
    {"nsswitch", XMSG_AUTH,
     [](const XasTextInput &in) -> XasNewText { return xasNsswitchText(in.old, orderIn(in.msg)); },
     xasModelNsswitch, 1, true},
    {"pam", XMSG_AUTH, pamText, xasModelPam, 1, false,
     [](const XasMessage & /*msg*/) {
         return false;
     }},
    {"yp", XMSG_NIS, textOf<XasNisPayload, xasYpText>, xasModelYp},
    {"nis network", XMSG_NIS, nisNetworkText, xasModelNisNetwork, 1, true},
    {"openldap", XMSG_LDAP, textOf<XasLdapPayload, xasOpenLdapText>, xasModelOpenLdap, 1, true},
    {"ldap", XMSG_LDAP, expanded<XasLdapPayload, ldapText>, xasModelLdap, 1, false,
     isEnabled<XasLdapPayload>},
    {"radius", XMSG_RADIUS, textOf<XasRadiusPayload, xasRadiusText>, xasModelRadius, 1, true},
    {"kerberos", XMSG_KERBEROS, expanded<XasKerberosPayload, xasKerberosText>, xasModelKerberos, 1, false,
     isEnabled<XasKerberosPayload>},
    {"kdc hosts", XMSG_KERBEROS, kdcHostsText, xasModelKdcHosts, 1, true, isKdcGiven},
    {"tacacs", XMSG_TACACS, expanded<XasTacacsPayload, xasTacacsText>, xasModelTacacs},
    {"user ports", XMSG_USER,
     [](const XasTextInput &in) -> XasNewText {
         return xasUserPortText(xasReadPayload<XasUserPayload>(in.msg).user);
     },
     xasModelUserPorts, 1, false, isPortFileWritten},
    {"vpn", XMSG_VPN, vpnText, xasModelVpn, 2, true},
    {"vpn secrets", XMSG_VPN, vpnSecretsText, xasModelVpnSecrets, 2, false, areSecretsWritten},
};

} // namespace

std::span<const XasTextEditor> xasLoginEditors()
{
    return EDITORS;
}
