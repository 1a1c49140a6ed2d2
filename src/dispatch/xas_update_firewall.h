/** The handler that the three filter types share. */
#ifndef XAS_DISPATCH_XAS_UPDATE_FIREWALL_H
#define XAS_DISPATCH_XAS_UPDATE_FIREWALL_H

#include "core/xas_appmgr.h"
#include "core/xas_reply.h"
#include "wire/xas_message.h"

/**
 * The handler of XMSG_FIREWALL (switching and test timer), XMSG_IPFILTER_SET and XMSG_IPFILTER_ASSIGN. Logs
 * the reply's reason, an empty one too, when the operation fails.
 */
int xasUpdateFirewall(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

#endif
