/**
 * RADIUS: the server file of the PAM module, "host:port secret timeout" a line. It holds the shared secrets
 * and is 0600.
 */
#ifndef XAS_AUTH_RADIUS_H
#define XAS_AUTH_RADIUS_H

#include "auth/radius_message.h"
#include "files/update.h"

#include <string>
#include <string_view>

/** The comment lines of the old text and, when enabled, the servers. The first is always written, the second
 * unless it is an empty name. The number of blanks differs by server and by kind of address. */
std::string xasRadiusText(std::string_view oldText, const XasRadiusPayload &radius);

/** Rewrites the file, which must exist. */
extern const XasEditor<XasRadiusPayload> xasEditRadiusCfgFile;

/** The handler of XMSG_RADIUS. */
extern const XasFilesUpdate xasUpdateRadiusCfg;

#endif
