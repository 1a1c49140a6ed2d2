#include "core/daemon.h"

#include "core/child.h"
#include "core/script.h"
#include "support/faults.h"
#include "support/supervision.h"

namespace {

using StartDaemon = XasSupervisionTest;
using ReapChild = XasSupervisionTest;
using StopDaemon = XasSupervisionTest;

constexpr unsigned NEVER = 0;

/** The pid of a process that is no longer there. */
pid_t deadPid()
{
    const pid_t pid = xasFork();
    if (pid == 0)
        ::_exit(0);
    ::waitpid(pid, nullptr, 0);
    return pid;
}

/** The pid of a running process that is no child of this one. */
pid_t strangersPid(const XasStubs &stubs)
{
    const std::string file = stubs.path("stranger");
    EXPECT_EQ(::system(("sleep 1000 > /dev/null & echo $! > " + file).c_str()), 0);
    return std::stoi(xasReadFile(file));
}

std::size_t countOf(const std::vector<XasLogLine> &lines, std::string_view part)
{
    return static_cast<std::size_t>(std::ranges::count_if(
        lines, [&](const XasLogLine &line) { return line.text.find(part) != std::string::npos; }));
}

} // namespace

TEST_F(StartDaemon, FailsSilentlyWithoutADaemonOrACommandLine)
{
    XasDaemon &daemon = supervise("app", "");
    EXPECT_EQ(xasStartDaemon(&daemon, apps.front()), -1);
    EXPECT_EQ(xasStartDaemon(nullptr, apps.front()), -1);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(StartDaemon, FailsForAProgramThatIsNotThere)
{
    supervise("app", "/missing/daemon -n 1");
    EXPECT_EQ(start(), -1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("/missing/daemon -n 1 is not a valid executable file\n")));
    EXPECT_EQ(clock.now(), 0ms);
}

TEST_F(StartDaemon, FailsForABlankCommandLine)
{
    supervise("app", "  ");
    EXPECT_EQ(start(), -1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error parsing exe path"),
                                         xasErrorLine("   is not a valid executable file\n")));
}

TEST_F(StartDaemon, RefusesACommandLineOfMoreThan255CharactersAsNotExecutable)
{
    const std::string exe = stubs.make("daemon") + " " + std::string(255, 'x');
    supervise("app", exe);
    EXPECT_EQ(start(), -1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine(exe + " is not a valid executable file\n")));
    EXPECT_THAT(stubs.calls(), IsEmpty());
}

TEST_F(StartDaemon, FailsWhenNoChildCanBeMade)
{
    const XasDaemon &daemon = supervise("app", stubs.make("daemon"));
    const XasFault fault{"fork", EAGAIN};
    EXPECT_EQ(start(), -1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("fork error")));
    EXPECT_EQ(daemon.running, 0);
    EXPECT_EQ(clock.now(), 0ms);
}

TEST_F(StartDaemon, WaitsForTheProgramToBeginAndLogsIt)
{
    const XasDaemon &daemon = supervise("app", stubs.make("daemon", 0, "exec sleep 1000") + " -n  -p 1");
    const pid_t pid = startAndAwait();
    ASSERT_GT(pid, 0);
    EXPECT_EQ(clock.now(), 200ms);
    EXPECT_EQ(daemon.running, 1);
    EXPECT_EQ(daemon.pid, pid);
    EXPECT_EQ(daemon.pgrp, ::getpgrp());
    EXPECT_THAT(stubs.calls(), ElementsAre(ElementsAre(stubs.path("daemon"), "-n", "-p", "1")));
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine(xasStartedText(pid, stubs.path("daemon")))));
}

