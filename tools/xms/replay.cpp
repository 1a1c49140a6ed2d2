#include "xms/replay.h"
#include "wire/reply_message.h"

#include "msg/type_names.h"
#include "xms/asking.h"
#include "xms/recording.h"
#include "xms/setting.h"

#include <cstdio>

namespace {

void requireSecrets(const XmsRecordedSetting &setting)
{
    std::string names;
    for (const std::string &name : setting.masked)
        names += (names.empty() ? "" : ", ") + name;
    if (!names.empty())
        throw XmsError{XmsExit::usage, msgShortName(setting.record.xH.msgtype) + " #" +
                                           std::to_string(setting.record.xH.id) +
                                           " was recorded without its secrets (" + names +
                                           "): what is to be replayed is recorded with --secrets"};
}

std::vector<XmsRecordedSetting> readRecording(const std::string &path)
{
    std::ifstream file;
    auto settings = xmsRecordedSettings(xmsOpenInput(path, file), path);
    for (const XmsRecordedSetting &setting : settings) {
        requireSecrets(setting);
        xmsRequireMatchingCount(setting.record, setting.users);
    }
    return settings;
}

/** True unless the setting ended differently when it was recorded. */
bool isAsRecorded(const XmsOutcome &outcome, const XmsRecordedSetting &setting)
{
    const XasReplyPayload &now = outcome.reply;
    return !setting.reply ||
           ((now.success != 0) == (setting.reply->success != 0) && now.rcode == setting.reply->rcode &&
            xasFieldText(now.rstr) == xasFieldText(setting.reply->rstr));
}

XmsJson replayedJson(const XmsOutcome &outcome, const XmsRecordedSetting &setting)
{
    XmsJson json = xmsOutcomeJson(outcome);
    if (setting.reply) {
        json["recorded"] = {{"success", setting.reply->success != 0},
                            {"rcode", setting.reply->rcode},
                            {"rstr", xasFieldText(setting.reply->rstr)}};
        json["same"] = isAsRecorded(outcome, setting);
    }
    return json;
}

void print(const XmsOptions &options, const XmsOutcome &outcome, const XmsRecordedSetting &setting)
{
    std::string text = xmsOutcomeText(outcome, options.paint);
    if (!isAsRecorded(outcome, setting))
        text += "\n  " + xmsPainted(options.paint, XmsInk::bad, "recorded otherwise") + ": " +
                xmsReplyText(*setting.reply, options.paint);
    std::printf("%s\n", options.json ? xmsJsonLine(replayedJson(outcome, setting)).c_str() : text.c_str());
    std::fflush(stdout);
}

} // namespace

XmsExit xmsReplayCommand(const XmsOptions &options, const std::string &path, double timeoutSeconds)
{
    const auto settings = readRecording(path);
    const XmsDescriptor server = xmsConnect(options.socket);
    std::size_t others = 0;
    for (const XmsRecordedSetting &setting : settings) {
        const XmsOutcome outcome = xmsAskToSet(server, setting.record, setting.users, timeoutSeconds);
        print(options, outcome, setting);
        if (xmsOutcomeExit(outcome) == XmsExit::noServer)
            return XmsExit::noServer;
        others += isAsRecorded(outcome, setting) ? 0 : 1;
    }
    if (!options.json)
        std::printf("%zu settings replayed, %s\n", settings.size(),
                    others == 0 ? "all as recorded" : (std::to_string(others) + " not as recorded").c_str());
    return others == 0 ? XmsExit::applied : XmsExit::refused;
}
