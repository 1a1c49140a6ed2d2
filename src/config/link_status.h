/** A port's link came up or went down: its interface file says whether the interface comes up at boot. */
#ifndef XAS_CONFIG_LINK_STATUS_H
#define XAS_CONFIG_LINK_STATUS_H

#include "files/update.h"

/** The files of the two ports. */
extern const XasFilesUpdate xasEthIfStatusFiles;

/** The handler of XMSG_NOTIFY. Edits the file "eth0" or "eth1", that of the port which changed. */
[[nodiscard]] int xasUpdateEthIfStatusCfg(XasMessage *msg, const XasCfgFileList *cfgFiles,
                                          XasReplyStatus *reply);

#endif