TEST_F(StartDaemon, LogsAProgramThatCannotBeExecutedAndTreatsItAsOneThatEnded)
{
    const std::string program = stubs.path("daemon");
    xasWriteFile(program, "#!/missing/interpreter\n", 0755);
    const XasDaemon &daemon = supervise("app", program + " a");
    clock.at(100ms, xasAwaitAnyExit);
    const pid_t pid = start();
    EXPECT_GT(pid, 0);
    EXPECT_THAT(log.take(), ElementsAre(xasErrorLine("execvp(" + program + ",..) failed\n"),
                                        xasInfoLine(xasStartedText(pid, program))));
    std::remove(program.c_str());
    xasWait(0ms);
    EXPECT_THAT(log.take(), ElementsAre(xasInfoLine(xasEndedText(pid, "WIFEXITED")),
                                        xasErrorLine(program + " a is not a valid executable file\n"),
                                        xasErrorLine("Error restarting app\n")));
    EXPECT_EQ(daemon.pid, -1);
    EXPECT_EQ(daemon.running, 0);
    EXPECT_EQ(daemon.restarts, 1);
}

TEST_F(StartDaemon, OfTheSystemLoggerIsNotLoggedButItsFailuresAre)
{
    XasDaemon &daemon = supervise("syslog", stubs.make("daemon", 0, "exec sleep 1000"));
    const pid_t pid = startAndAwait();
    ASSERT_GT(pid, 0);
    daemon.stopping = 1;
    ::kill(pid, SIGKILL);
    xasAwaitExit(pid);
    xasWait(0ms);
    EXPECT_EQ(daemon.pid, -1);
    EXPECT_THAT(log.take(), IsEmpty());
    daemon.exe = "/missing/logger";
    EXPECT_EQ(start(), -1);
    EXPECT_THAT(log.take(), ElementsAre(xasErrorLine("/missing/logger is not a valid executable file\n")));
}

TEST_F(StartDaemon, MatchesADeathInItsFirst200MillisecondsWhenItReturns)
{
    const XasDaemon &daemon = supervise("app", stubs.make("daemon"));
    clock.at(100ms, xasAwaitAnyExit);
    const pid_t pid = start();
    EXPECT_EQ(daemon.running, 1) << "its death is not looked at yet";
    EXPECT_EQ(daemon.pid, pid);
    log.take();
    xasWriteFile(stubs.path("daemon"), "", 0644);
    xasWait(0ms);
    EXPECT_THAT(log.lines(), Contains(xasInfoLine(xasEndedText(pid, "WIFEXITED"))));
    EXPECT_EQ(daemon.running, 0);
}

TEST_F(StartDaemon, LetsNoDeathOfAnEarlierProcessStartAnotherOne)
{
    const XasDaemon &daemon = superviseOneThatStays();
    const pid_t earlier = startAndAwait();
    clock.at(clock.now() + 50ms, [earlier] {
        ::kill(earlier, SIGKILL);
        xasAwaitExit(earlier);
    });
    const pid_t pid = start();
    EXPECT_NE(pid, earlier);
    EXPECT_EQ(daemon.pid, pid);
    EXPECT_EQ(daemon.running, 1);
    EXPECT_EQ(daemon.restarts, 0) << "the one that died is not the daemon any more";
    EXPECT_EQ(clock.now(), 200ms + 200ms);
}

TEST_F(ReapChild, IgnoresAChildThatIsNoDaemon)
{
    const XasDaemon &daemon = superviseOneThatStays();
    const pid_t pid = startAndAwait();
    log.take();
    xasReapChild(apps, pid + 1000, 0);
    xasReapChild(apps, -1, 0);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(daemon.running, 1);
}

TEST_F(ReapChild, LogsAnEventThatIsNoEndAndChangesNothing)
{
    const XasDaemon &daemon = superviseOneThatStays();
    const pid_t pid = startAndAwait();
    log.take();
    constexpr int STOPPED_BY_SIGSTOP = 0x137f;
    xasReapChild(apps, pid, STOPPED_BY_SIGSTOP);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Unknown event for PID " + std::to_string(pid) + "\n")));
    EXPECT_EQ(daemon.running, 1);
    EXPECT_EQ(daemon.pid, pid);
}

