/**
 * The Ethernet settings rewrite every network file: gateway precedence, kernel parameters, module options,
 * the three interface files, the global network file and the alternate gateway.
 */
#ifndef XAS_CONFIG_ETHERNET_H
#define XAS_CONFIG_ETHERNET_H

#include "files/update.h"

/** Its files; "network" and "altgateway" are written when they are there. */
extern const XasFilesUpdate xasEthFiles;

/** The handler of XMSG_ETH. A failure rolls the earlier files back, but one of the network file does not keep
 * the alternate gateway from being written, and one of the alternate gateway rolls back only its own file. */
[[nodiscard]] int xasUpdateEthCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

#endif
