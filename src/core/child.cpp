#include "core/child.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <linux/close_range.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr unsigned FIRST_OTHER_FD = 3;
/** Where the kernel cannot mark a range, this many are marked: the daemon has a handful. */
constexpr unsigned MARKED_FDS = 256;
constexpr mode_t CHILD_UMASK = 022;

/** The descriptors of the child stay its own when it executes a program. */
void keepDescriptors()
{
    if (::close_range(FIRST_OTHER_FD, ~0U, CLOSE_RANGE_CLOEXEC) == 0)
        return;
    for (unsigned fd = FIRST_OTHER_FD; fd < MARKED_FDS; ++fd)
        ::fcntl(static_cast<int>(fd), F_SETFD, FD_CLOEXEC);
}

} // namespace

pid_t xasFork()
{
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    ::sigprocmask(SIG_SETMASK, &all, &before);
    const pid_t pid = ::fork();
    const int forkErrno = errno;
    if (pid == 0) {
        for (int signal = 1; signal < NSIG; ++signal)
            ::signal(signal, SIG_DFL);
        sigemptyset(&before);
        ::umask(CHILD_UMASK);
        keepDescriptors();
    }
    ::sigprocmask(SIG_SETMASK, &before, nullptr);
    errno = forkErrno;
    return pid;
}
