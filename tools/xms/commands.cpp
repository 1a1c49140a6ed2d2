#include "xms/commands.h"

#include "msg/type_names.h"
#include "xms/asking.h"
#include "xms/hex.h"
#include "xms/protocol.h"
#include "xms/secrets.h"
#include "xms/settings_file.h"

#include <cstdio>

namespace {

void print(const std::string &line)
{
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

/** The stored record with the named fields set over it, or the setting's own when there is nothing to start
 * from. */
XasMessage overStored(const XmsDescriptor &server, const XmsSetting &setting, const XmsSetOptions &set)
{
    const XasMessage &record = setting.record;
    if (set.fresh || !set.rawFile.empty() || !xmsIsKept(record.xH.msgtype))
        return record;
    auto stored = xmsAskStored(server, record);
    if (!stored)
        return record;
    xmsAnnounceUsers(*stored, setting.users); // the list itself is not stored
    xmsAssign(*stored, setting.assignments, xmsCheckOf(set));
    xmsRequireFitTexts(*stored, set);
    return *stored;
}

/** What has been logged, without the secrets of the setting. */
std::vector<std::string> logLines(XmsLogs &logs, const XmsSetting &setting, bool withSecrets)
{
    XmsKnownSecrets secrets;
    secrets.learn(setting.record);
    secrets.learn(XmsTraffic{0, true, setting.users});
    std::vector<std::string> lines;
    for (const XmsLogLine &line : logs.settle())
        lines.push_back(withSecrets ? line.text : secrets.hide(line.text));
    return lines;
}

/** The stored record that is asked for. Throws XmsError. */
std::vector<XasMessage> storedOf(const XmsDescriptor &server, const XmsGetOptions &get)
{
    XasMessage request = xmsDefaultRecord(xmsTypeFromText(get.type));
    xmsAssign(request, xmsParseAssignments(get.keys));
    const auto stored = xmsAskStored(server, request);
    if (!stored)
        throw XmsError{XmsExit::refused, "nothing is stored for " + msgLongName(request.xH.msgtype)};
    return {*stored};
}

void printRecord(const XmsOptions &options, const XmsGetOptions &get, const XasMessage &record)
{
    const bool isDescribed = msgFieldsOf(record.xH.msgtype) != nullptr;
    if (get.all)
        print(xmsPainted(options.paint, XmsInk::strong, msgShortName(record.xH.msgtype)));
    if (options.json)
        print(xmsJsonLine({{"type", msgShortName(record.xH.msgtype)}, {"fields", xmsFieldsJson(record)}}));
    else if (isDescribed)
        std::fputs(xmsFieldsTable(record).c_str(), stdout);
    else
        print(options.secrets ? xmsToHex(record.payload)
                              : "  not described, and may hold secrets: --secrets shows its bytes");
}

} // namespace

XmsOutcome xmsSendSetting(const XmsOptions &options, const XmsDescriptor &server, const XmsSetting &setting,
                          double timeoutSeconds)
{
    const auto tellSlow = [&] {
        std::fprintf(stderr, "xms: %s is being applied, waiting up to %g s\n",
                     msgShortName(setting.record.xH.msgtype).c_str(), timeoutSeconds);
    };
    XmsLogs logs{options.logs};
    XmsOutcome outcome =
        xmsAskToSet(server, setting.record, setting.users, timeoutSeconds, {.tell = tellSlow});
    if (outcome.result == "refused")
        outcome.log = logLines(logs, setting, options.secrets);
    print(options.json ? xmsJsonLine(xmsOutcomeJson(outcome)) : xmsOutcomeText(outcome, options.paint));
    return outcome;
}

XmsExit xmsSetCommand(const XmsOptions &options, const XmsSetOptions &set)
{
    XmsSetting setting = xmsSettingFrom(set);
    const XmsDescriptor server = xmsConnect(options.socket);
    setting.record = overStored(server, setting, set);
    return xmsOutcomeExit(xmsSendSetting(options, server, setting, set.timeoutSeconds));
}

XmsExit xmsGetCommand(const XmsOptions &options, const XmsGetOptions &get)
{
    const XmsDescriptor server = xmsConnect(options.socket);
    std::vector<XasMessage> records = get.all ? xmsAskAllStored(server) : storedOf(server, get);
    if (!options.secrets)
        std::ranges::transform(records, records.begin(), xmsMaskedRecord);
    if (get.yaml)
        std::fputs((xmsSettingsHead(options.secrets) + xmsSettingsYaml(records)).c_str(), stdout);
    else if (get.all && options.json)
        print(xmsJsonLine(xmsSettingsJson(records)));
    else
        for (const XasMessage &record : records)
            printRecord(options, get, record);
    return XmsExit::applied;
}
