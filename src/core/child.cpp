#include "core/child.h"

#include <cerrno>
#include <csignal>
#include <unistd.h>

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
    }
    ::sigprocmask(SIG_SETMASK, &before, nullptr);
    errno = forkErrno;
    return pid;
}