TEST_F(ReapChild, StartsADaemonAgainASecondAfterItsDeath)
{
    const XasDaemon &daemon = superviseOneThatStays();
    const pid_t first = startAndAwait();
    log.take();
    stubs.forget();
    ::kill(first, SIGKILL);
    xasAwaitExit(first);
    clock.at(clock.now() + 1150ms, [&] { ASSERT_TRUE(stubs.await(1)); });
    xasWait(0ms);
    EXPECT_EQ(clock.now(), 1400ms);
    EXPECT_GT(daemon.pid, 0);
    EXPECT_NE(daemon.pid, first);
    EXPECT_EQ(daemon.running, 1);
    EXPECT_EQ(daemon.restarts, 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine(xasEndedText(first, "WIFSIGNALED")),
                                         xasInfoLine(xasStartedText(daemon.pid, stubs.path("daemon")))));
}

TEST_F(ReapChild, ShowsTheDaemonAsEndedWhileItWaitsToStartItAgain)
{
    const XasDaemon &daemon = superviseOneThatStays();
    const pid_t first = startAndAwait();
    ::kill(first, SIGKILL);
    xasAwaitExit(first);
    bool looked = false;
    clock.at(clock.now() + 900ms, [&] {
        looked = true;
        EXPECT_EQ(daemon.pid, -1);
        EXPECT_EQ(daemon.running, 0);
    });
    xasWait(0ms);
    EXPECT_TRUE(looked);
}

TEST_F(ReapChild, GivesUpAfterTenRestartsUntilTheCounterIsReset)
{
    const XasDaemon &daemon = supervise("app", stubs.make("daemon"));
    // Each start lasts 200 ms and is preceded by a second of waiting.
    for (int starts = 0; starts <= 30; ++starts)
        clock.at(100ms + starts * 1200ms, xasAwaitAnyExit);
    ASSERT_GT(start(), 0);
    xasWait(0ms);
    EXPECT_EQ(clock.now(), 200ms + 10 * 1200ms);
    EXPECT_EQ(stubs.calls().size(), 11U);
    EXPECT_EQ(countOf(log.lines(), " started\n"), 11U);
    EXPECT_EQ(countOf(log.lines(), "] WIFEXITED on sig Child exited\n"), 11U);
    EXPECT_EQ(daemon.restarts, 10);
    EXPECT_EQ(daemon.pid, -1);
    EXPECT_EQ(daemon.running, 0);
    xasWait(60s);
    EXPECT_EQ(stubs.calls().size(), 11U) << "it stays down";

    xasResetRestarts(apps);
    EXPECT_EQ(daemon.restarts, 0);
    xasWait(60s);
    EXPECT_EQ(stubs.calls().size(), 11U) << "the reset alone starts nothing";
    const auto base = clock.now();
    for (int starts = 0; starts <= 30; ++starts)
        clock.at(base + 100ms + starts * 1200ms, xasAwaitAnyExit);
    ASSERT_GT(start(), 0);
    xasWait(0ms);
    EXPECT_EQ(stubs.calls().size(), 22U) << "the next death begins a new budget";
}

TEST_F(ReapChild, RestartsEachOfSeveralDaemonsThatDiedTogether)
{
    const std::string exe = stubs.make("daemon", 0, "exec sleep 1000");
    apps = xasTestAppList({{.name = "one", .exes = {exe, exe}}, {.name = "two", .exes = {exe}}});
    std::vector<XasDaemon *> daemons;
    for (XasApp &app : apps) {
        for (XasDaemon &daemon : app.daemons) {
            ASSERT_GT(xasStartDaemon(&daemon, app), 0);
            daemons.push_back(&daemon);
        }
    }
    std::vector<pid_t> first;
    for (const XasDaemon *daemon : daemons) {
        first.push_back(daemon->pid);
        ::kill(daemon->pid, SIGKILL);
        xasAwaitExit(daemon->pid);
    }
    xasWait(0ms);
    for (std::size_t i = 0; i < daemons.size(); ++i) {
        EXPECT_GT(daemons[i]->pid, 0);
        EXPECT_NE(daemons[i]->pid, first[i]);
        EXPECT_EQ(daemons[i]->restarts, 1);
    }
}

TEST_F(ReapChild, DoesNotStartADaemonAgainThatIsBeingStopped)
{
    XasDaemon &daemon = superviseOneThatStays();
    const pid_t pid = startAndAwait();
    log.take();
    daemon.stopping = 1;
    ::kill(pid, SIGKILL);
    xasAwaitExit(pid);
    xasWait(5s);
    EXPECT_EQ(daemon.pid, -1);
    EXPECT_EQ(daemon.restarts, 0);
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine(xasEndedText(pid, "WIFSIGNALED"))));
}

