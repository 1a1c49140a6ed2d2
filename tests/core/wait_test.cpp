#include "core/wait.h"

#include "core/child.h"
#include "support/faults.h"
#include "support/supervision.h"

#include <map>

namespace {

pid_t childThatExits(int status)
{
    const pid_t pid = xasFork();
    if (pid == 0)
        ::_exit(status);
    return pid;
}

/** A child that ends only by a signal. */
pid_t childThatStays()
{
    const pid_t pid = xasFork();
    if (pid == 0) {
        for (;;)
            ::pause();
    }
    return pid;
}

/** Notes what is served, in order. */
class Wait : public testing::Test {
  protected:
    Wait()
    {
        const XasSignalService service{
            .terminate = [this] { serve("terminate"); },
            .alarm = [this] { serve("alarm"); },
            .childExited =
                [this](pid_t pid, int status) {
                    exits[pid] = status;
                    serve("child");
                },
        };
        EXPECT_EQ(xasInstallSignals(service), 0);
        while (::waitpid(-1, nullptr, WNOHANG) > 0) {
            // What earlier tests of this process left behind is not this one's.
        }
        xasWait(0ms);
        served.clear();
        exits.clear();
    }

    ~Wait() override { xasServe(); }

    void serve(const std::string &what)
    {
        served.push_back(what + "@" + std::to_string(clock.now().count()));
        if (meanwhile)
            meanwhile(what);
    }

    XasTestClock clock;
    XasLogCapture log;
    std::vector<std::string> served;
    std::map<pid_t, int> exits;
    std::function<void(const std::string &)> meanwhile; /**< done inside a service */
};

} // namespace

TEST(WaitBeforeSignals, OnlyWaits)
{
    XasTestClock clock;
    xasWait(150ms);
    EXPECT_EQ(clock.now(), 150ms);
}

TEST(WaitBeforeSignals, WaitsForAChildByBlocking)
{
    int status = -1;
    EXPECT_TRUE(xasWaitForChild(childThatExits(7), status));
    EXPECT_EQ(WEXITSTATUS(status), 7);
}

TEST(WaitBeforeSignals, GivesNoStatusForAProcessThatIsNoChild)
{
    int status = -1;
    EXPECT_FALSE(xasWaitForChild(1, status));
}

TEST(WaitBeforeSignals, GoesOnWaitingWhenInterrupted)
{
    const pid_t child = childThatExits(2);
    xasAwaitExit(child);
    const XasFault interrupted{"waitpid", EINTR, 0, 3};
    int status = -1;
    EXPECT_TRUE(xasWaitForChild(child, status));
    EXPECT_EQ(WEXITSTATUS(status), 2);
    EXPECT_EQ(interrupted.calls(), 4U);
}

TEST_F(Wait, InstallsItsHandlersWithAnEmptyMaskAndRestartingCalls)
{
    for (const int signal : {SIGCHLD, SIGALRM, SIGHUP, SIGTERM}) {
        struct sigaction action {};
        ::sigaction(signal, nullptr, &action);
        EXPECT_EQ(action.sa_flags & (SA_RESTART | SA_SIGINFO), SA_RESTART | SA_SIGINFO) << signal;
        EXPECT_TRUE(sigisemptyset(&action.sa_mask)) << signal;
    }
    struct sigaction pipe {};
    ::sigaction(SIGPIPE, nullptr, &pipe);
    EXPECT_EQ(pipe.sa_handler, SIG_IGN);
}

TEST_F(Wait, LastsItsTimeAndServesNothingWhenNothingCame)
{
    xasWait(250ms);
    EXPECT_EQ(clock.now(), 250ms);
    EXPECT_THAT(served, IsEmpty());
}

TEST_F(Wait, IgnoresSighup)
{
    ::raise(SIGHUP);
    xasWait(100ms);
    EXPECT_THAT(served, IsEmpty());
    EXPECT_EQ(clock.now(), 100ms);
}

TEST_F(Wait, ServesWhatCameBeforeIt)
{
    ::raise(SIGALRM);
    xasWait(100ms);
    EXPECT_THAT(served, ElementsAre("alarm@0"));
    EXPECT_EQ(clock.now(), 100ms);
}

TEST_F(Wait, OfNoTimeServesToo)
{
    ::raise(SIGTERM);
    xasWait(0ms);
    EXPECT_THAT(served, ElementsAre("terminate@0"));
}

TEST_F(Wait, ServesASignalWhenItComesAndThenLastsItsTime)
{
    clock.at(30ms, [] { ::raise(SIGALRM); });
    clock.at(60ms, [] { ::raise(SIGTERM); });
    xasWait(100ms);
    EXPECT_THAT(served, ElementsAre("alarm@30", "terminate@60"));
    EXPECT_EQ(clock.now(), 100ms);
}

TEST_F(Wait, ServesWhatCameAtItsEnd)
{
    clock.at(100ms, [] { ::raise(SIGALRM); });
    xasWait(100ms);
    EXPECT_THAT(served, ElementsAre("alarm@100"));
}

