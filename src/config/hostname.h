/**
 * Host name and domain: the hosts file (hosts(5)), the host-name file (hostname(5)), the HOSTNAME line of the
 * network file and the static-domain file. The full host name is the name, then "." and the domain when there
 * is one.
 */
#ifndef XAS_CONFIG_HOSTNAME_H
#define XAS_CONFIG_HOSTNAME_H

#include "config/hostname_message.h"
#include "files/update.h"

#include <string>
#include <string_view>

/** The longest full host name; a longer one is cut. */
inline constexpr std::size_t XAS_FULL_HOSTNAME_MAX = 255;

std::string xasFullHostname(const XasHostnamePayload &payload);

/** The new hosts text: a loopback line for the full host name first, the old loopback lines dropped. */
std::string xasHostsText(std::string_view oldText, const XasHostnamePayload &payload);

/** The host-name file: the full name. */
std::string xasHostnameText(const XasHostnamePayload &payload);

/** The static-domain text: what stands behind the first "." of the full name, or nothing. */
std::string xasDomainText(const XasHostnamePayload &payload);

/** The editors. The files must exist. */
extern const XasEditor<XasHostnamePayload> xasEditHostsFile;
extern const XasEditor<XasHostnamePayload> xasEditHostnameFile;
extern const XasEditor<XasHostnamePayload> xasEditDomainCfgFile;

/** The handler of XMSG_HOSTNAME. */
extern const XasFilesUpdate xasUpdateHostnameCfg;

#endif
