/**
 * RADIUS: the server file of the PAM module, "host:port secret timeout" a line. It holds the shared secrets
 * and is 0600.
 */
#ifndef XAS_AUTH_RADIUS_H
#define XAS_AUTH_RADIUS_H

#include "auth/radius_message.h"
#include "core/appmgr.h"
#include "core/reply.h"

#include <string>
#include <string_view>

/**
 * The comment lines of the old text and, when enabled, the servers. The first is always written, the second
 * unless it is an empty name. The number of blanks differs by server and by kind of address.
 */
std::string xasRadiusText(std::string_view oldText, const XasRadiusPayload &cfgRadius);

/** Rewrites the file, which must exist. Returns 0, or 1 with the failure in `reply`. */
int xasEditRadiusCfgFile(const char *cfgFileName, const XasRadiusPayload *cfgRadius, XasReplyStatus *reply);

/** The handler of XMSG_RADIUS. Needs the files "radius", "nsswitch" and "system-auth". */
int xasUpdateRadiusCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

#endif
