/**
 * Name servers: the resolver's list of bare addresses, one a line, and the DNS-precedence file, one
 * KEY=value text without a line feed.
 */
#ifndef XAS_CONFIG_DNS_H
#define XAS_CONFIG_DNS_H

#include "config/dns_message.h"
#include "files/update.h"

#include <string>

/** The list: dns1, dns2, dns3 in this order, unset ones left out. */
std::string xasDnsText(const XasDnsPayload &dns);

/** The precedence text. */
std::string xasDnsPrecText(const XasDnsPayload &dns);

/** The editors of the list, which must exist, and of the precedence file. */
extern const XasEditor<XasDnsPayload> xasEditDNSCfgFile;
extern const XasEditor<XasDnsPayload> xasEditDnsPrecCfgFile;

/** The handler of XMSG_DNS. */
extern const XasFilesUpdate xasUpdateDnsCfg;

#endif
