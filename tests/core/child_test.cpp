#include "core/child.h"

#include "support/faults.h"
#include "support/test.h"

#include <fcntl.h>

namespace {

/** The exit status of a child that runs `body`. */
template <class Body>
int exitStatusOf(Body body)
{
    const pid_t pid = xasFork();
    if (pid == 0)
        ::_exit(body());
    int status = -1;
    ::waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void expectOnlyStandardDescriptors()
{
    const int fd = ::open("/dev/null", O_RDONLY);
    ASSERT_GT(fd, 2);
    const std::string isOpen = "test -e /proc/self/fd/" + std::to_string(fd);
    EXPECT_EQ(exitStatusOf([&] {
                  ::execl("/bin/sh", "sh", "-c", isOpen.c_str(), nullptr);
                  return 127;
              }),
              1);
    EXPECT_EQ(::fcntl(fd, F_GETFD), 0) << "the parent's own are as they were";
    EXPECT_EQ(exitStatusOf([] {
                  ::execl("/bin/sh", "sh", "-c", "test -e /proc/self/fd/1 && test -e /proc/self/fd/2",
                          nullptr);
                  return 127;
              }),
              0);
    ::close(fd);
}

} // namespace

TEST(Child, IsNotMadeWhenForkFailsAndTheReasonIsKept)
{
    const XasFault fault{"fork", EAGAIN};
    errno = 0;
    EXPECT_EQ(xasFork(), -1);
    EXPECT_EQ(errno, EAGAIN);
}

TEST(Child, LeavesTheSignalMaskOfItsParentAsItWasAlsoWhenForkFails)
{
    sigset_t mask;
    sigemptyset(&mask);
    sigaddset(&mask, SIGUSR1);
    sigprocmask(SIG_SETMASK, &mask, nullptr);
    {
        const XasFault fault{"fork", EAGAIN};
        xasFork();
    }
    EXPECT_EQ(exitStatusOf([] { return 0; }), 0);
    sigset_t after;
    sigprocmask(SIG_SETMASK, nullptr, &after);
    EXPECT_TRUE(sigismember(&after, SIGUSR1));
    EXPECT_FALSE(sigismember(&after, SIGTERM));
}

TEST(Child, BeginsWithDefaultSignalsAndNoneBlocked)
{
    ::signal(SIGPIPE, SIG_IGN);
    ::signal(SIGTERM, [](int) {});
    const int status = exitStatusOf([] {
        sigset_t mask;
        sigprocmask(SIG_SETMASK, nullptr, &mask);
        for (const int signal : {SIGPIPE, SIGTERM, SIGCHLD, SIGALRM, SIGHUP}) {
            struct sigaction action {};
            ::sigaction(signal, nullptr, &action);
            if (action.sa_handler != SIG_DFL || sigismember(&mask, signal) != 0)
                return signal;
        }
        return 0;
    });
    EXPECT_EQ(status, 0);
}

TEST(Child, BeginsWithAUmaskThatNobodyElseMayWriteUnder)
{
    ::umask(0);
    EXPECT_EQ(exitStatusOf([] { return ::umask(0) == 022 ? 0 : 1; }), 0);
    EXPECT_EQ(::umask(0), 0U);
}

TEST(Child, HandsOnlyTheStandardDescriptorsOnToAProgram)
{
    expectOnlyStandardDescriptors();
}

TEST(Child, HandsOnlyTheStandardDescriptorsOnWhereTheKernelMarksOneByOne)
{
    const XasFault fault{"close_range", ENOSYS};
    expectOnlyStandardDescriptors();
}
