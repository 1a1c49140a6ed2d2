/**
 * Time that passes only when the daemon waits. What happens during a wait is put on the clock beforehand; a
 * wait without limit (for a child) really waits.
 */
#ifndef XAS_TEST_SUPPORT_CLOCK_H
#define XAS_TEST_SUPPORT_CLOCK_H

#include <chrono>
#include <functional>
#include <sys/types.h>
#include <vector>

/** In force while it lives; one at a time. Starts at 0, its wall time at 1000 s. */
class XasTestClock {
  public:
    XasTestClock();
    ~XasTestClock();
    XasTestClock(const XasTestClock &) = delete;
    XasTestClock &operator=(const XasTestClock &) = delete;

    /** Does `event` when a wait reaches `time`. Events of the same time happen in the order given. */
    void at(std::chrono::milliseconds time, std::function<void()> event);

    /** The time that has passed. */
    [[nodiscard]] std::chrono::milliseconds now() const;

    /** Lets time pass outside a wait; events on the way do not happen. */
    void pass(std::chrono::milliseconds time);

    /** Moves the wall clock alone, backwards too. */
    void moveWallClock(std::chrono::microseconds by);

    /** The wall time cannot be read from now on. */
    void breakWallClock();

    /** The waits so far: how long each lasted. A wait cut by a signal counts with what had passed. */
    [[nodiscard]] const std::vector<std::chrono::milliseconds> &waits() const;
};

/** Waits, really, until `pid` has ended; it stays to be collected. */
void xasAwaitExit(pid_t pid);

/** Waits, really, until any child has ended; it stays to be collected. */
void xasAwaitAnyExit();

#endif
