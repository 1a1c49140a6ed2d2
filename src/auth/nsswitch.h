/**
 * The name-service switch (nsswitch.conf(5)): the lines of seven databases are replaced by the sources that
 * follow from the authentication order on disk; comments and all other lines stay. LDAP, Kerberos and TACACS+
 * are no sources here.
 */
#ifndef XAS_AUTH_NSSWITCH_H
#define XAS_AUTH_NSSWITCH_H

#include "auth/auth_order.h"
#include "files/update.h"

#include <string>
#include <string_view>

/** The sources of a database with their line feed: "nis files\n". Only the passwd database knows RADIUS (as
 * "files radius", even behind another "files") and SecurID. */
std::string xasNsswitchSources(const XasAuthOrder &order, bool isPasswd);

/** The whole new text. */
std::string xasNsswitchText(std::string_view oldText, const XasAuthOrder &order);

/** The reasons of failures; both name other files. */
extern const XasEditTexts XAS_NSSWITCH_TEXTS;

/** Rewrites the file, which must exist. Always returns 0; a failure is only in `reply`. An order that
 * cannot be read to its end leaves it as it is. */
[[nodiscard]] int xasEditNsswitchCfgFile(const char *cfgFileName, XasReplyStatus *reply);

/** The same as the edit of a row. */
inline constexpr XasFileEdit XAS_NSSWITCH_EDIT{
    [](const XasEditCall &call) { return xasEditNsswitchCfgFile(call.path, call.reply); },
    &XAS_NSSWITCH_TEXTS};

#endif
