#include "world/processes.h"

#include "support/fuzz.h"

#include <array>
#include <cerrno>
#include <csetjmp>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <deque>
#include <dlfcn.h>
#include <map>
#include <new>
#include <sched.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct FakeProcess {
    bool ignoresTerm = false;
};

struct Ended {
    pid_t pid;
    int status;
};

struct Processes {
    XasExecute execute;
    std::map<pid_t, FakeProcess> living;
    std::deque<Ended> zombies;
    char *stackBase = nullptr;
    pid_t next = 10000;
};

Processes processes;
bool isFake = false;
volatile bool inChild = false;
volatile pid_t forked = 0;

/** Where fork() is returned to, and the stack above that place. */
struct Saved {
    jmp_buf place;
    char *low = nullptr;
    std::size_t size = 0;
    std::array<char, std::size_t{1} << 20> stack;
};
Saved saved;

/** What is allocated in a child lies here until the next one. */
struct Arena {
    alignas(16) std::array<char, std::size_t{1} << 18> bytes;
    std::size_t used = 0;
};
Arena arena;

bool isInArena(const void *block)
{
    const char *at = static_cast<const char *>(block);
    return at >= arena.bytes.data() && at < arena.bytes.data() + arena.bytes.size();
}

template <class Function>
Function *real(Function * /*own*/, const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

#define XAS_PLAIN __attribute__((no_sanitize("address"), no_sanitize("undefined"), noinline))

XAS_PLAIN void copyBytes(char *to, const char *from, std::size_t count)
{
    asm volatile("rep movsb" : "+D"(to), "+S"(from), "+c"(count)::"memory");
}

[[noreturn]] XAS_PLAIN void putStackBack()
{
    inChild = false;
    copyBytes(saved.low, saved.stack.data(), saved.size);
    ::longjmp(saved.place, 1);
}

/** Goes below the saved part of the stack before it is put back. */
[[noreturn]] XAS_PLAIN void returnToFork()
{
    constexpr std::ptrdiff_t BELOW = 8192;
    const std::ptrdiff_t above = static_cast<char *>(__builtin_frame_address(0)) - (saved.low - BELOW);
    auto *const room =
        static_cast<volatile char *>(__builtin_alloca(above > 0 ? static_cast<std::size_t>(above) : 1));
    room[0] = 0;
    putStackBack();
}

/** The child is over: it executed a program, given by its words, or ended by itself. */
[[noreturn]] void endChild(char *const *program, int status)
{
    {
        const XasOwnWork own;
        XasFate fate = status;
        const pid_t pid = forked;
        processes.living[pid] = {};
        if (program != nullptr) {
            std::vector<std::string> words;
            for (; *program != nullptr; ++program)
                words.emplace_back(*program);
            fate = processes.execute(pid, words);
        }
        if (fate)
            xasEndProcess(pid, *fate);
    }
    returnToFork();
}

} // namespace

void xasSetStackBase(void *base)
{
    processes.stackBase = static_cast<char *>(base);
}

void xasFakeProcesses(XasExecute execute)
{
    processes.execute = std::move(execute);
    processes.living.clear();
    processes.zombies.clear();
    isFake = true;
}

void xasEndProcess(pid_t pid, int status)
{
    if (processes.living.erase(pid) == 0)
        return;
    processes.zombies.push_back({pid, status});
    ::raise(SIGCHLD);
}

bool xasIsLiving(pid_t pid)
{
    return processes.living.contains(pid);
}

std::vector<pid_t> xasLivingProcesses()
{
    std::vector<pid_t> pids;
    for (const auto &[pid, process] : processes.living)
        pids.push_back(pid);
    return pids;
}

std::size_t xasZombies()
{
    return processes.zombies.size();
}

void xasIgnoreNextTerm(pid_t pid)
{
    const auto found = processes.living.find(pid);
    if (found != processes.living.end())
        found->second.ignoresTerm = true;
}

void *operator new(std::size_t size)
{
    if (!inChild || xasOwnWork > 0) {
        if (void *const block = std::malloc(size))
            return block;
        throw std::bad_alloc{};
    }
    const std::size_t at = arena.used;
    arena.used += (size + 15) / 16 * 16;
    if (arena.used > arena.bytes.size())
        std::abort();
    return arena.bytes.data() + at;
}

