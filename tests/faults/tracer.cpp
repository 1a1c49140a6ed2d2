#include "faults/tracer.h"

#include "core/child.h"
#include "support/daemon.h"

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <fstream>
#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/msg.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <tuple>

namespace {

constexpr int OPTIONS = PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK |
                        PTRACE_O_TRACECLONE | PTRACE_O_TRACEEXEC | PTRACE_O_EXITKILL;
constexpr int CALL_STOP = SIGTRAP | 0x80;
constexpr int EVENT_SHIFT = 16;

/** A run that takes longer has come to a standstill. */
constexpr int SECONDS_MAX = 10;

std::string daemonPath;

void setLimit(int seconds)
{
    struct sigaction action {};
    action.sa_handler = [](int) {
    };
    ::sigaction(SIGALRM, &action, nullptr);
    ::alarm(static_cast<unsigned>(seconds));
}

[[noreturn]] void executeDaemon(int go, const std::vector<std::string> &environment)
{
    char mark = 0;
    if (::read(go, &mark, 1) != 1)
        ::_exit(126);
    ::setsid();
    ::dup2(::open("/dev/null", O_RDWR), STDIN_FILENO);
    const int errors = ::open("/errors", O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::dup2(errors, STDOUT_FILENO);
    ::dup2(errors, STDERR_FILENO);
    ::close_range(STDERR_FILENO + 1, ~0U, 0);
    for (const std::string &variable : environment)
        ::putenv(const_cast<char *>(variable.c_str())); // it lives until the program is executed
    const char *program = daemonPath.empty() ? xasDaemonPath() : daemonPath.c_str();
    ::execl(program, program, "-f", "-c", "/r58/sysapp.xml", nullptr);
    ::_exit(126);
}

void resume(pid_t pid, int signal = 0)
{
    ::ptrace(PTRACE_SYSCALL, pid, nullptr, signal); // a process that was killed meanwhile tells so itself
}

bool isClock(long number)
{
    return number == SYS_clock_gettime || number == SYS_gettimeofday || number == SYS_time;
}

/** True when a signal waits to be taken by the process. */
bool hasPendingSignal(pid_t pid)
{
    std::ifstream file{"/proc/" + std::to_string(pid) + "/status"};
    for (std::string line; std::getline(file, line);) {
        const bool isPending = line.starts_with("SigPnd:") || line.starts_with("ShdPnd:");
        if (isPending && line.find_first_not_of("0\t", 7) != std::string::npos)
            return true;
    }
    return false;
}

/** The links of both ports are up. */
void plugIn(pid_t pid, std::uint64_t request)
{
    const auto data = xasReadValue<std::uint64_t>(pid, request + offsetof(ifreq, ifr_data));
    constexpr std::uint32_t UP = 1;
    xasWriteMemory(pid, data + offsetof(ethtool_value, data), &UP, sizeof UP);
}

} // namespace

void xasSetFaultsDaemon(const std::string &path)
{
    daemonPath = path;
}

XasTracer::XasTracer(XasTracedConversation &who, XasFaultsLog &where, std::vector<std::string> environment)
    : conversation{who}, log{where}
{
    std::array<int, 2> go{};
    if (::pipe2(go.data(), O_CLOEXEC) != 0)
        throw std::runtime_error{"no pipe"};
    pid = ::fork();
    if (pid == 0)
        executeDaemon(go[0], environment);
    const bool isSeized = ::ptrace(PTRACE_SEIZE, pid, nullptr, OPTIONS) == 0;
    processes[pid].isKnown = true;
    const bool isBegun = ::write(go[1], "!", 1) == 1;
    ::close(go[0]);
    ::close(go[1]);
    if (!isSeized || !isBegun)
        throw std::runtime_error{"cannot trace the daemon"};
    // Stops at calls from its execution on.
    ::ptrace(PTRACE_INTERRUPT, pid, nullptr, nullptr);
    conversation.send();
}

void XasTracer::follow()
{
    setLimit(SECONDS_MAX);
    while (!over && !status && !hung) {
        int waitStatus = 0;
        const pid_t stopped = ::waitpid(-1, &waitStatus, __WALL);
        hung = stopped < 0;
        if (stopped > 0 && WIFSTOPPED(waitStatus))
            onStopOrDeath(stopped, waitStatus);
        else if (stopped == pid)
            status = waitStatus;
        else
            forget(stopped);
    }
    ::alarm(0);
}

void XasTracer::forget(pid_t child)
{
    processes.erase(child);
    if (processes.size() != 1 || !isWaitPut)
        return;
    isWaitPut = false;
    beginWait(processes.begin()->second);
    resume(pid);
}

void XasTracer::onFork(pid_t child)
{
    Process &process = processes[child];
    process.isKnown = true;
    process.number = counting ? ++children : 0;
}

/** Children begin when the daemon waits: the order of the calls is then always the same. */
void XasTracer::letChildrenBegin()
{
    for (auto &[child, process] : processes) {
        const bool begins = child != pid && process.isKnown && !process.hasBegun;
        process.hasBegun = process.hasBegun || begins;
        if (begins && process.isStopped)
            resume(child);
    }
}

void XasTracer::onStopOrDeath(pid_t stopped, int waitStatus)
{
    try {
        onStop(stopped, waitStatus);
    } catch (const XasTraceeGone &) {
        processes[stopped].isStopped = false; // someone killed it: it is waited for next
    }
}

void XasTracer::onStop(pid_t stopped, int waitStatus)
{
    Process &process = processes[stopped];
    const int signal = WSTOPSIG(waitStatus);
    const int event = waitStatus >> EVENT_SHIFT;
    if (event == PTRACE_EVENT_EXEC && stopped != pid) {
        ::ptrace(PTRACE_DETACH, stopped, nullptr, nullptr);
        return forget(stopped);
    }
    if (event == PTRACE_EVENT_FORK || event == PTRACE_EVENT_VFORK || event == PTRACE_EVENT_CLONE) {
        unsigned long child = 0;
        ::ptrace(PTRACE_GETEVENTMSG, stopped, nullptr, &child);
        onFork(static_cast<pid_t>(child));
    } else if (event == PTRACE_EVENT_EXEC) {
        xasHideKernelClock(stopped);
        executed = true;
    } else if (event == 0 && signal == CALL_STOP && executed) {
        onCall(stopped, process);
    } else if (event == 0 && signal != CALL_STOP) {
        return resume(stopped, signal);
    }
    process.isStopped = true;
    const bool isHeld = stopped == pid ? over || isWaitPut : !process.hasBegun;
    if (!isHeld)
        resume(stopped);
}

void XasTracer::onCall(pid_t stopped, Process &process)
{
    const XasCallStop stop = xasCallStopOf(stopped);
    if (!stop.isEntry)
        return onExit(stopped, process, stop.result);
    process.call = stop.number;
    process.words = stop.words;
    process.behind = Behind::nothing;
    process.noted.reset();
    onEntry(stopped, process);
}

void XasTracer::noteEntry(pid_t stopped, Process &process)
{
    XasCall call{
        .process = process.number, .index = process.calls++, .number = process.call, .path = {}, .to = {}};
    std::tie(call.path, call.to) = xasPathsOf(stopped, process.call, process.words);
    process.noted = conversation.callCount();
    if (const auto error = conversation.call(pid, stopped, std::move(call)))
        fail(stopped, process, *error);
}

void XasTracer::fail(pid_t stopped, Process &process, int error)
{
    process.behind = error == 0 ? Behind::death : Behind::fail;
    process.result = -error;
    if (error == 0)
        return;
    if (process.call == SYS_brk) {
        process.behind = Behind::nothing;
        return xasSetFirstWord(stopped, 0); // it gives the end of the heap as it is
    }
    if (process.call != SYS_close) // which closes all the same
        xasSkipCall(stopped);
}

void XasTracer::onEntry(pid_t stopped, Process &process)
{
    const bool isDaemon = stopped == pid;
    if (process.call == SYS_sendto || process.call == SYS_connect)
        log.drain();
    if (isClock(process.call)) {
        process.behind = Behind::time;
        return;
    }
    if (isDaemon && process.call == SYS_msgrcv && counting && !conversation.isAnswered())
        counting = false;
    if (counting && (isDaemon || process.number != 0))
        noteEntry(stopped, process);
    if (process.behind != Behind::nothing)
        return;
    const bool waitsForChild = process.call == SYS_wait4 && (process.words[2] & WNOHANG) == 0;
    if (isDaemon && (process.call == SYS_ppoll || waitsForChild))
        letChildrenBegin();
    if (isDaemon && process.call == SYS_ppoll && process.words[2] != 0) {
        isWaitPut = processes.size() > 1; // until its children have come to their programs
        if (!isWaitPut)
            beginWait(process);
    }
    if (process.call == SYS_ioctl && process.words[1] == SIOCETHTOOL)
        process.behind = Behind::link;
}

void XasTracer::beginWait(Process &process)
{
    hung = !xasAwaitQuiet(pid);
    const auto limit = xasReadValue<timespec>(pid, process.words[2]);
    constexpr timespec NONE{};
    xasWriteMemory(pid, process.words[2], &NONE, sizeof NONE);
    process.behind = Behind::wait;
    // A signal would have ended the wait at its beginning.
    process.wait = hasPendingSignal(pid)
                       ? std::chrono::nanoseconds{0}
                       : std::chrono::seconds{limit.tv_sec} + std::chrono::nanoseconds{limit.tv_nsec};
}

void XasTracer::tellTime(const Process &process)
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(now);
    const auto rest = (now - seconds).count();
    if (process.call == SYS_gettimeofday) {
        const timeval time{.tv_sec = seconds.count(), .tv_usec = rest / 1000};
        xasWriteMemory(pid, process.words[0], &time, sizeof time);
    } else if (process.call == SYS_clock_gettime) {
        const timespec time{.tv_sec = seconds.count(), .tv_nsec = rest};
        xasWriteMemory(pid, process.words[1], &time, sizeof time);
    }
}

void XasTracer::onExit(pid_t stopped, Process &process, std::int64_t result)
{
    if (process.behind == Behind::fail) {
        result = process.result;
        xasSetResult(stopped, result);
    } else if (process.behind == Behind::time && stopped == pid) {
        tellTime(process);
    } else if (process.behind == Behind::wait && result == 0) {
        now += process.wait;
    } else if (process.behind == Behind::link) {
        plugIn(stopped, process.words[2]);
        xasSetResult(stopped, 0);
    }
    if (process.noted)
        conversation.result(*process.noted, result);
    if (stopped == pid && process.call == SYS_kill)
        xasAwaitQuiet(pid); // whom it was sent to
    if (stopped == pid)
        onQueue(process, result);
}

void XasTracer::onQueue(const Process &process, std::int64_t result)
{
    if (process.call == SYS_msgrcv && result >= 0 && !arrived) {
        arrived = true;
        counting = conversation.isLast();
    } else if ((process.call == SYS_msgrcv && result == -ENOMSG && arrived) ||
               (process.call == SYS_msgsnd && result == 0 && arrived)) {
        finish();
    }
}

void XasTracer::finish()
{
    counting = false;
    arrived = false;
    over = !conversation.finish();
    if (!over)
        conversation.send();
}
