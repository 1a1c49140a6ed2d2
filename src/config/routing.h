/**
 * Routing: the "ip route" lines of the static-route daemon's file and the RIP sections of the RIP daemon's
 * file, both in the daemons' command syntax (zebra.conf, ripd.conf). A failed write shows when the new file
 * is saved.
 */
#ifndef XAS_CONFIG_ROUTING_H
#define XAS_CONFIG_ROUTING_H

#include "config/routing_message.h"
#include "files/update.h"

#include <string>
#include <string_view>

/** Without the old static routes; with static routing on, all 64 routes at the end, unused ones included. */
std::string xasZebraText(std::string_view oldText, const XasRoutingPayload &routing);

/** Without the old RIP sections ("interface eth0", "interface eth1", "router rip", each up to its "!" line);
 * with RIP on, new ones in front of "line vty". A file without that line gets none. */
std::string xasRipdText(std::string_view oldText, const XasRoutingPayload &routing);

/** The editors. The files must exist. */
extern const XasEditor<XasRoutingPayload> xasEditZebraCfgFile;
extern const XasEditor<XasRoutingPayload> xasEditRipdCfgFile;

/** The handler of XMSG_ROUTING. */
extern const XasFilesUpdate xasUpdateRoutingCfg;

#endif
