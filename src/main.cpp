/**
 * xasd, the application server: turns configuration messages into the appliance's configuration files and
 * running services. This file only puts the units together: options, start-up, signals, idle work, the loop.
 */
#include "core/daemon.h"
#include "core/link_watch.h"
#include "core/log.h"
#include "core/log_maintenance.h"
#include "core/startup.h"
#include "core/wait.h"
#include "dispatch/ipfilter_timer.h"
#include "dispatch/process_msg.h"
#include "dispatch/setting_steps.h"

#include <cstdlib>
#include <unistd.h>

namespace {

/** The exit status of a start that failed. */
constexpr int START_FAILED = -1;

void installSignals(XasAppList &apps)
{
    xasInstallSignals({
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
        xasIPFilterTimerTick();
    return result;
}

} // namespace

int main(int argc, char *argv[])
{
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
    installSignals(apps);
    xasMakeWorkDirs();
    xasAwaitMsgQueues();
    if (xasOpenLinkSocket() != 0)
        return START_FAILED;
    ::alarm(XAS_ALARM_PERIOD);
    for (;;)
        xasProcessMsg(apps, doIdleWork);
}
