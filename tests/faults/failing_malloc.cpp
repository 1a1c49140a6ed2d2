// Preloaded into the daemon, and not into what it starts: of the blocks of memory that are asked for between
// the arrival of a message and its acknowledgement, the one numbered XAS_FAILING_BLOCK is refused, once. The
// message is the one numbered XAS_FAILING_MESSAGE. Both count from 0. What was counted goes to the file
// XAS_BLOCKS_COUNTED.
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/msg.h>
#include <unistd.h>

extern "C" {
void *__libc_malloc(std::size_t);
void *__libc_calloc(std::size_t, std::size_t);
void *__libc_realloc(void *, std::size_t);
}

namespace {

struct State {
    long failing = -1;
    long message = -1;
    long messages = 0;
    long blocks = 0;
    pid_t daemon = 0;
    bool counting = false;
    const char *counted = nullptr;
    decltype(&::msgrcv) receive = nullptr; /**< the C library's own */
    decltype(&::msgsnd) send = nullptr;
};

State state;

long numberIn(const char *variable)
{
    const char *text = std::getenv(variable);
    return text != nullptr ? std::atol(text) : -1;
}

[[gnu::constructor]] void prepare()
{
    state.failing = numberIn("XAS_FAILING_BLOCK");
    state.message = numberIn("XAS_FAILING_MESSAGE");
    state.counted = std::getenv("XAS_BLOCKS_COUNTED");
    state.daemon = ::getpid();
    state.receive = reinterpret_cast<decltype(state.receive)>(::dlsym(RTLD_NEXT, "msgrcv"));
    state.send = reinterpret_cast<decltype(state.send)>(::dlsym(RTLD_NEXT, "msgsnd"));
    unsetenv("LD_PRELOAD");
}

/** Counts a block; true when it is to be refused. */
bool isRefused()
{
    if (!state.counting || ::getpid() != state.daemon || state.blocks++ != state.failing)
        return false;
    errno = ENOMEM;
    return true;
}

void stopCounting()
{
    if (!state.counting)
        return;
    state.counting = false;
    const int before = errno;
    std::array<char, 32> text{};
    const int size = std::snprintf(text.data(), text.size(), "%ld\n", state.blocks);
    const int fd = ::open(state.counted, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    [[maybe_unused]] const ssize_t written = ::write(fd, text.data(), static_cast<std::size_t>(size));
    ::close(fd);
    errno = before;
}

} // namespace

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): the C library's names are reserved ones
extern "C" {

void *malloc(std::size_t size)
{
    return isRefused() ? nullptr : __libc_malloc(size);
}

void *calloc(std::size_t count, std::size_t size)
{
    return isRefused() ? nullptr : __libc_calloc(count, size);
}

void *realloc(void *block, std::size_t size)
{
    return isRefused() ? nullptr : __libc_realloc(block, size);
}

ssize_t msgrcv(int queue, void *record, std::size_t size, long type, int flags)
{
    const ssize_t got = state.receive(queue, record, size, type, flags);
    const bool isSecondHalf = state.counting;
    if (got >= 0 && !isSecondHalf)
        state.counting = state.messages++ == state.message;
    else if (got < 0 && errno == ENOMSG)
        stopCounting();
    return got;
}

int msgsnd(int queue, const void *record, std::size_t size, int flags)
{
    const int result = state.send(queue, record, size, flags);
    stopCounting();
    return result;
}
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
