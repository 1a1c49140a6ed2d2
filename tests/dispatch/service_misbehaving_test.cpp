// Applications whose scripts and daemons do what they should not: at each step of a start and of a stop. Time
// is the test's; what a script does to the machine is real.
#include "core/script.h"
#include "dispatch/service.h"
#include "support/misbehaviour.h"

#include <csignal>

namespace {

constexpr const char *INTERNAL = "Internal error applying settings";

/** At which step a script misbehaves. */
enum class Step { start, stop };

int run(Step step, XasApp &app, XasReplyStatus &reply)
{
    return step == Step::start ? xasStartApp(app, &reply) : xasStopApp(app, &reply);
}

/** What the sender is told of a script's exit status. */
std::string reasonOf(int status)
{
    switch (status) {
    case 0:
        return "";
    case 1:
        return "Internal error attempting to apply settings";
    case 20:
        return "Internal error getting firewall configuration file";
    case 30:
        return "Mount/unmount of NFS share failed";
    case 40:
        return "Error contacting NTP server";
    case 50:
        return "Invalid hostname specified";
    default:
        return "Error applying settings";
    }
}

struct Misbehaviour {
    const char *name;
    const char *body; /**< shell lines */
};

std::ostream &operator<<(std::ostream &out, const Misbehaviour &one)
{
    return out << one.name;
}

std::ostream &operator<<(std::ostream &out, Step step)
{
    return out << (step == Step::start ? "start" : "stop");
}

std::string nameOf(const testing::TestParamInfo<std::tuple<Step, Misbehaviour>> &info)
{
    return std::string{std::get<1>(info.param).name} +
           (std::get<0>(info.param) == Step::start ? "AtTheStart" : "AtTheStop");
}

class AScript : public XasServedTest {
  protected:
    /** An application with one daemon that runs, and the same script for its start and its stop. */
    XasApp &make(const std::string &script)
    {
        apps = xasTestAppList(
            {{.name = "web", .startScript = script, .stopScript = script, .exes = {"/bin/sleep 1000"}}});
        XasApp &app = apps.front();
        xasStartDaemon(&app.daemons.front(), app);
        app.running = 1;
        return app;
    }

    /** Ends the daemon that `make` started where a start will start another one. */
    void clear(Step step)
    {
        if (step == Step::start) {
            ASSERT_EQ(xasStopAndAwait(clock, apps.front().daemons.front()), 0);
        }
    }
};

class AScriptThatMisbehaves : public AScript,
                              public testing::WithParamInterface<std::tuple<Step, Misbehaviour>> {};

constexpr Misbehaviour SCRIPTS[] = {
    {"ForksAway", "sleep 1000 >/dev/null 2>&1 & echo $! >pid"},
    {"ForksAwayInASessionOfItsOwn", "setsid sleep 1000 >/dev/null 2>&1 & echo $! >pid"},
    {"ClosesItsStreams", "exec <&- >&- 2>&-"},
    {"FillsItsStreams",
     "{ dd if=/dev/zero bs=65536 count=64; dd if=/dev/zero bs=65536 count=64 >&2; } 2>&1 | cat >/dev/null"},
    {"ChangesItsProcessGroup", "setsid --fork --wait true"},
    {"IgnoresSigterm", "trap '' TERM; kill -TERM $$"},
    {"SendsItsParentSignals", "kill -CHLD $PPID; kill -HUP $PPID; kill -ALRM $PPID"},
    {"LeavesChildrenUncollected", "(exit 1) & (exit 2) &"},
};

} // namespace

TEST_P(AScriptThatMisbehaves, CountsByItsExitStatusAlone)
{
    const auto &[step, script] = GetParam();
    const XasTestDir dir;
    for (const int status : {0, 40}) {
        const std::string path = stubs.make("script", status, "cd " + dir.path() + "\n" + script.body);
        XasApp &app = make(path);
        clear(step);
        XasReplyStatus reply;
        xasLetDie(clock, step == Step::stop && status == 0 ? app.daemons.front().pid : 0);
        EXPECT_EQ(run(step, app, reply), status == 0 ? 0 : 1);
        EXPECT_EQ(reply.rstr, reasonOf(status));
        EXPECT_EQ(app.daemons.front().running, (step == Step::start) == (status == 0) ? 1 : 0);
        if (app.daemons.front().pid > 0) {
            EXPECT_EQ(xasStopAndAwait(clock, app.daemons.front()), 0);
        }
        if (dir.has("pid"))
            ::kill(std::stoi(dir.read("pid")), SIGKILL);
    }
}

INSTANTIATE_TEST_SUITE_P(All, AScriptThatMisbehaves,
                         testing::Combine(testing::Values(Step::start, Step::stop),
                                          testing::ValuesIn(SCRIPTS)),
                         nameOf);

TEST_F(AScript, TellsEachOfTheExitStatusesAtTheStartAndAtTheStop)
{
    for (int status = 1; status <= 255; ++status) {
        XasApp &app = make("/bin/sh -c exit\\ " + std::to_string(status));
        app.startScript = app.stopScript = stubs.make("script", status);
        for (const Step step : {Step::start, Step::stop}) {
            XasReplyStatus reply;
            EXPECT_EQ(run(step, app, reply), 1) << status;
            EXPECT_EQ(reply.rcode, 1U) << status;
            EXPECT_EQ(reply.rstr, reasonOf(status)) << status;
            EXPECT_EQ(app.running, 1U) << "a failure changes nothing about it";
        }
        EXPECT_EQ(xasStopAndAwait(clock, app.daemons.front()), 0);
    }
}

TEST_F(AScript, FailsWhicheverSignalEndsIt)
{
    for (int signal = 1; signal <= SIGRTMAX; ++signal) {
        if (!xasEndsAProcess(signal) || (signal > SIGSYS && signal < SIGRTMIN))
            continue;
        XasApp &app =
            make(stubs.make("script", 0, "ulimit -c 0; kill -" + std::to_string(signal) + " $$; sleep 1000"));
        for (const Step step : {Step::start, Step::stop}) {
            XasReplyStatus reply;
            EXPECT_EQ(run(step, app, reply), 1) << signal;
            EXPECT_EQ(reply.rstr, INTERNAL) << signal;
        }
        EXPECT_EQ(xasStopAndAwait(clock, app.daemons.front()), 0);
    }
}

TEST_F(AScript, ThatDiesWithTheDaemonOfItsApplicationLosesNeitherExit)
{
    for (const int status : {0, 7, 255}) {
        XasApp &app = make("");
        const std::string pid = std::to_string(app.daemons.front().pid);
        app.stopScript = stubs.make("script", status,
                                    "kill -9 " + pid + "; while kill -0 " + pid + " 2>/dev/null; do :; done");
        clock.at(clock.now() + 1250ms, // the one that follows it
                 [this] { xasAwaitExitAtMost(apps.front().daemons.front().pid, 200ms); });
        XasReplyStatus reply;
        EXPECT_EQ(xasStopApp(app, &reply), status == 0 ? 0 : 1);
        EXPECT_EQ(reply.rstr, reasonOf(status));
        // It died of itself, and so was started again while the script ran; the stop ended that one, too.
        EXPECT_EQ(app.daemons.front().running, status == 0 ? 0 : 1) << status;
        EXPECT_EQ(app.daemons.front().restarts, 1) << status;
        if (status != 0) {
            EXPECT_EQ(xasStopAndAwait(clock, app.daemons.front()), 0);
        }
    }
}
