#include "dispatch/setting_steps.h"

#include "auth/auth_message.h"
#include "core/daemon.h"
#include "core/link_watch.h"
#include "core/log.h"
#include "core/shell.h"
#include "dispatch/script_params.h"
#include "dispatch/service.h"

namespace {

struct BetweenMessages {
    std::uint32_t lastBondSetting = 0;
    bool syslogFirstRun = true;
};

BetweenMessages kept;

bool hasStartScript(const XasApp &app)
{
    return !app.startScript.value_or("").empty();
}

int restartRouter(const XasSettingWork &work)
{
    XasApp *router = xasFindApp("router", work.apps);
    if (router == nullptr)
        return xasLogFailure("Could not find routing application in app list\n");
    if (router->running == 0)
        return 0;
    if (xasStopApp(*router, &work.reply) != 0)
        return xasLogFailure("Error stopping routing application\n");
    if (xasStartApp(*router, &work.reply) != 0)
        return xasLogFailure("Error starting routing application\n");
    return 0;
}

/** The NTP daemon resolves its servers once. */
void restartNtpDaemon(XasAppList &apps)
{
    XasApp *ntp = xasFindApp("ntp", apps);
    if (ntp == nullptr || ntp->running == 0 || ntp->daemons.empty())
        return;
    XasDaemon &daemon = ntp->daemons.front();
    if (daemon.running != 0 && daemon.pid > 0 && xasStopDaemon(&daemon) == 0)
        daemon.pid = xasStartDaemon(&daemon, *ntp);
}

} // namespace

void xasNoteEthArrived()
{
    xasNoteEthConfigured();
}

void xasReplaceFirstLogger()
{
    if (!kept.syslogFirstRun)
        return;
    xasTrySystem(XasShellCommand{"/bin/killall syslogd"});
    xasTrySystem(XasShellCommand{"/bin/killall klogd"});
    kept.syslogFirstRun = false;
}

bool xasSetEthScripts(const XasSettingWork &work)
{
    const auto eth = xasReadPayload<XasEthPayload>(work.msg);
    return xasSetNetScriptOpts(work.app, eth, kept.lastBondSetting) == 0;
}

bool xasSetNatScript(const XasSettingWork &work)
{
    return !hasStartScript(work.app) || xasSetNatScriptOpts(&work.msg, &work.app, work.apps) == 0;
}

bool xasSetLinkScript(const XasSettingWork &work)
{
    return !hasStartScript(work.app) || xasSetLinkScriptOpts(work.msg, *work.app.startScript) == 0;
}

std::string_view xasNisClientFor(const XasMessage &msg)
{
    const auto auth = xasReadPayload<XasAuthPayload>(msg);
    return auth.start_nis != 0 && auth.nis != 0 ? "ypbind" : "";
}

bool xasFinishEth(const XasSettingWork &work, bool updated)
{
    if (restartRouter(work) != 0)
        return false;
    if (updated)
        kept.lastBondSetting = xasReadPayload<XasEthPayload>(work.msg).bonding;
    return true;
}

bool xasTellLogger(const XasSettingWork & /*work*/, bool /*updated*/)
{
    xasTrySystem(XasShellCommand{"/bin/killall -SIGHUP syslogd"});
    return true;
}

bool xasTellResolverUsers(const XasSettingWork &work, bool updated)
{
    xasTellLogger(work, updated);
    xasTrySystem(XasShellCommand{"/bin/killall -SIGHUP snmpd"});
    restartNtpDaemon(work.apps);
    return true;
}

bool xasIsBondingOn()
{
    return kept.lastBondSetting != 0;
}
