#include "core/wait.h"

#include "core/log.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <exception>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using std::chrono::nanoseconds;

constexpr nanoseconds WITHOUT_LIMIT{-1};

/** So many children are noted without asking for memory, which may be what is missing. */
constexpr std::size_t USUAL_CHILDREN = 64;

struct ExitedChild {
    pid_t pid;
    int status;
};

/** What the handlers share with the rest: lock-free flags and the descriptor that wakes the waiter. */
struct Noted {
    std::atomic<bool> terminate{false};
    std::atomic<bool> alarm{false};
    std::atomic<bool> child{false};
    int wakeFd = -1;
};
static_assert(std::atomic<bool>::is_always_lock_free);

Noted noted;

/** The rest of the unit's state, never touched by a handler. */
struct Waiting {
    XasClock clock = xasSystemClock();
    XasSignalService service;
    std::vector<ExitedChild> exited; /**< collected, not yet served, oldest first */
    std::vector<pid_t> awaited;      /**< children that somebody waits for */
    std::vector<ExitedChild> kept;   /**< their statuses */
    pid_t held = 0;                  /**< the child whose exit is not served yet */
    bool servingChild = false;
    bool servingAlarm = false;
};

Waiting &waiting()
{
    static Waiting state;
    return state;
}

void onSignal(int signal, siginfo_t * /*info*/, void * /*context*/)
{
    const int savedErrno = errno;
    if (signal == SIGTERM)
        noted.terminate = true;
    else if (signal == SIGALRM)
        noted.alarm = true;
    else if (signal == SIGCHLD)
        noted.child = true;
    if (signal != SIGHUP) {
        const std::uint64_t one = 1;
        [[maybe_unused]] const ssize_t written = ::write(noted.wakeFd, &one, sizeof one);
    }
    errno = savedErrno;
}

void installHandler(int signal, void (*handler)(int, siginfo_t *, void *))
{
    struct sigaction action {};
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART | SA_SIGINFO;
    if (handler != nullptr)
        action.sa_sigaction = handler;
    else
        action.sa_handler = SIG_IGN;
    ::sigaction(signal, &action, nullptr);
}

template <class T>
bool contains(const std::vector<T> &values, const T &value)
{
    return std::ranges::find(values, value) != values.end();
}

/** Takes every exited child off the kernel. Returns false when this process has no child at all. */
bool collectExitedChildren(Waiting &state)
{
    for (;;) {
        int status = 0;
        const pid_t pid = ::waitpid(-1, &status, WNOHANG);
        if (pid < 0 && errno == EINTR)
            continue;
        if (pid <= 0)
            return pid == 0;
        auto &list = contains(state.awaited, pid) ? state.kept : state.exited;
        list.push_back({pid, status});
    }
}

/** Marks a kind of signal as being served for the life of the object. */
class Serving {
  public:
    explicit Serving(bool &kind) : flag{kind} { flag = true; }
    ~Serving() { flag = false; }
    Serving(const Serving &) = delete;
    Serving &operator=(const Serving &) = delete;

  private:
    bool &flag;
};

/** Calls a service, which no exception leaves. */
template <class Call>
void serve(const Call &call) noexcept
{
    try {
        call();
    } catch (const std::exception &error) {
        xasLogError("%s\n", error.what());
    }
}

/** Serves the oldest exited child that is not held; false when there is none or one is being served. */
bool serveChild(Waiting &state)
{
    const auto next = std::ranges::find_if(state.exited, [&](const auto &e) { return e.pid != state.held; });
    if (state.servingChild || next == state.exited.end())
        return false;
    const ExitedChild child = *next;
    state.exited.erase(next);
    const Serving serving{state.servingChild};
    serve([&] { state.service.childExited(child.pid, child.status); });
    return true;
}

bool serveAlarm(Waiting &state)
{
    if (state.servingAlarm || !noted.alarm.exchange(false))
        return false;
    const Serving serving{state.servingAlarm};
    serve(state.service.alarm);
    return true;
}

