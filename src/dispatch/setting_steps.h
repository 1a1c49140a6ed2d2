/**
 * The steps that only some settings have, as their rows name them: script parameters before the stop, and
 * what follows from a change for other programs. Two facts are kept between messages, owned by this unit: the
 * bonding word of the last Ethernet message that was applied completely, and whether a syslog message came.
 */
#ifndef XAS_DISPATCH_SETTING_STEPS_H
#define XAS_DISPATCH_SETTING_STEPS_H

#include "dispatch/settings.h"

/** From now on the links are watched. */
void xasNoteEthArrived();

/** A logger that was started before this program would keep its files: it goes at the first message. */
void xasReplaceFirstLogger();

[[nodiscard]] bool xasSetEthScripts(const XasSettingWork &work);
[[nodiscard]] bool xasSetNatScript(const XasSettingWork &work);
[[nodiscard]] bool xasSetLinkScript(const XasSettingWork &work);

/** An authentication order that uses NIS starts the NIS client instead of its own application. */
std::string_view xasNisClientFor(const XasMessage &msg);

/** The routing daemons must see new interfaces: a running router is restarted. The bonding is remembered. */
bool xasFinishEth(const XasSettingWork &work, bool updated);

/** The system logger reads the host name anew. */
bool xasTellLogger(const XasSettingWork &work, bool updated);

/** New name servers: logger and agent read them anew, a running NTP daemon is restarted. */
bool xasTellResolverUsers(const XasSettingWork &work, bool updated);

/** Whether bonding was on in the last Ethernet message that was applied completely. */
[[nodiscard]] bool xasIsBondingOn();

#endif
