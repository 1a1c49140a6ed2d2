/**
 * Network time: the step file (one server a line; the clock is set from them before the daemon starts) and
 * the NTP daemon's configuration (ntp.conf(5)), of which the lines "server", "broadcastclient" and
 * "authenticate" are ours, commented out or not. A server line of the local clock, 127.127.1.0, is left
 * alone.
 */
#ifndef XAS_CONFIG_NTP_H
#define XAS_CONFIG_NTP_H

#include "config/ntp_message.h"
#include "files/update.h"

#include <string>
#include <string_view>

/** The step file: the three servers that are polled, one a line; beside the single one two unset ones. */
std::string xasNtpStepText(const XasNtpPayload &ntp);

/** The new text of the daemon's configuration. Polling puts all servers where the first server line was and
 * drops the later ones, commented lines counted; without polling server lines are commented out. The
 * broadcast client is switched on or commented out, "authenticate" becomes "disable auth". Nothing is
 * appended: a file without a server line gets none. */
std::string xasNtpCfgText(std::string_view oldText, const XasNtpPayload &ntp);

/** The editors. The files must exist. */
extern const XasEditor<XasNtpPayload> xasEditNTPStepFile;
extern const XasEditor<XasNtpPayload> xasEditNTPCfgFile;

/** The handler of XMSG_NTP. */
extern const XasFilesUpdate xasUpdateNtpCfg;

#endif