TEST_F(Wait, ServesTerminationFirst)
{
    ::raise(SIGALRM);
    const pid_t pid = childThatExits(0);
    xasAwaitExit(pid);
    ::raise(SIGTERM);
    xasWait(0ms);
    ASSERT_EQ(served.size(), 3U);
    EXPECT_EQ(served.front(), "terminate@0");
}

TEST_F(Wait, ServesManyDeliveriesOfASignalBeforeItsWaitAsOne)
{
    ::raise(SIGALRM);
    ::raise(SIGALRM);
    xasWait(0ms);
    EXPECT_THAT(served, ElementsAre("alarm@0"));
}

TEST_F(Wait, HandsOverEveryChildThatHasExitedWithItsStatus)
{
    const pid_t first = childThatExits(3);
    const pid_t second = childThatStays();
    ::kill(second, SIGKILL);
    xasAwaitExit(first);
    xasAwaitExit(second);
    xasWait(0ms);
    ASSERT_EQ(exits.size(), 2U);
    EXPECT_EQ(WEXITSTATUS(exits.at(first)), 3);
    EXPECT_EQ(WTERMSIG(exits.at(second)), SIGKILL);
}

TEST_F(Wait, DoesNotEnterAKindThatIsBeingServed)
{
    meanwhile = [this](const std::string &) {
        if (served.size() > 1)
            return;
        ::raise(SIGALRM);
        xasWait(50ms);
        served.emplace_back("done");
    };
    ::raise(SIGALRM);
    xasWait(0ms);
    EXPECT_THAT(served, ElementsAre("alarm@0", "done", "alarm@50"));
}

TEST_F(Wait, ServesAnotherKindMeanwhile)
{
    meanwhile = [this](const std::string &what) {
        if (what != "alarm")
            return;
        xasAwaitExit(childThatExits(0));
        ::raise(SIGTERM);
        xasWait(50ms);
        served.emplace_back("done");
    };
    ::raise(SIGALRM);
    xasWait(0ms);
    EXPECT_THAT(served, ElementsAre("alarm@0", "terminate@0", "child@0", "done"));
}

TEST_F(Wait, KeepsChildrenThatExitWhileOneIsServedInTheOrderOfTheirExit)
{
    std::vector<pid_t> order;
    const pid_t first = childThatExits(0);
    xasAwaitExit(first);
    pid_t second = 0;
    pid_t third = 0;
    meanwhile = [&](const std::string &) {
        if (second != 0)
            return;
        second = childThatExits(0);
        xasAwaitExit(second);
        xasWait(10ms);
        third = childThatExits(0);
        xasAwaitExit(third);
        xasWait(10ms);
        EXPECT_EQ(exits.size(), 1U);
    };
    xasWait(0ms);
    EXPECT_EQ(exits.size(), 3U);
    EXPECT_THAT(served, ElementsAre("child@0", "child@20", "child@20"));
}

TEST_F(Wait, LetsNoExceptionLeaveAServiceAndLogsIt)
{
    meanwhile = [](const std::string &) {
        throw std::runtime_error{"no room"};
    };
    ::raise(SIGALRM);
    xasWait(10ms);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("no room\n")));
    ::raise(SIGALRM);
    meanwhile = nullptr;
    xasWait(10ms);
    EXPECT_THAT(served, ElementsAre("alarm@0", "alarm@10"));
}

TEST_F(Wait, ForAChildKeepsItsStatusForTheWaiterAndServesTheOthers)
{
    const pid_t other = childThatExits(1);
    xasAwaitExit(other);
    const pid_t mine = childThatExits(42);
    xasAwaitExit(mine);
    int status = -1;
    EXPECT_TRUE(xasWaitForChild(mine, status));
    EXPECT_EQ(WEXITSTATUS(status), 42);
    xasWait(0ms);
    EXPECT_EQ(exits.size(), 1U);
    EXPECT_EQ(exits.count(other), 1U);
}

TEST_F(Wait, ForAChildServesSignalsWhileItRuns)
{
    const pid_t mine = childThatStays();
    meanwhile = [&](const std::string &) {
        ::kill(mine, SIGKILL);
    };
    ::raise(SIGTERM);
    int status = -1;
    EXPECT_TRUE(xasWaitForChild(mine, status));
    EXPECT_THAT(served, ElementsAre("terminate@0"));
    EXPECT_EQ(WTERMSIG(status), SIGKILL);
}

TEST_F(Wait, ForAChildInsideAServiceOfAnotherChildGetsItsOwnStatus)
{
    int inner = -1;
    meanwhile = [&](const std::string &) {
        if (inner == -1) {
            EXPECT_TRUE(xasWaitForChild(childThatExits(9), inner));
        }
    };
    xasAwaitExit(childThatExits(0));
    xasWait(0ms);
    EXPECT_EQ(WEXITSTATUS(inner), 9);
    EXPECT_EQ(exits.size(), 1U);
}

