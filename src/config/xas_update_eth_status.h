/** A port's link came up or went down: its interface file says whether the interface comes up at boot. */
#ifndef XAS_CONFIG_XAS_UPDATE_ETH_STATUS_H
#define XAS_CONFIG_XAS_UPDATE_ETH_STATUS_H

#include "core/xas_appmgr.h"
#include "core/xas_reply.h"
#include "wire/xas_message.h"

/** The handler of XMSG_NOTIFY. Needs the file "eth0" or "eth1", that of the port which changed. */
int xasUpdateEthIfStatusCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

#endif