TEST_F(StopDaemon, FailsForAPidThatIsNotPositive)
{
    XasDaemon &daemon = superviseOneThatStays();
    const XasFault kills{"kill", EPERM, 0, NEVER};
    EXPECT_EQ(xasStopDaemon(&daemon), 1);
    daemon.pid = -1;
    EXPECT_EQ(xasStopDaemon(&daemon), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasWarningLine("Invalid daemon pid 0 to stop\n"),
                                         xasWarningLine("Invalid daemon pid -1 to stop\n")));
    EXPECT_EQ(daemon.stopping, 0);
    EXPECT_EQ(kills.calls(), 0U);
}

TEST_F(StopDaemon, SendsNoSignalToAProcessThatIsGone)
{
    XasDaemon &daemon = superviseOneThatStays();
    daemon.pid = deadPid();
    const XasFault kills{"kill", EPERM, 0, NEVER};
    EXPECT_EQ(xasStopDaemon(&daemon), 0);
    EXPECT_THAT(log.lines(), ElementsAre(xasWarningLine("xasStopDaemon() pid " + std::to_string(daemon.pid) +
                                                        " is not alive, assume it was killed\n")));
    EXPECT_EQ(daemon.stopping, 0);
    EXPECT_EQ(kills.calls(), 0U);
    EXPECT_EQ(clock.now(), 0ms);
    daemon.pid = 0;
}

TEST_F(StopDaemon, TakesOnlyAMissingProcessForGone)
{
    XasDaemon &daemon = superviseOneThatStays();
    const pid_t pid = startAndAwait();
    const XasFault fault{"sched_getparam", EPERM};
    clock.at(clock.now() + 50ms, [pid] { xasAwaitExit(pid); });
    EXPECT_EQ(xasStopDaemon(&daemon), 0);
    EXPECT_EQ(daemon.pid, -1);
}

TEST_F(StopDaemon, FailsWhenSigtermCannotBeSentAndStaysStopping)
{
    XasDaemon &daemon = superviseOneThatStays();
    const pid_t pid = startAndAwait();
    log.take();
    {
        const XasFault fault{"kill", EPERM};
        EXPECT_EQ(xasStopDaemon(&daemon), 1);
    }
    EXPECT_THAT(log.lines(), ElementsAre(xasWarningLine("Error sending SIGTERM to process " +
                                                        std::to_string(pid) + "\n")));
    EXPECT_EQ(daemon.stopping, 1);
    EXPECT_EQ(daemon.running, 1);
}

TEST_F(StopDaemon, FailsWhenSigkillCannotBeSentAndStaysStopping)
{
    XasDaemon &daemon = supervise("app", stubs.make("daemon", 0, "trap '' TERM\nexec sleep 1000"));
    const pid_t pid = startAndAwait();
    log.take();
    {
        const XasFault fault{"kill", EPERM, 1};
        EXPECT_EQ(xasStopDaemon(&daemon), 1);
    }
    EXPECT_THAT(log.lines(), ElementsAre(xasWarningLine("Error sending SIGKILL to process " +
                                                        std::to_string(pid) + "\n")));
    EXPECT_EQ(daemon.stopping, 1);
}

TEST_F(StopDaemon, FailsForAProcessWhoseEndIsNeverSeen)
{
    XasDaemon &daemon = superviseOneThatStays();
    const pid_t pid = strangersPid(stubs);
    daemon.pid = pid;
    daemon.running = 1;
    EXPECT_EQ(xasStopDaemon(&daemon), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Failed to kill process: " + std::to_string(pid) + "\n")));
    EXPECT_EQ(daemon.stopping, 1);
    EXPECT_EQ(clock.now(), 1100ms);
    daemon.pid = 0;
}

TEST_F(StopDaemon, EndsADaemonWithSigtermWithin100Milliseconds)
{
    XasDaemon &daemon = superviseOneThatStays();
    const pid_t pid = startAndAwait();
    log.take();
    clock.at(clock.now() + 50ms, [pid] { xasAwaitExit(pid); });
    EXPECT_EQ(xasStopDaemon(&daemon), 0);
    EXPECT_EQ(clock.now(), 200ms + 100ms);
    EXPECT_EQ(daemon.stopping, 0);
    EXPECT_EQ(daemon.running, 0);
    EXPECT_EQ(daemon.pid, -1);
    EXPECT_EQ(daemon.restarts, 0);
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine(xasEndedText(pid, "WIFSIGNALED"))));
}

