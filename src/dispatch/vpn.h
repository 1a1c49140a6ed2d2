/**
 * The IPsec tunnel: ipsec.conf (ipsec.conf(5)) keeps its global part and gets one "conn" section;
 * "/etc/ipsec.secrets" (ipsec.secrets(5)) loses its PSK and XAUTH lines and gets those of the tunnel.
 */
#ifndef XAS_DISPATCH_VPN_H
#define XAS_DISPATCH_VPN_H

#include "dispatch/vpn_message.h"
#include "files/update.h"

#include <optional>
#include <string>
#include <string_view>

/** The global part: the lines before the first "conn " line, a "nat_traversal=yes" commented out. */
std::string xasIPsecGlobalText(std::string_view oldText);

/** The tunnel's section. `localAddress`: the local interface's IPv4 address, none when it is unknown. */
std::string xasIPsecConnText(const XasVpnPayload &vpn, const std::optional<std::string> &localAddress);

/** The tunnel's lines of the secrets file. */
std::string xasIPsecSecretsText(const XasVpnPayload &vpn, const std::optional<std::string> &localAddress);

/** Rewrites both files. Returns 0; 1 with the reply set when ipsec.conf cannot be opened or saved. */
[[nodiscard]] int xasEditIPsecCfgFile(const char *cfgFileName, const XasVpnPayload *vpn,
                                      XasReplyStatus *reply);

/** The handler of XMSG_VPN. */
extern const XasFilesUpdate xasUpdateVPNCfg;

#endif
