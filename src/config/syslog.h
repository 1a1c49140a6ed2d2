/**
 * The system logger's configuration (syslog.conf(5)): one local file for each of the appliance's log
 * categories, and the same categories once more for each remote server.
 */
#ifndef XAS_CONFIG_SYSLOG_H
#define XAS_CONFIG_SYSLOG_H

#include "config/syslog_message.h"
#include "files/update.h"

#include <string>
#include <string_view>

/** True when every level index names a level; the functions below take no others. */
[[nodiscard]] bool xasAreSyslogLevelsValid(const XasSyslogPayload &syslog);

/** The lines of the old text, those of our categories set to their file and level. Our categories without a
 * path and all forwarding rules are dropped; our categories are not appended where they are missing. */
std::string xasSyslogLocalText(std::string_view oldText, const XasSyslogPayload &syslog);

/** The forwarding rules, which stand behind the local ones: a block for each server that is given. */
std::string xasSyslogRemoteText(const XasSyslogPayload &syslog);

/** Edits the file, which must exist. */
extern const XasEditor<XasSyslogPayload> xasEditSyslogCfgFile;

/** The handler of XMSG_SYSLOG: this file and the rotation's sizes. An unknown level changes nothing. */
extern const XasFilesUpdate xasUpdateSyslogCfg;

#endif
