// Daemons that do what they should not, and the budget of their restarts over hours. Time is the test's; the
// processes are real.
#include "dispatch/service.h"
#include "support/misbehaviour.h"

namespace {

/** What a daemon's program does, and what becomes of it. */
struct DaemonCase {
    const char *name;
    const char *body;
    bool stays; /**< until it is stopped */
};

std::ostream &operator<<(std::ostream &out, const DaemonCase &one)
{
    return out << one.name;
}

class ADaemonThatMisbehaves : public XasSupervisionTest, public testing::WithParamInterface<DaemonCase> {};

constexpr DaemonCase DAEMONS[] = {
    {"DiesAtOnce", "exit 0", false},
    {"DiesBeforeItsProgramBegins", "exec /missing/program", false},
    {"ForksAway", "sleep 0.01 & exit 0", false},
    {"ForksAwayInASessionOfItsOwn", "setsid sleep 0.01 & exit 3", false},
    {"IgnoresSigterm", "trap '' TERM; while :; do sleep 0.05; done", true},
    {"ClosesItsStreams", "exec <&- >&- 2>&-; exec sleep 1000", true},
    {"FillsItsStreams", "dd if=/dev/zero bs=65536 count=64 of=/dev/null 2>&1; exec sleep 1000", true},
    {"ChangesItsProcessGroup", "exec setsid sleep 1000", true},
    {"StopsItself", "kill -STOP $$; exec sleep 1000", true},
    {"SendsItsParentSignals", "kill -CHLD $PPID; kill -HUP $PPID; exec sleep 1000", true},
};

} // namespace

TEST_P(ADaemonThatMisbehaves, IsRestartedWithinItsBudgetOrStoppedForGood)
{
    XasDaemon &daemon = supervise("app", stubs.make("daemon", 0, GetParam().body));
    XasReplyStatus reply;
    ASSERT_EQ(xasStartApp(apps.front(), &reply), 0) << "how it goes on is not the start's";
    const pid_t first = daemon.pid;
    if (GetParam().stays) {
        ASSERT_TRUE(stubs.await(1));
        xasLetDie(clock, first);
        EXPECT_EQ(xasStopApp(apps.front(), &reply), 0);
        EXPECT_NE(::kill(first, 0), 0) << "it is gone";
        EXPECT_THAT(stubs.calls(), testing::SizeIs(1)) << "nobody started it again";
    } else {
        ASSERT_TRUE(xasEventually([&] {
            xasWait(10ms);
            return daemon.restarts == 10 && daemon.running == 0;
        }));
        xasWait(2s);
        EXPECT_THAT(stubs.calls(), testing::SizeIs(11)) << "the first start and ten more";
        EXPECT_EQ(xasStopApp(apps.front(), &reply), 0) << "there is nothing to stop";
    }
    EXPECT_EQ(daemon.running, 0U);
}

INSTANTIATE_TEST_SUITE_P(All, ADaemonThatMisbehaves, testing::ValuesIn(DAEMONS),
                         [](const auto &one) { return std::string{one.param.name}; });

namespace {

class ADaemon : public XasSupervisionTest {
  protected:
    /** Ends the daemon's process so, and waits until it runs again. */
    void endAndAwait(XasDaemon &daemon, const std::function<void(pid_t)> &end)
    {
        const pid_t before = daemon.pid;
        end(before);
        ASSERT_TRUE(xasEventually([&] {
            xasWait(10ms);
            return daemon.pid > 0 && daemon.pid != before;
        })) << "it was not started again";
    }

    /** How many lines say that a daemon ended so. */
    [[nodiscard]] std::ptrdiff_t count(std::string_view part)
    {
        return std::ranges::count_if(
            log.lines(), [&](const XasLogLine &one) { return one.text.find(part) != std::string::npos; });
    }
};

} // namespace

TEST_F(ADaemon, IsStartedAgainWhicheverSignalEndsIt)
{
    XasDaemon &daemon = supervise("app", "/bin/sleep 1000");
    start();
    std::ptrdiff_t deaths = 0;
    for (int signal = 1; signal <= SIGRTMAX; ++signal) {
        if (!xasEndsAProcess(signal) || (signal > SIGSYS && signal < SIGRTMIN))
            continue;
        xasResetRestarts(apps);
        endAndAwait(daemon, [&](pid_t pid) { ::kill(pid, signal); });
        EXPECT_EQ(daemon.restarts, 1) << signal;
        EXPECT_EQ(count("WIFSIGNALED on sig Child exited\n"), ++deaths) << signal;
    }
}

TEST_F(ADaemon, IsStartedAgainWhateverItsExitStatusIs)
{
    const XasTestDir dir;
    XasDaemon &daemon =
        supervise("app", stubs.make("daemon", 0, "read status <" + dir.path("status") + "; exit $status"));
    ASSERT_EQ(::mkfifo(dir.path("status").c_str(), 0600), 0);
    start();
    for (int status = 0; status <= 255; ++status) {
        xasResetRestarts(apps);
        endAndAwait(daemon, [&](pid_t) {
            FILE *pipe = std::fopen(dir.path("status").c_str(), "w");
            std::fprintf(pipe, "%d\n", status);
            std::fclose(pipe);
        });
        EXPECT_EQ(daemon.restarts, 1) << status;
    }
    EXPECT_EQ(count("WIFEXITED on sig Child exited\n"), 256);
}

TEST_F(ADaemon, ThatDiesEverySixMinutesRunsAllDay)
{
    XasDaemon &daemon = supervise("app", "/bin/sleep 1000");
    start();
    for (int death = 1; death <= 240; ++death) {
        xasWait(std::chrono::minutes{6});
        endAndAwait(daemon, [&](pid_t pid) { ::kill(pid, SIGKILL); });
        if (death % 10 == 0)
            xasResetRestarts(apps); // once an hour
    }
    EXPECT_EQ(count("WIFSIGNALED on sig Child exited\n"), 240);
    EXPECT_EQ(count("] /bin/sleep started\n"), 241);
    EXPECT_EQ(daemon.running, 1U);
}

TEST_F(ADaemon, ThatDiesEveryFiveMinutesIsLeftDownInItsFirstHour)
{
    XasDaemon &daemon = supervise("app", "/bin/sleep 1000");
    start();
    for (int death = 1; death <= 10; ++death) {
        xasWait(std::chrono::minutes{5});
        endAndAwait(daemon, [&](pid_t pid) { ::kill(pid, SIGKILL); });
    }
    xasWait(std::chrono::minutes{5});
    ::kill(daemon.pid, SIGKILL);
    xasAwaitExit(daemon.pid);
    for (int hour = 2; hour <= 24; ++hour) {
        xasWait(std::chrono::hours{1});
        xasResetRestarts(apps);
    }
    EXPECT_EQ(count("] /bin/sleep started\n"), 11) << "a new budget starts nothing that is down";
    EXPECT_EQ(daemon.running, 0U);
}
