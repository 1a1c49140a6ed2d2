#include "dispatch/process_msg.h"

#include "core/log.h"
#include "dispatch/service.h"
#include "dispatch/settings.h"
#include "files/sync.h"
#include "wire/reply_message.h"

#include <exception>

namespace {

/** The steps return true to go on; a step that returns false has logged why, and the message has failed. */
bool fail(const char *logText)
{
    xasLogError("%s", logText);
    return false;
}

bool stopIfRunning(const XasSettingWork &work)
{
    if (work.app.running != 0 && xasStopApp(work.app, &work.reply) != 0)
        return fail("Error stopping application\n");
    return true;
}

/** What is said of an exception: it fails the step that it came from. */
void noteException(const std::exception &error, XasReplyStatus &reply)
{
    xasLogError("%s\n", error.what());
    if (reply.rcode == XAS_RCODE_NONE)
        xasSetReply(reply, XAS_RCODE_MISSING, error.what());
}

/** Calls the handler, which no exception leaves. */
bool updateConfiguration(const XasSetting &setting, const XasSettingWork &work)
{
    bool updated = false;
    try {
        updated = setting.update(&work.msg, &work.app.cfgFiles, &work.reply) == 0;
    } catch (const std::exception &error) {
        noteException(error, work.reply);
    }
    if (!updated)
        xasLogError("Error updating configuration for application: %s\n", work.app.name->c_str());
    return updated;
}

bool startIfWanted(const XasSetting &setting, const XasSettingWork &work, bool startWanted)
{
    XasApp *app = startWanted ? &work.app : nullptr;
    const std::string_view other =
        setting.startedInstead != nullptr ? setting.startedInstead(work.msg) : std::string_view{};
    if (!other.empty()) {
        app = xasFindApp(other, work.apps);
        if (app == nullptr)
            return fail("Could not find application in app list\n");
    }
    if (app != nullptr && xasStartApp(*app, &work.reply) != 0)
        return fail("Error starting application\n");
    return true;
}

/** All steps for a message whose application is known. Returns true when everything succeeded. */
bool applyMessage(const XasSetting &setting, const XasSettingWork &work)
{
    const bool startWanted = xasIsStartWanted(setting, work.msg);
    if (setting.setScripts != nullptr && !setting.setScripts(work))
        return false;
    if (!stopIfRunning(work))
        return false;
    const bool updated = updateConfiguration(setting, work);
    if (!startIfWanted(setting, work, startWanted))
        return false;
    if (setting.after != nullptr && !setting.after(work, updated))
        return false;
    return updated;
}

/** False for a message with a text that would break a file or a command; it changes nothing. */
bool areTextsFit(const XasSetting &setting, const XasMessage &msg, XasReplyStatus &reply)
{
    const std::string field = xasFindUnfitText(setting.texts, msg);
    if (field.empty())
        return true;
    xasLogError("Invalid character in %s\n", field.c_str());
    xasSetReply(reply, XAS_RCODE_TEXT, "Invalid character in " + field);
    return false;
}

/** Returns true when the message was applied. */
bool handleMessage(const XasSetting &setting, XasAppList &apps, XasMessage &msg, XasReplyStatus &reply)
{
    if (!areTextsFit(setting, msg, reply))
        return false;
    if (setting.onArrival != nullptr)
        setting.onArrival();
    XasApp *app = xasFindApp(xasApplicationName(setting, msg), apps);
    if (app == nullptr)
        return fail("Could not find application in app list\n");
    return applyMessage(setting, {apps, msg, *app, reply});
}

/** As handleMessage(), which no exception leaves either: each message is answered. */
bool isApplied(const XasSetting &setting, XasAppList &apps, XasMessage &msg, XasReplyStatus &reply)
{
    try {
        return handleMessage(setting, apps, msg, reply);
    } catch (const std::exception &error) {
        noteException(error, reply);
        return false;
    }
}

int sendAcknowledgement(const XasMessage &msg, bool applied, const XasReplyStatus &reply)
{
    XasReplyPayload payload{};
    payload.success = applied ? 1 : 0;
    payload.complete = 1;
    payload.rcode = reply.rcode;
    xasSetFieldText(payload.rstr, reply.rstr);
    XasMessage answer = xasNewMessage(XMSG_ACKNAK, XAS_ACTION_RETURN);
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
    XasReplyStatus reply;
    const XasSetting *setting = xasFindSetting(msg.xH.msgtype);
    const bool applied = setting != nullptr && isApplied(*setting, apps, msg, reply);
    xasSyncTouched();
    return setting == nullptr || setting->answered ? sendAcknowledgement(msg, applied, reply) : 0;
}
