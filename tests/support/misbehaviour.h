/** Processes that do what they should not, in a time that passes only in waits. */
#ifndef XAS_TEST_SUPPORT_MISBEHAVIOUR_H
#define XAS_TEST_SUPPORT_MISBEHAVIOUR_H

#include "support/supervision.h"

#include <csignal>

/** Ends a process; the others leave it running, or stop it until somebody lets it go on. */
inline bool xasEndsAProcess(int signal)
{
    switch (signal) {
    case SIGCHLD:
    case SIGCONT:
    case SIGURG:
    case SIGWINCH:
    case SIGSTOP:
    case SIGTSTP:
    case SIGTTIN:
    case SIGTTOU:
        return false;
    default:
        return true;
    }
}

/** Waits, really, until the process has ended, but no longer than that; it stays to be collected. */
inline void xasAwaitExitAtMost(pid_t pid, std::chrono::milliseconds atMost)
{
    const auto hasEnded = [pid] {
        siginfo_t info{};
        return ::waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT | WNOHANG) != 0 ||
               info.si_pid == pid;
    };
    xasEventually(hasEnded, atMost);
}

/** Time passes only in waits, but a process takes real time to die: the next stop gives it that, a short one
 * after SIGTERM, which it may ignore, and as long as it takes after SIGKILL. */
inline void xasLetDie(XasTestClock &clock, pid_t pid)
{
    if (pid <= 0)
        return;
    clock.at(clock.now() + 90ms, [pid] { xasAwaitExitAtMost(pid, 200ms); });
    clock.at(clock.now() + 900ms, [pid] { xasAwaitExitAtMost(pid, 5s); });
}

inline int xasStopAndAwait(XasTestClock &clock, XasDaemon &daemon)
{
    xasLetDie(clock, daemon.pid);
    return xasStopDaemon(&daemon);
}

#endif
