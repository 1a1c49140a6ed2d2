/**
 * Network time: the step file (one server a line; the clock is set from them before the daemon starts) and
 * the NTP daemon's configuration (ntp.conf(5)), of which the lines "server", "broadcastclient" and
 * "authenticate" are ours, commented out or not. A server line of the local clock, 127.127.1.0, is left
 * alone.
 */
#ifndef XAS_CONFIG_NTP_H
#define XAS_CONFIG_NTP_H

#include "config/ntp_message.h"
#include "core/appmgr.h"
#include "core/reply.h"

#include <string>
#include <string_view>

/** What to write. */
struct XasNtpInfo {
    std::uint32_t sync;                   /**< XasNtpSync */
    std::uint32_t poll;                   /**< XasNtpPolling */
    XasHostAddr servers[XAS_NTP_SERVERS]; /**< of XAS_NTP_ONE_SERVER the first alone, the rest all zero */
};

/** The step file: the servers given, one a line; the second and the third may be null. */
std::string xasNtpStepText(const XasHostAddr &server1, const XasHostAddr *server2,
                           const XasHostAddr *server3);

/**
 * The new text of the daemon's configuration. Polling puts all servers where the first server line was and
 * drops the later ones, commented lines counted; without polling server lines are commented out. The
 * broadcast client is switched on or commented out, "authenticate" becomes "disable auth". Nothing is
 * appended: a file without a server line gets none.
 */
std::string xasNtpCfgText(std::string_view oldText, const XasNtpInfo &ntpInfo);

/** The editors: each returns 0, or 1 with the failure in `reply`. The files must exist. */
int xasEditNTPStepFile(const char *cfgFileName, const XasHostAddr *server1, const XasHostAddr *server2,
                       const XasHostAddr *server3, XasReplyStatus *reply);
int xasEditNTPCfgFile(const char *cfgFileName, const XasNtpInfo *ntpInfo, XasReplyStatus *reply);

/** The handler of XMSG_NTP. Needs the files "stepTickers" and "ntp". */
int xasUpdateNtpCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

#endif
