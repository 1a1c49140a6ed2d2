/**
 * The SNMP agent's file (snmpd.conf(5)): contact and location, SNMPv3 users, communities, trap destinations.
 * Lines that are not known are kept. It holds pass phrases and communities, so it is 0600.
 */
#ifndef XAS_AUTH_SNMP_H
#define XAS_AUTH_SNMP_H

#include "auth/snmp_message.h"
#include "files/update.h"

#include <string>
#include <string_view>

/** The new text of the file. */
std::string xasSnmpText(std::string_view oldText, const XasSnmpPayload &snmp);

/** Edits the file, which must exist. Returns 0, or 1 with the failure in `replyReason`. */
[[nodiscard]] int xasEditSNMPCfgFile(const char *cfgFileName, const XasSnmpPayload *snmp,
                                     XasReplyStatus *replyReason);

/** The handler of XMSG_SNMP. */
extern const XasFilesUpdate xasUpdateSNMPCfg;

#endif