/** Empties the wake-up descriptor; the flags are looked at afterwards, so that no note is lost. */
void drainWakeUps()
{
    std::uint64_t count = 0;
    [[maybe_unused]] const ssize_t got = ::read(noted.wakeFd, &count, sizeof count);
}

void servePending(Waiting &state)
{
    if (noted.wakeFd < 0)
        return;
    do {
        drainWakeUps();
        if (noted.terminate.exchange(false))
            serve(state.service.terminate);
        if (noted.child.exchange(false))
            collectExitedChildren(state);
    } while (serveChild(state) || serveAlarm(state));
}

nanoseconds systemMonotonic()
{
    return std::chrono::steady_clock::now().time_since_epoch();
}

int systemWallTime(timeval *now)
{
    return ::gettimeofday(now, nullptr);
}

void systemBlock(int fd, nanoseconds atMost)
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(atMost);
    const timespec limit{.tv_sec = static_cast<time_t>(seconds.count()),
                         .tv_nsec = static_cast<long>((atMost - seconds).count())};
    pollfd wake{.fd = fd, .events = POLLIN, .revents = 0};
    ::ppoll(&wake, 1, atMost < nanoseconds::zero() ? nullptr : &limit, nullptr);
}

bool takeKept(Waiting &state, pid_t pid, int &status)
{
    const auto found = std::ranges::find(state.kept, pid, &ExitedChild::pid);
    if (found == state.kept.end())
        return false;
    status = found->status;
    state.kept.erase(found);
    return true;
}

bool waitForChildBlocking(pid_t pid, int &status)
{
    pid_t got = 0;
    do
        got = ::waitpid(pid, &status, 0);
    while (got < 0 && errno == EINTR);
    return got == pid;
}

} // namespace

void xasSetClock(const XasClock &clock)
{
    waiting().clock = clock;
}

XasClock xasSystemClock()
{
    return {.monotonic = systemMonotonic, .wallTime = systemWallTime, .block = systemBlock};
}

void xasResetSignals()
{
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::signal(SIGCHLD, SIG_DFL);
}

int xasInstallSignals(XasSignalService service)
{
    Waiting &state = waiting();
    state.service = std::move(service);
    state.exited.reserve(USUAL_CHILDREN);
    state.kept.reserve(USUAL_CHILDREN);
    state.awaited.reserve(USUAL_CHILDREN);
    if (noted.wakeFd < 0)
        noted.wakeFd = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (noted.wakeFd < 0)
        return xasLogFailure("Error creating the descriptor that signals wake with\n");
    installHandler(SIGCHLD, onSignal);
    installHandler(SIGALRM, onSignal);
    installHandler(SIGHUP, onSignal);
    installHandler(SIGTERM, onSignal);
    installHandler(SIGPIPE, nullptr);
    return 0;
}

void xasServeCollected()
{
    while (serveChild(waiting())) {
    }
}

void xasWait(std::chrono::milliseconds duration)
{
    Waiting &state = waiting();
    const nanoseconds end = state.clock.monotonic() + duration;
    for (;;) {
        servePending(state);
        const nanoseconds left = end - state.clock.monotonic();
        if (left <= nanoseconds::zero())
            return;
        state.clock.block(noted.wakeFd, left);
    }
}

bool xasWaitForChild(pid_t pid, int &status)
{
    if (noted.wakeFd < 0)
        return waitForChildBlocking(pid, status);
    Waiting &state = waiting();
    state.awaited.push_back(pid);
    bool found = false;
    bool possible = true;
    while (!found && possible) {
        servePending(state);
        possible = collectExitedChildren(state);
        found = takeKept(state, pid, status);
        if (!found && possible)
            state.clock.block(noted.wakeFd, WITHOUT_LIMIT);
    }
    std::erase(state.awaited, pid);
    xasServeCollected();
    return found;
}

int xasWallTime(timeval &now)
{
    return waiting().clock.wallTime(&now);
}

XasHeldChild::XasHeldChild(pid_t pid) : previous{std::exchange(waiting().held, pid)} {}

XasHeldChild::~XasHeldChild()
{
    waiting().held = previous;
}
