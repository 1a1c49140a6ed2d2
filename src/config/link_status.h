/** A port's link came up or went down: its interface file says whether the interface comes up at boot. */
#ifndef XAS_CONFIG_LINK_STATUS_H
#define XAS_CONFIG_LINK_STATUS_H

#include "core/appmgr.h"
#include "core/reply.h"
#include "wire/message.h"

/** The handler of XMSG_NOTIFY. Needs the file "eth0" or "eth1", that of the port which changed. */
int xasUpdateEthIfStatusCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

#endif
