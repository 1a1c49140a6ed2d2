/**
 * Host name and domain: the hosts file (hosts(5)), the host-name file (hostname(5)), the HOSTNAME line of the
 * network file and the static-domain file. The full host name is the name, then "." and the domain when there
 * is one.
 */
#ifndef XAS_CONFIG_HOSTNAME_H
#define XAS_CONFIG_HOSTNAME_H

#include "config/hostname_message.h"
#include "core/appmgr.h"
#include "core/reply.h"

#include <string>
#include <string_view>

/** The longest full host name; a longer one is cut. */
inline constexpr std::size_t XAS_FULL_HOSTNAME_MAX = 255;

std::string xasFullHostname(const XasHostnamePayload &payload);

/** The new hosts text: a loopback line for the full host name first, the old loopback lines dropped. */
std::string xasHostsText(std::string_view oldText, const std::string &fullName);

/** The static-domain text: what stands behind the first "." of the name, or nothing. */
std::string xasDomainText(std::string_view fullName);

/** The editors: each returns 0, or 1 with the failure in `reply`. The files must exist. */
int xasEditHostsFile(const char *cfgFileName, const char *hostname, XasReplyStatus *reply);
int xasEditHostnameFile(const char *cfgFileName, const char *hostname, XasReplyStatus *reply);
int xasEditDomainCfgFile(const char *cfgFileName, const char *hostname, XasReplyStatus *reply);

/** The handler of XMSG_HOSTNAME. Needs the files "hosts", "hostname", "network" and "domain". */
int xasUpdateHostnameCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

#endif
