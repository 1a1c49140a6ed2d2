/**
 * The daemon's log: syslog, every text prefixed "<facility>/<level>-" with the short names of two fixed
 * tables. The daemon logs under its own facility ("sw"); the priority passed to syslog is the level whose tag
 * is printed. Texts keep the line feed their caller gives them, or lack one where the caller's text lacks it.
 * A control character in a value appears in octal ("\012"), so that no value can forge a line.
 */
#ifndef XAS_CORE_LOG_H
#define XAS_CORE_LOG_H

#include <string_view>
#include <syslog.h>

/** The short name of a syslog facility ("sw" for LOG_LOCAL6); empty for one outside the table. */
std::string_view xasFacilityTag(int facility);

/** The short name of a level ("err" for LOG_ERR); empty for level 0 and for levels outside the table. */
std::string_view xasLevelTag(int level);

/** Opens the log as "xasd", LOG_CONS, LOG_LOCAL6. What is logged earlier goes out with the library's
 * defaults. */
void xasOpenLog();

/** Logs at LOG_ERR, LOG_WARNING or LOG_INFO with the daemon's facility tag. */
[[gnu::format(printf, 1, 2)]] void xasLogError(const char *format, ...);
[[gnu::format(printf, 1, 2)]] void xasLogWarning(const char *format, ...);
[[gnu::format(printf, 1, 2)]] void xasLogInfo(const char *format, ...);

/** As xasLogError; gives 1, what a function that failed returns. */
[[gnu::format(printf, 1, 2)]] int xasLogFailure(const char *format, ...);

/** Logs at LOG_ERR, printing another facility's tag; the facility the line is filed under does not change. */
[[gnu::format(printf, 2, 3)]] void xasLogErrorTagged(int facility, const char *format, ...);

#endif
