/** The handler of XMSG_AUTH: the authentication order, and the two files derived from it. */
#ifndef XAS_AUTH_UPDATE_AUTH_H
#define XAS_AUTH_UPDATE_AUTH_H

#include "core/appmgr.h"
#include "core/reply.h"
#include "wire/message.h"

/**
 * Needs the files "authentication", "system-auth" and "nsswitch". Positions that do not exist become 0 in the
 * message itself. The derived files are made from the order on disk, after a failure the previous one.
 */
int xasUpdateAuthenOrderCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

#endif