TEST_F(Wait, ForAProcessThatIsNoChildGivesNoStatus)
{
    int status = -1;
    EXPECT_FALSE(xasWaitForChild(::getppid(), status));
}

TEST_F(Wait, NeverLosesAStatusWhateverDiesAtTheSameMoment)
{
    constexpr int ROUNDS = 1000;
    for (int round = 0; round < ROUNDS; ++round) {
        const pid_t bystander = childThatStays();
        const pid_t mine = childThatExits(round % 200);
        ::kill(bystander, SIGKILL);
        int status = -1;
        ASSERT_TRUE(xasWaitForChild(mine, status)) << round;
        ASSERT_EQ(WEXITSTATUS(status), round % 200);
        xasAwaitExit(bystander);
        xasWait(0ms);
        ASSERT_EQ(exits.count(mine), 0U);
        ASSERT_EQ(exits.count(bystander), 1U);
    }
}

TEST_F(Wait, ForAChildServesTheDeathsThatWereCollectedWithItBeforeItReturns)
{
    // With the signal blocked nobody is told of a death before the wait collects both at once.
    sigset_t childExited;
    sigemptyset(&childExited);
    sigaddset(&childExited, SIGCHLD);
    sigprocmask(SIG_BLOCK, &childExited, nullptr);
    const pid_t daemon = childThatExits(3);
    const pid_t script = childThatExits(0);
    xasAwaitExit(daemon);
    xasAwaitExit(script);
    int status = -1;
    EXPECT_TRUE(xasWaitForChild(script, status));
    EXPECT_EQ(WEXITSTATUS(exits.at(daemon)), 3);
    EXPECT_EQ(exits.count(script), 0U);
    sigprocmask(SIG_UNBLOCK, &childExited, nullptr);
}

TEST_F(Wait, DoesNotServeTheExitOfAHeldChildUntilItIsReleased)
{
    const pid_t pid = childThatExits(5);
    xasAwaitExit(pid);
    {
        const XasHeldChild held{pid};
        xasWait(200ms);
        EXPECT_THAT(exits, IsEmpty());
    }
    xasWait(0ms);
    EXPECT_EQ(WEXITSTATUS(exits.at(pid)), 5);
}

TEST_F(Wait, CollectsEachChildAlthoughTheCallIsInterrupted)
{
    const pid_t other = childThatExits(3);
    const pid_t awaited = childThatExits(4);
    xasAwaitExit(other);
    xasAwaitExit(awaited);
    const XasFault fault{"waitpid", EINTR, 0, 2};
    int status = 0;
    ASSERT_TRUE(xasWaitForChild(awaited, status));
    EXPECT_EQ(WEXITSTATUS(status), 4);
    EXPECT_THAT(exits, ElementsAre(testing::Pair(other, 3 << 8)));
}

TEST_F(Wait, ServesOtherChildrenWhileOneIsHeld)
{
    const pid_t heldPid = childThatExits(1);
    const pid_t other = childThatExits(2);
    xasAwaitExit(heldPid);
    xasAwaitExit(other);
    const XasHeldChild held{heldPid};
    xasWait(10ms);
    EXPECT_EQ(exits.count(other), 1U);
    EXPECT_EQ(exits.count(heldPid), 0U);
}

TEST(WallTime, IsTheClocks)
{
    XasTestClock clock;
    clock.pass(1500ms);
    timeval now{};
    EXPECT_EQ(xasWallTime(now), 0);
    EXPECT_EQ(now.tv_sec, 1001);
    EXPECT_EQ(now.tv_usec, 500000);
    clock.breakWallClock();
    EXPECT_NE(xasWallTime(now), 0);
}

TEST(SystemClock, ReallyWaits)
{
    const auto begin = std::chrono::steady_clock::now();
    xasWait(20ms);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 20ms);
    timeval now{};
    EXPECT_EQ(xasWallTime(now), 0);
    EXPECT_GT(now.tv_sec, 1000000000);
}

TEST(WaitStart, FailsWithALogLineWhenNothingCouldWakeAWaiter)
{
    const XasLogCapture log;
    const XasFault fault{"eventfd", EMFILE};
    EXPECT_EQ(xasInstallSignals({}), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error creating the descriptor that signals wake with\n")));
}

TEST(WaitStart, UndoesWhatTheStarterBlockedOrIgnored)
{
    sigset_t mask;
    sigfillset(&mask);
    sigprocmask(SIG_SETMASK, &mask, nullptr);
    ::signal(SIGCHLD, SIG_IGN);
    xasResetSignals();
    sigprocmask(SIG_SETMASK, nullptr, &mask);
    for (int signal = 1; signal < NSIG; ++signal)
        EXPECT_NE(sigismember(&mask, signal), 1) << signal;
    int status = -1;
    EXPECT_TRUE(xasWaitForChild(childThatExits(7), status));
    EXPECT_EQ(WEXITSTATUS(status), 7);
}
