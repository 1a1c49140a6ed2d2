/**
 * Name servers: the resolver's list of bare addresses, one a line, and the DNS-precedence file, one
 * KEY=value text without a line feed.
 */
#ifndef XAS_CONFIG_DNS_H
#define XAS_CONFIG_DNS_H

#include "config/dns_message.h"
#include "core/appmgr.h"
#include "core/reply.h"

#include <string>

/** The list: dns1, dns2, dns3 in this order, unset ones left out. */
std::string xasDnsText(const XasDnsPayload &dnsInfo);

/** The precedence text. */
std::string xasDnsPrecText(bool preferIPv4);

/** Rewrites the list, which must exist. Returns 0, or 1 with the failure in `reply`. */
int xasEditDNSCfgFile(const char *cfgFileName, const XasDnsPayload *dnsInfo, XasReplyStatus *reply);

/** Regenerates the precedence file. Returns 0, or 1 with the failure in `reply`. */
int xasEditDnsPrecCfgFile(const char *cfgFileName, bool preferIPv4, XasReplyStatus *reply);

/** The handler of XMSG_DNS. Needs the files "resolv" and "dnsprec". */
int xasUpdateDnsCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

#endif
