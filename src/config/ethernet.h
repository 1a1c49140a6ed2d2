/**
 * The Ethernet settings rewrite every network file: gateway precedence, kernel parameters, module options,
 * the three interface files, the global network file and the alternate gateway.
 */
#ifndef XAS_CONFIG_ETHERNET_H
#define XAS_CONFIG_ETHERNET_H

#include "core/appmgr.h"
#include "core/reply.h"
#include "wire/message.h"

/**
 * The handler of XMSG_ETH. Needs the files "gatewayprec", "kernel", "modprobe", "bond0", "eth0" and "eth1";
 * "network" and "altgateway" are written when they are there. A failure rolls the earlier files back, but
 * one of the network file does not keep the alternate gateway from being written, and one of the alternate
 * gateway rolls back only its own file.
 */
int xasUpdateEthCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

#endif
