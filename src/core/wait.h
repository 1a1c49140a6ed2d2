/**
 * The only place where the daemon waits. Signal handlers note their signal and wake the waiter; every wait
 * serves what is pending:
 *  - SIGTERM at once, wherever the daemon waits;
 *  - SIGALRM, the periodic maintenance;
 *  - SIGCHLD: exited children are collected. A child that somebody waits for keeps its status for the waiter,
 *    every other one is handed to the service in the order of collection.
 * No wait returns with an exit collected and not served: what it is followed by never meets a record that a
 * dead daemon still has. A kind of signal that is being served is not entered again until it is done; another
 * kind may be served meanwhile, as with signals masked in their own handlers. SIGHUP is accepted and ignored.
 *
 * Time comes from a clock that tests replace. One instance, owned by this unit; single-threaded.
 */
#ifndef XAS_CORE_WAIT_H
#define XAS_CORE_WAIT_H

#include <chrono>
#include <functional>
#include <sys/time.h>
#include <sys/types.h>

/** What is done for each kind of signal. */
struct XasSignalService {
    std::function<void()> terminate;
    std::function<void()> alarm;
    std::function<void(pid_t pid, int status)> childExited; /**< `status` as waitpid gives it */
};

/** Where time comes from. */
struct XasClock {
    std::chrono::nanoseconds (*monotonic)();
    int (*wallTime)(timeval *now); /**< as gettimeofday */
    /** Blocks until `fd` is readable or the time has passed; a negative time means without limit. */
    void (*block)(int fd, std::chrono::nanoseconds atMost);
};

/** Replaces the clock; the system's own is in force at start. */
void xasSetClock(const XasClock &clock);

/** The system's own clock. */
XasClock xasSystemClock();

/** Undoes what the starter left: no signal stays blocked, and children can be waited for. */
void xasResetSignals();

/** Installs the handlers with sigaction (empty mask, SA_RESTART | SA_SIGINFO): SIGCHLD, SIGALRM, SIGHUP and
 * SIGTERM, and ignores SIGPIPE. Before this call waits only wait, and a child is waited for by blocking.
 * Returns 0, or 1 after logging when nothing could wake a waiter. */
[[nodiscard]] int xasInstallSignals(XasSignalService service);

/** Serves the exits that are collected already, as every wait does before it returns. */
void xasServeCollected();

/** Waits for `duration`, serving signals; what is pending when it begins or ends is served too. */
void xasWait(std::chrono::milliseconds duration);

/** Waits for a child of this process, serving signals. Returns true and its wait status; false when it is not
 * this process's to wait for (any more). */
[[nodiscard]] bool xasWaitForChild(pid_t pid, int &status);

/** The time of day; non-zero when it cannot be had. */
[[nodiscard]] int xasWallTime(timeval &now);

/** Keeps the exit of `pid` from being served while this object lives: a new daemon's record must hold its pid
 * before its death can be matched. */
class XasHeldChild {
  public:
    explicit XasHeldChild(pid_t pid);
    ~XasHeldChild();
    XasHeldChild(const XasHeldChild &) = delete;
    XasHeldChild &operator=(const XasHeldChild &) = delete;

  private:
    pid_t previous;
};

#endif
