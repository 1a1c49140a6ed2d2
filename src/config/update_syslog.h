/** Logging: the system logger's configuration and the sizes in the rotation's. */
#ifndef XAS_CONFIG_UPDATE_SYSLOG_H
#define XAS_CONFIG_UPDATE_SYSLOG_H

#include "core/appmgr.h"
#include "core/reply.h"
#include "wire/message.h"

/**
 * The handler of XMSG_SYSLOG. Needs the files "syslog" and "logrotate"; one is edited although the other
 * failed, and nothing is rolled back. Neither a missing file nor an unknown level sets a reason.
 */
int xasUpdateSyslogCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

#endif
