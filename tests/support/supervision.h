/** Applications under supervision, as the daemon supervises them, in a time that passes only in waits. */
#ifndef XAS_TEST_SUPPORT_SUPERVISION_H
#define XAS_TEST_SUPPORT_SUPERVISION_H

#include "core/daemon.h"
#include "core/wait.h"
#include "support/apps.h"
#include "support/clock.h"
#include "support/log.h"
#include "support/stub.h"

/** Serves nothing, or what a test gives it. */
inline void xasServe(
    std::function<void()> terminate = [] {}, std::function<void()> alarm = [] {},
    std::function<void(pid_t, int)> childExited = [](pid_t, int) {})
{
    const XasSignalService service{
        .terminate = std::move(terminate), .alarm = std::move(alarm), .childExited = std::move(childExited)};
    EXPECT_EQ(xasInstallSignals(service), 0);
}

/** Deaths of the applications' daemons are served as in the daemon. Nothing that a test started outlives it.
 */
class XasServedTest : public testing::Test {
  protected:
    XasServedTest()
    {
        xasServe([] {}, [] {}, [this](pid_t pid, int status) { xasReapChild(apps, pid, status); });
    }

    ~XasServedTest() override
    {
        for (const XasApp &app : apps) {
            for (const XasDaemon &daemon : app.daemons) {
                if (daemon.pid > 0)
                    ::kill(daemon.pid, SIGKILL);
            }
        }
        xasServe();
    }

    XasAppList apps;
    XasTestClock clock;
    XasLogCapture log;
    XasStubs stubs;
};

class XasSupervisionTest : public XasServedTest {
  protected:
    /** Makes the one application with one daemon and gives the daemon. */
    XasDaemon &supervise(const std::string &appName, const std::string &exe)
    {
        apps = xasTestAppList({{.name = appName, .exes = {exe}}});
        return apps.front().daemons.front();
    }

    /** A daemon that stays until a signal ends it. */
    XasDaemon &superviseOneThatStays()
    {
        return supervise("app", stubs.make("daemon", 0, "exec sleep 1000"));
    }

    /** Starts the one daemon as a service start does. */
    pid_t start()
    {
        XasDaemon &daemon = apps.front().daemons.front();
        daemon.pid = xasStartDaemon(&daemon, apps.front());
        return daemon.pid;
    }

    /** Starts the one daemon and, really, waits until its program has begun. */
    pid_t startAndAwait()
    {
        clock.at(clock.now() + std::chrono::milliseconds{150}, [this] { ASSERT_TRUE(stubs.await(1)); });
        return start();
    }
};

inline std::string xasStartedText(pid_t pid, const std::string &program)
{
    return "[" + std::to_string(pid) + "] " + program + " started\n";
}

inline std::string xasEndedText(pid_t pid, const std::string &how)
{
    return "PID[" + std::to_string(pid) + "] " + how + " on sig Child exited\n";
}

#endif
