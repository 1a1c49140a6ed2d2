/**
 * The firewall script's settings, KEY="value" lines that a shell sources: which TCP and UDP services are open
 * to everybody, how the rest is answered, and whether pings are. The dispatcher gives XMSG_FIREWALL to the IP
 * filter; nothing calls this handler yet.
 */
#ifndef XAS_CONFIG_FIREWALL_SERVICES_H
#define XAS_CONFIG_FIREWALL_SERVICES_H

#include "config/firewall_message.h"
#include "files/update.h"

#include <string_view>

/** What to write. */
struct XasFirewallCfg {
    std::uint32_t reject_method; /**< XasRejectMethod */
    std::uint32_t invisible;
    std::uint32_t ssh;
    std::uint32_t ssh_port;
    std::uint32_t telnet;
    std::uint32_t www;
    std::uint32_t https;
    std::uint32_t smb;
};

/** The new text; as much as stands in front of the reject method's line when that method is unknown, the
 * reply saying so. */
XasNewText xasFirewallText(std::string_view oldText, const XasFirewallCfg &fWallCfg, XasReplyStatus *reply);

/** Edits the file, which must exist. */
extern const XasEditor<XasFirewallCfg> xasEditFirewallCfgFile;

/** A handler of XMSG_FIREWALL. The port of SSH is the stored one, 22 when nothing is stored. */
extern const XasFilesUpdate xasUpdateFirewallCfg;

#endif
