/** The steps of the daemon's start, in the order in which main() takes them. */
#ifndef XAS_CORE_STARTUP_H
#define XAS_CORE_STARTUP_H

#include "core/appmgr.h"

#include <optional>
#include <string>

/** What the command line says. */
struct XasOptions {
    std::string listPath = "/r58/sysapp.xml"; /**< the application list */
    bool asDaemon = true;                     /**< detach into the background */
    bool exitAtOnce = false;                  /**< nothing more to do; the exit status is 0 */
};

/** Reads the command line: "-c file", "-f", "-h", "-v" and their long forms; prints the usage or, for an
 * unknown option, says so on standard output and goes on. Reading stops at "-h" and "-v". */
XasOptions xasParseOptions(int argc, char *argv[]);

/** Loads the application list. Returns 0, or non-zero after telling why on standard error. */
[[nodiscard]] int xasOpenAppList(const std::string &path, XasAppList &apps);

/** Goes into the background: a new process in a session of its own, in "/", with umask 0 and the standard
 * streams left open. Returns in the new process; elsewhere gives the status to exit with. */
std::optional<int> xasDetach();

/** Runs "/usr/bin/xas_iptables.sh resetAll"; its result does not matter. */
void xasResetPacketFilter();

/** Makes "/etc/zel" and "/usr/etc" directories; something else that stands there is removed. */
void xasMakeWorkDirs();

/** Attaches to the message queues, trying every second until they are there. */
void xasAwaitMsgQueues();

/** SIGTERM: releases the applications and kills the whole process group, this process included. */
void xasTerminate(XasAppList &apps);

#endif
