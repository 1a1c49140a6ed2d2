#include "dispatch/process_msg.h"
#include "wire/reply_message.h"

#include "core/daemon.h"
#include "core/link_watch.h"
#include "core/log.h"
#include "core/shell.h"
#include "dispatch/dispatch_table.h"
#include "dispatch/script_params.h"
#include "dispatch/service.h"

#include <exception>

namespace {

struct BetweenMessages {
    std::uint32_t lastBondSetting = 0;
    bool syslogFirstRun = true;
};

BetweenMessages kept;

/** One message being handled. */
struct Work {
    XasAppList &apps;
    XasMessage &msg;
    const XasDispatchRow &row;
    XasApp &app;
    XasReplyStatus &reply;
};

/** The steps return true to go on; a step that returns false has logged why, and the message has failed. */
bool fail(const char *logText)
{
    xasLogError("%s", logText);
    return false;
}

/** A logger that was started before this program would keep its files: it goes at the first message. */
void replaceFirstLogger(const XasMessage &msg)
{
    if (msg.xH.msgtype != XMSG_SYSLOG || !kept.syslogFirstRun)
        return;
    xasSystem(XasShellCommand{"/bin/killall syslogd"});
    xasSystem(XasShellCommand{"/bin/killall klogd"});
    kept.syslogFirstRun = false;
}

bool setScriptParams(const Work &work)
{
    const bool hasStartScript = !work.app.startScript.value_or("").empty();
    switch (work.row.msgtype) {
    case XMSG_ETH:
        return xasSetNetScriptOpts(work.app, xasReadPayload<XasEthPayload>(work.msg), kept.lastBondSetting) ==
               0;
    case XMSG_NAT_NOTIFY:
        return !hasStartScript || xasSetNatScriptOpts(&work.msg, &work.app, work.apps) == 0;
    case XMSG_NOTIFY:
        return !hasStartScript || xasSetLinkScriptOpts(work.msg, *work.app.startScript) == 0;
    default:
        return true;
    }
}

bool stopIfRunning(const Work &work)
{
    if (work.app.running != 0 && xasStopApp(work.app, &work.reply) != 0)
        return fail("Error stopping application\n");
    return true;
}

/** Calls the handler, which no exception leaves. */
bool updateConfiguration(const Work &work)
{
    bool updated = false;
    try {
        updated =
            work.row.handler == nullptr || work.row.handler(&work.msg, &work.app.cfgFiles, &work.reply) == 0;
    } catch (const std::exception &error) {
        xasLogError("%s\n", error.what());
    }
    if (!updated)
        xasLogError("Error updating configuration for application: %s\n", work.app.name->c_str());
    return updated;
}

/** An authentication order that uses NIS starts the NIS client instead of its own application. */
bool wantsNisClient(const XasMessage &msg)
{
    return msg.xH.msgtype == XMSG_AUTH && xasPayloadValue<std::uint32_t, 132>(msg) != 0 &&
           xasPayloadValue<std::uint8_t, 121>(msg) != 0;
}

bool startIfWanted(const Work &work, bool startWanted)
{
    XasApp *app = startWanted ? &work.app : nullptr;
    if (wantsNisClient(work.msg)) {
        app = xasFindApp("ypbind", work.apps);
        if (app == nullptr)
            return fail("Could not find application in app list\n");
    }
    if (app != nullptr && xasStartApp(*app, &work.reply) != 0)
        return fail("Error starting application\n");
    return true;
}

/** The routing daemons must see new interfaces: a router that runs is restarted. */
bool restartRouter(const Work &work)
{
    if (work.row.msgtype != XMSG_ETH)
        return true;
    XasApp *router = xasFindApp("router", work.apps);
    if (router == nullptr)
        return fail("Could not find routing application in app list\n");
    if (router->running == 0)
        return true;
    if (xasStopApp(*router, &work.reply) != 0)
        return fail("Error stopping routing application\n");
    if (xasStartApp(*router, &work.reply) != 0)
        return fail("Error starting routing application\n");
    return true;
}

/** The NTP daemon resolves its servers once: new name servers restart it if it runs. */
void restartNtpDaemon(XasAppList &apps)
{
    XasApp *ntp = xasFindApp("ntp", apps);
    if (ntp == nullptr || ntp->running == 0 || ntp->daemons.empty())
        return;
    XasDaemon &daemon = ntp->daemons.front();
    if (daemon.running != 0 && daemon.pid > 0 && xasStopDaemon(&daemon) == 0)
        daemon.pid = xasStartDaemon(&daemon, *ntp);
}

void doSideEffects(const Work &work)
{
    const bool isDns = work.row.msgtype == XMSG_DNS;
    if (isDns || work.row.msgtype == XMSG_HOSTNAME)
        xasSystem(XasShellCommand{"/bin/killall -SIGHUP syslogd"});
    if (isDns) {
        xasSystem(XasShellCommand{"/bin/killall -SIGHUP snmpd"});
        restartNtpDaemon(work.apps);
    }
}

/** All steps for a message whose application is known. Returns true when everything succeeded. */
bool applyMessage(const Work &work)
{
    const bool startWanted = xasIsStartWanted(work.row, work.msg);
    if (!setScriptParams(work) || !stopIfRunning(work))
        return false;
    const bool updated = updateConfiguration(work);
    if (!startIfWanted(work, startWanted) || !restartRouter(work))
        return false;
    if (updated && work.row.msgtype == XMSG_ETH)
        kept.lastBondSetting = xasReadPayload<XasEthPayload>(work.msg).bonding;
    doSideEffects(work);
    return updated;
}

/** Returns true when the message was applied. */
bool handleMessage(XasAppList &apps, XasMessage &msg, XasReplyStatus &reply)
{
    const XasDispatchRow *row = xasFindDispatchRow(msg.xH.msgtype);
    if (row == nullptr)
        return false;
    replaceFirstLogger(msg);
    XasApp *app = xasFindApp(xasApplicationName(*row, msg), apps);
    if (app == nullptr)
        return fail("Could not find application in app list\n");
    return applyMessage({apps, msg, *row, *app, reply});
}

bool isAnswered(std::uint32_t msgtype)
{
    return msgtype != XMSG_NAT_NOTIFY && msgtype != XMSG_NOTIFY;
}

int sendAcknowledgement(const XasMessage &msg, bool applied, const XasReplyStatus &reply)
{
    XasReplyPayload payload{};
    payload.success = applied ? 1 : 0;
    payload.complete = 1;
    payload.rcode = reply.rcode;
    xasSetFieldText(payload.rstr, reply.rstr);
    XasMessage answer{};
    answer.xH.msgtype = XMSG_ACKNAK;
    answer.xH.action = XAS_ACTION_RETURN;
    answer.xH.sender = XAS_SENDER_APP;
    answer.xH.id = xasNextMsgId();
    answer.xH.orig_id = msg.xH.id;
    xasWritePayload(answer, payload);
    return xasSendMessage(&answer);
}

} // namespace

int xasProcessMsg(XasAppList &apps, const XasIdleWork &idle)
{
    XasMessage msg{};
    XasUserList users;
    const int received = xasReceiveMessage(&msg, users, idle);
    if (received != 0)
        return received;
    if (msg.xH.msgtype == XMSG_ETH)
        xasNoteEthConfigured();
    XasReplyStatus reply;
    const bool applied = handleMessage(apps, msg, reply);
    return isAnswered(msg.xH.msgtype) ? sendAcknowledgement(msg, applied, reply) : 0;
}

bool xasIsBondingOn()
{
    return kept.lastBondSetting != 0;
}
