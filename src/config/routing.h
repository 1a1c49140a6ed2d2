/**
 * Routing: the "ip route" lines of the static-route daemon's file and the RIP sections of the RIP daemon's
 * file, both in the daemons' command syntax (zebra.conf, ripd.conf). A failed write shows when the new file
 * is saved.
 */
#ifndef XAS_CONFIG_ROUTING_H
#define XAS_CONFIG_ROUTING_H

#include "config/routing_message.h"
#include "core/appmgr.h"
#include "core/reply.h"

#include <string>
#include <string_view>

/** Without the old static routes; with static routing on, all 64 routes at the end, unused ones included. */
std::string xasZebraText(std::string_view oldText, const XasRoutingPayload &routerCfg);

/**
 * Without the old RIP sections ("interface eth0", "interface eth1", "router rip", each up to its "!" line);
 * with RIP on, new ones in front of "line vty". A file without that line gets none.
 */
std::string xasRipdText(std::string_view oldText, const XasRoutingPayload &routerCfg);

/** The editors: each returns 0, or 1 with the failure in `reply`. The files must exist. */
int xasEditZebraCfgFile(const char *cfgFileName, const XasRoutingPayload *routerCfg, XasReplyStatus *reply);
int xasEditRipdCfgFile(const char *cfgFileName, const XasRoutingPayload *routerCfg, XasReplyStatus *reply);

/**
 * The handler of XMSG_ROUTING. Needs the files "zebra" and "ripd"; one is edited although the other failed,
 * and nothing is rolled back. A missing file sets no reason.
 */
int xasUpdateRoutingCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

#endif
