#include "support/clock.h"

#include "core/wait.h"

#include <algorithm>
#include <poll.h>
#include <stdexcept>
#include <sys/wait.h>

using namespace std::chrono_literals;
using std::chrono::nanoseconds;

namespace {

struct Event {
    nanoseconds time;
    std::function<void()> happen;
};

struct ClockState {
    nanoseconds now{0};
    nanoseconds wallOffset{1000s};
    bool wallBroken = false;
    std::vector<Event> events; /**< by time, then in the order given */
    std::vector<std::chrono::milliseconds> waits;
};

ClockState *current = nullptr;

nanoseconds testMonotonic()
{
    return current->now;
}

int testWallTime(timeval *now)
{
    if (current->wallBroken)
        return -1;
    const auto time =
        std::chrono::duration_cast<std::chrono::microseconds>(current->now + current->wallOffset);
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    *now = {.tv_sec = static_cast<time_t>(seconds.count()),
            .tv_usec = static_cast<suseconds_t>((time - seconds).count())};
    return 0;
}

bool isReadable(int fd, int milliseconds)
{
    pollfd wake{.fd = fd, .events = POLLIN, .revents = 0};
    return ::poll(&wake, 1, milliseconds) > 0;
}

void testBlock(int fd, nanoseconds atMost)
{
    if (atMost < 0ns) {
        isReadable(fd, -1);
        return;
    }
    const nanoseconds begin = current->now;
    const nanoseconds end = begin + atMost;
    while (!isReadable(fd, 0) && !current->events.empty() && current->events.front().time <= end) {
        const Event event = std::move(current->events.front());
        current->events.erase(current->events.begin());
        current->now = std::max(current->now, event.time);
        event.happen();
    }
    if (!isReadable(fd, 0))
        current->now = end;
    current->waits.push_back(std::chrono::duration_cast<std::chrono::milliseconds>(current->now - begin));
}

} // namespace

XasTestClock::XasTestClock()
{
    if (current != nullptr)
        throw std::logic_error{"two clocks"};
    current = new ClockState;
    xasSetClock({.monotonic = testMonotonic, .wallTime = testWallTime, .block = testBlock});
}

XasTestClock::~XasTestClock()
{
    xasSetClock(xasSystemClock());
    delete current;
    current = nullptr;
}

void XasTestClock::at(std::chrono::milliseconds time, std::function<void()> event)
{
    const auto later = std::ranges::upper_bound(current->events, nanoseconds{time}, {}, &Event::time);
    current->events.insert(later, {time, std::move(event)});
}

std::chrono::milliseconds XasTestClock::now() const
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(current->now);
}

void XasTestClock::pass(std::chrono::milliseconds time)
{
    current->now += time;
}

void XasTestClock::moveWallClock(std::chrono::microseconds by)
{
    current->wallOffset += by;
}

void XasTestClock::breakWallClock()
{
    current->wallBroken = true;
}

const std::vector<std::chrono::milliseconds> &XasTestClock::waits() const
{
    return current->waits;
}

void xasAwaitExit(pid_t pid)
{
    siginfo_t info{};
    while (::waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
    }
}

void xasAwaitAnyExit()
{
    siginfo_t info{};
    while (::waitid(P_ALL, 0, &info, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
    }
}