void *operator new(std::size_t size, const std::nothrow_t & /*tag*/) noexcept
{
    return std::malloc(size);
}

void *operator new[](std::size_t size, const std::nothrow_t & /*tag*/) noexcept
{
    return std::malloc(size);
}

void *operator new[](std::size_t size)
{
    return operator new(size);
}

void operator delete(void *block) noexcept
{
    if (!isInArena(block))
        std::free(block);
}

void operator delete[](void *block) noexcept
{
    operator delete(block);
}

void operator delete(void *block, std::size_t /*size*/) noexcept
{
    operator delete(block);
}

void operator delete[](void *block, std::size_t /*size*/) noexcept
{
    operator delete(block);
}

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): the C library's names are reserved ones
extern "C" {

XAS_PLAIN pid_t fork() noexcept
{
    if (!isFake)
        return real(fork, "fork")();
    forked = processes.next++;
    if (::setjmp(saved.place) != 0)
        return forked;
    constexpr std::size_t BELOW = 1024; // this function's own part of the stack
    saved.low = static_cast<char *>(__builtin_frame_address(0)) - BELOW;
    saved.size = static_cast<std::size_t>(processes.stackBase - saved.low);
    if (processes.stackBase < saved.low || saved.size > saved.stack.size())
        std::abort();
    copyBytes(saved.stack.data(), saved.low, saved.size);
    arena.used = 0;
    inChild = true;
    return 0;
}

int execvp(const char *program, char *const *words) noexcept
{
    if (!inChild)
        return real(execvp, "execvp")(program, words);
    endChild(words, 0);
}

int execl(const char *program, const char *first, ...) noexcept
{
    std::array<char *, 16> words{};
    va_list arguments;
    va_start(arguments, first);
    words[0] = const_cast<char *>(first);
    for (std::size_t i = 1; i + 1 < words.size() && words[i - 1] != nullptr; ++i)
        words[i] = va_arg(arguments, char *);
    va_end(arguments);
    if (!inChild)
        return ::execv(program, words.data());
    endChild(words.data(), 0);
}

void _exit(int status)
{
    if (inChild)
        endChild(nullptr, (status & 0xFF) << 8);
    ::syscall(SYS_exit_group, status);
    std::abort();
}

pid_t waitpid(pid_t pid, int *status, int options)
{
    if (!isFake)
        return real(waitpid, "waitpid")(pid, status, options);
    for (auto zombie = processes.zombies.begin(); zombie != processes.zombies.end(); ++zombie) {
        if (pid != -1 && pid != zombie->pid)
            continue;
        const Ended ended = *zombie;
        processes.zombies.erase(zombie);
        if (status != nullptr)
            *status = ended.status;
        return ended.pid;
    }
    xasFuzzRequire((options & WNOHANG) != 0, "nobody waits for a process by blocking");
    if (processes.living.empty())
        errno = ECHILD;
    return processes.living.empty() ? -1 : 0;
}

int kill(pid_t pid, int signal) noexcept
{
    if (!isFake)
        return real(kill, "kill")(pid, signal);
    xasFuzzRequire(pid >= 10000 && pid < processes.next, "a signal goes to a process of ours",
                   std::to_string(pid));
    for (const Ended &zombie : processes.zombies) {
        if (zombie.pid == pid)
            return 0;
    }
    const auto found = processes.living.find(pid);
    if (found == processes.living.end()) {
        errno = ESRCH;
        return -1;
    }
    if (signal == SIGTERM && found->second.ignoresTerm)
        found->second.ignoresTerm = false;
    else
        xasEndProcess(pid, signal);
    return 0;
}

int sched_getparam(pid_t pid, sched_param *parameters) noexcept
{
    if (!isFake)
        return real(sched_getparam, "sched_getparam")(pid, parameters);
    bool isThere = processes.living.contains(pid);
    for (const Ended &zombie : processes.zombies)
        isThere = isThere || zombie.pid == pid;
    if (!isThere)
        errno = ESRCH;
    return isThere ? 0 : -1;
}

sighandler_t signal(int number, sighandler_t handler) noexcept
{
    return inChild ? SIG_DFL : real(signal, "signal")(number, handler);
}

mode_t umask(mode_t mask) noexcept
{
    return inChild ? mask : real(umask, "umask")(mask);
}
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
