/**
 * xasd, the application server: turns configuration messages into the appliance's configuration files and
 * running services. This file only puts the units together: options, start-up, signals, idle work, the loop.
 */
#include "core/daemon.h"
#include "core/link_watch.h"
#include "core/log.h"
#include "core/log_maintenance.h"
#include "core/pages.h"
#include "core/startup.h"
#include "core/wait.h"
#include "dispatch/ipfilter_timer.h"
#include "dispatch/process_msg.h"
#include "dispatch/setting_steps.h"

#include <cstdlib>
#include <exception>
#include <tuple>
#include <unistd.h>

namespace {

/** The exit status of a start that failed. */
constexpr int START_FAILED = -1;

int installSignals(XasAppList &apps)
{
    return xasInstallSignals({
        .terminate = [&apps] { xasTerminate(apps); },
        .alarm = [&apps] { xasMaintainLogs(apps); },
        .childExited = [&apps](pid_t pid, int status) { xasReapChild(apps, pid, status); },
    });
}

/** What is done while no message waits. */
XasIdleResult doIdleWork(XasMessage &msg)
{
    const XasIdleResult result = xasPollLinks(msg, xasIsBondingOn());
    if (result != XasIdleResult::failed)
        std::ignore = xasIPFilterTimerTick(); // it logs why it cannot
    return result;
}

/** Nothing but SIGTERM ends the daemon: what goes wrong between two messages is logged. */
void processMessage(XasAppList &apps) noexcept
{
    try {
        std::ignore = xasProcessMsg(apps, doIdleWork); // it logs why it cannot
    } catch (const std::exception &error) {
        xasLogError("%s\n", error.what());
    }
}

} // namespace

int main(int argc, char *argv[])
{
    xasResetSignals();
    const XasOptions options = xasParseOptions(argc, argv);
    if (options.exitAtOnce)
        return EXIT_SUCCESS;
    XasAppList apps;
    if (xasOpenAppList(options.listPath, apps) != 0)
        return START_FAILED;
    if (options.asDaemon) {
        if (const auto status = xasDetach())
            return *status;
    }
    xasOpenLog();
    xasLogInfo("Initializing application server\n");
    xasResetPacketFilter();
    if (installSignals(apps) != 0)
        return START_FAILED;
    xasMakeWorkDirs();
    xasAwaitMsgQueues();
    if (xasOpenLinkSocket() != 0)
        return START_FAILED;
    ::alarm(XAS_ALARM_PERIOD);
    xasReleaseStartPages();
    for (;;)
        processMessage(apps);
}
