/**
 * The daemons of applications: started, watched over and stopped. Every wait goes through xas_wait, so
 * signals are served meanwhile.
 *
 * A daemon is never started (pid 0), started (pid > 0, running 1), ended (pid -1, running 0) or stopping. A
 * daemon that ends while it is not being stopped is started again a second later, at most ten times between
 * two resets of its restart counter (hourly, by the log maintenance). A server whose command line contains
 * "nmbd" or "smbd" puts itself in the background: its first process ends, and the pid file names the one that
 * stays. The daemons of the application "syslog" start and die without a log line, so that the logger does
 * not log about itself.
 */
#ifndef XAS_CORE_DAEMON_H
#define XAS_CORE_DAEMON_H

#include "core/appmgr.h"

/** Starts a daemon of `app`. Returns the new process id, also stored in `pid`; or -1. The first 200 ms are
 * waited for, so that the child can execute its program. */
pid_t xasStartDaemon(XasDaemon *daemon, const XasApp &app);

/** Stops a daemon: SIGTERM, 100 ms later SIGKILL, and another second. Returns 0 when it is gone, 1 when it
 * could not be stopped or had no valid pid. */
[[nodiscard]] int xasStopDaemon(XasDaemon *daemon);

/** What is done for an exited child: finds its daemon and restarts it as told above. Others are ignored. */
void xasReapChild(XasAppList &apps, pid_t pid, int status);

/** Sets the restart counter of every daemon to 0. */
void xasResetRestarts(XasAppList &apps);

#endif
