/** Time zone: the link that the C library reads local time by (tzfile(5)), to the file of the zone. */
#ifndef XAS_CONFIG_TIMEZONE_H
#define XAS_CONFIG_TIMEZONE_H

#include "config/timezone_message.h"
#include "files/update.h"

/** What it needs: the directory of the zone files, and the link. */
extern const XasFilesUpdate xasTimezoneFiles;

/** The handler of XMSG_TIMEZONE. The link changes in one step; a zone without a file leaves it as it is.
 * Failures are logged, the reply is left alone. */
[[nodiscard]] int xasUpdateTimezoneCfg(XasMessage *msg, const XasCfgFileList *cfgFiles,
                                       XasReplyStatus *reply);

#endif