TEST_F(StopDaemon, KillsADaemonThatIgnoresSigtermAndKnowsASecondLater)
{
    XasDaemon &daemon = supervise("app", stubs.make("daemon", 0, "trap '' TERM\nexec sleep 1000"));
    const std::string program = stubs.path("daemon");
    // The trap is set right behind the note of the call.
    clock.at(180ms, [] { xasPause(50ms); });
    const pid_t pid = startAndAwait();
    log.take();
    clock.at(clock.now() + 90ms, [&] { EXPECT_EQ(::kill(pid, 0), 0); });
    clock.at(clock.now() + 600ms, [pid] { xasAwaitExit(pid); });
    EXPECT_EQ(xasStopDaemon(&daemon), 0);
    EXPECT_EQ(clock.now(), 200ms + 1100ms);
    EXPECT_EQ(daemon.stopping, 0);
    EXPECT_EQ(daemon.running, 0);
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine(xasEndedText(pid, "WIFSIGNALED"))));
}

TEST_F(StopDaemon, IsNotUndoneByTheReaper)
{
    XasDaemon &daemon = superviseOneThatStays();
    const pid_t pid = startAndAwait();
    clock.at(clock.now() + 50ms, [pid] { xasAwaitExit(pid); });
    EXPECT_EQ(xasStopDaemon(&daemon), 0);
    stubs.forget();
    xasWait(10s);
    EXPECT_EQ(daemon.pid, -1);
    EXPECT_THAT(stubs.calls(), IsEmpty());
}

TEST_F(StopDaemon, MeetsNoDaemonWhoseDeathIsCollectedAndNotServed)
{
    XasDaemon &daemon = superviseOneThatStays();
    const pid_t pid = startAndAwait();
    sigset_t childExited;
    sigemptyset(&childExited);
    sigaddset(&childExited, SIGCHLD);
    sigprocmask(SIG_BLOCK, &childExited, nullptr); // script and daemon are collected at once
    ::kill(pid, SIGKILL);
    xasAwaitExit(pid);
    const pid_t script = xasFork();
    if (script == 0)
        ::_exit(0);
    xasAwaitExit(script);
    int status = -1;
    EXPECT_TRUE(xasWaitForChild(script, status));
    sigprocmask(SIG_UNBLOCK, &childExited, nullptr);
    EXPECT_EQ(daemon.restarts, 1);
    clock.at(clock.now() + 50ms, [&daemon] { xasAwaitExit(daemon.pid); });
    EXPECT_EQ(xasStopDaemon(&daemon), 0);
    stubs.forget();
    xasWait(10s);
    EXPECT_THAT(stubs.calls(), IsEmpty()) << "what was stopped stays so";
    EXPECT_EQ(daemon.running, 0);
}

TEST_F(StopDaemon, StopsADaemonForGoodThatDiedWhileItWasStarted)
{
    XasDaemon &daemon = supervise("app", stubs.make("daemon", 3));
    clock.at(clock.now() + 100ms, xasAwaitAnyExit);
    start();
    xasWriteFile(stubs.path("daemon"), "#!/bin/sh\nexec sleep 1000\n", 0755);
    clock.at(clock.now() + 1000ms + 200ms + 50ms, [&daemon] { xasAwaitExit(daemon.pid); });
    EXPECT_EQ(xasStopDaemon(&daemon), 0);
    EXPECT_EQ(daemon.restarts, 1);
    xasWait(10s);
    EXPECT_EQ(daemon.restarts, 1);
    EXPECT_EQ(daemon.running, 0);
}
