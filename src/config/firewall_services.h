/**
 * The firewall script's settings, KEY="value" lines that a shell sources: which TCP and UDP services are open
 * to everybody, how the rest is answered, and whether pings are. The dispatcher gives XMSG_FIREWALL to the IP
 * filter; nothing calls this handler yet.
 */
#ifndef XAS_CONFIG_FIREWALL_SERVICES_H
#define XAS_CONFIG_FIREWALL_SERVICES_H

#include "config/firewall_message.h"
#include "core/appmgr.h"
#include "core/reply.h"
#include "files/editor.h"

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

/** The new text; as much as stands in front of the reject method's line when that method is unknown. */
XasNewText xasFirewallText(std::string_view oldText, const XasFirewallCfg &fWallCfg);

/** Edits the file at `cfgFileName`, which must exist. Returns 0, or 1 with the failure in `reply`. */
int xasEditFirewallCfgFile(const char *cfgFileName, const XasFirewallCfg *fWallCfg, XasReplyStatus *reply);

/**
 * A handler of XMSG_FIREWALL. Needs the file "firewall"; a missing one sets no reason. The port of SSH is the
 * stored one, 22 when nothing is stored.
 */
int xasUpdateFirewallCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

#endif
