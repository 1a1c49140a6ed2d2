#include "xms/xms_commands.h"

#include "msg/msg_type_names.h"
#include "xms/xms_hex.h"
#include "xms/xms_protocol.h"
#include "xms/xms_record.h"
#include "xms/xms_socket.h"
#include "xms/xms_users.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>

namespace {

void print(const std::string &line)
{
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

std::string milliseconds(double ms)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.0f ms", ms);
    return text.data();
}

/** The server's next line; the server's own complaints are thrown. */
XmsJson readAnswer(const XmsDescriptor &server, std::string &buffer)
{
    const auto line = xmsReadLine(server, buffer);
    if (!line)
        throw XmsError{XmsExit::noServer, "the server has ended"};
    XmsJson answer = XmsJson::parse(*line, nullptr, false);
    if (!answer.is_object())
        throw XmsError{XmsExit::noServer, "the server's answer cannot be understood"};
    if (answer.value("result", "") == "error")
        throw XmsError{XmsExit::noServer, "the server says: " + answer.value("problem", "")};
    return answer;
}

XmsJson ask(const XmsDescriptor &server, const XmsJson &command)
{
    std::string buffer;
    xmsSendLine(server, xmsJsonLine(command));
    return readAnswer(server, buffer);
}

std::optional<XasMessage> askStored(const XmsDescriptor &server, const XasMessage &request)
{
    const XmsJson answer = ask(server, {{"do", "get"}, {"record", xmsToHex(request)}});
    const auto record = answer.find("record");
    if (record == answer.end() || !record->is_string())
        return std::nullopt;
    return xmsRecordFromHex(record->get<std::string>());
}

std::string readHexFile(const std::string &path)
{
    std::ifstream file;
    if (path != "-")
        file.open(path);
    std::istream &input = path == "-" ? std::cin : file;
    if (!input)
        throw XmsError{XmsExit::usage, "cannot read " + path};
    return {std::istreambuf_iterator<char>{input}, {}};
}

/** What is to be sent. */
struct Setting {
    XasMessage record{};
    std::vector<XmsAssignment> assignments; /**< those that set the record's own fields */
    XmsUserEntry users;                     /**< the list behind XMSG_LOCALUSERS */
};

XasValueCheck checkOf(const XmsSetOptions &set)
{
    return set.force ? XasValueCheck::anyThatFits : XasValueCheck::allowed;
}

/** The setting, as far as it can be built, and checked, without the server. */
Setting settingFromOptions(const XmsSetOptions &set)
{
    Setting setting{.record = xmsDefaultRecord(xmsTypeFromText(set.type)),
                    .assignments = xmsParseAssignments(set.assignments),
                    .users = {}};
    if (!set.rawFile.empty())
        xmsSetRawPayload(setting.record, readHexFile(set.rawFile));
    if (setting.record.xH.msgtype == XMSG_LOCALUSERS)
        setting.users = xmsTakeUsers(setting.assignments, checkOf(set));
    if (set.rawFile.empty())
        xmsAnnounceUsers(setting.record, setting.users);
    xmsAssign(setting.record, setting.assignments, checkOf(set));
    if (!set.force)
        xmsRequireMatchingCount(setting.record, setting.users);
    return setting;
}

/** The stored record with the named fields set over it, or the setting's own when there is nothing to start
 * from. */
XasMessage overStored(const XmsDescriptor &server, const Setting &setting, const XmsSetOptions &set)
{
    const XasMessage &record = setting.record;
    if (set.fresh || !set.rawFile.empty() || !xmsIsKept(record.xH.msgtype))
        return record;
    auto stored = askStored(server, record);
    if (!stored)
        return record;
    xmsAnnounceUsers(*stored, setting.users); // the list itself is not stored
    xmsAssign(*stored, setting.assignments, checkOf(set));
    return *stored;
}

XmsTraffic trafficFrom(const XmsJson &line)
{
    return {line.value("time_ms", std::int64_t{0}), line.value("to_daemon", false),
            xmsFromHex(line.value("bytes", "")).value_or(std::vector<std::byte>{})};
}

} // namespace

XmsOutcome xmsOutcomeFrom(std::uint32_t msgtype, const XmsJson &answer)
{
    XmsOutcome outcome;
    outcome.type = xasMsgShortName(msgtype);
    outcome.result = answer.value("result", "");
    outcome.id = answer.value("id", std::uint32_t{0});
    outcome.problem = answer.value("problem", "");
    if (outcome.result == "sent" || outcome.result == "timeout")
        return outcome;
    const auto record = xmsRecordFromHex(answer.value("record", ""));
    if (outcome.result != "answered" || !record)
        throw XmsError{XmsExit::noServer, "the server's answer cannot be understood"};
    outcome.reply = xasReadPayload<XasReplyPayload>(*record);
    outcome.result = outcome.reply.success != 0 ? "applied" : "refused";
    outcome.ms = answer.value("ms", 0.0);
    outcome.stored = answer.value("stored", false);
    return outcome;
}

std::string xmsOutcomeText(const XmsOutcome &outcome, XmsPaint paint)
{
    const std::string start = outcome.type + " #" + std::to_string(outcome.id) + ": ";
    if (outcome.result == "sent")
        return start + "sent (never answered)";
    if (outcome.result == "timeout")
        return start + xmsPainted(paint, XmsInk::bad, "no acknowledgement in time") + ": " + outcome.problem;
    const XmsInk ink = outcome.reply.success != 0 ? XmsInk::good : XmsInk::bad;
    const std::string_view reason = xasFieldText(outcome.reply.rstr);
    const std::string reasonText = reason.empty() ? "no reason given" : "\"" + xmsEscaped(reason) + "\"";
    const bool isPlainSuccess = outcome.reply.success != 0 && reason.empty();
    std::string text = start + xmsPainted(paint, ink, outcome.result) + ", rcode " +
                       std::to_string(outcome.reply.rcode) + (isPlainSuccess ? "" : ", " + reasonText) +
                       ", " + milliseconds(outcome.ms);
    return outcome.problem.empty() ? text : text + "; not stored: " + outcome.problem;
}

XmsJson xmsOutcomeJson(const XmsOutcome &outcome)
{
    XmsJson json = {{"type", outcome.type}, {"id", outcome.id}, {"result", outcome.result}};
    if (outcome.result == "applied" || outcome.result == "refused") {
        json["success"] = outcome.reply.success != 0;
        json["complete"] = outcome.reply.complete != 0;
        json["rcode"] = outcome.reply.rcode;
        json["rstr"] = xasFieldText(outcome.reply.rstr);
        json["ms"] = outcome.ms;
        json["stored"] = outcome.stored;
    }
    if (!outcome.problem.empty())
        json["problem"] = outcome.problem;
    return json;
}

XmsExit xmsOutcomeExit(const XmsOutcome &outcome)
{
    if (outcome.result == "applied" || outcome.result == "sent")
        return XmsExit::applied;
    return outcome.result == "refused" ? XmsExit::refused : XmsExit::noServer;
}

XmsExit xmsSetCommand(const XmsOptions &options, const XmsSetOptions &set)
{
    const Setting setting = settingFromOptions(set);
    const XmsDescriptor server = xmsConnect(options.socket);
    const XasMessage record = overStored(server, setting, set);
    const XmsJson answer =
        ask(server, {{"do", "set"},
                     {"record", xmsToHex(record)},
                     {"users", xmsToHex(setting.users)},
                     {"timeout_ms", static_cast<std::int64_t>(set.timeoutSeconds * 1000)}});
    const XmsOutcome outcome = xmsOutcomeFrom(record.xH.msgtype, answer);
    print(options.json ? xmsJsonLine(xmsOutcomeJson(outcome)) : xmsOutcomeText(outcome, options.paint));
    return xmsOutcomeExit(outcome);
}

XmsExit xmsGetCommand(const XmsOptions &options, const std::string &type,
                      const std::vector<std::string> &keys)
{
    XasMessage request = xmsDefaultRecord(xmsTypeFromText(type));
    xmsAssign(request, xmsParseAssignments(keys));
    const auto stored = askStored(xmsConnect(options.socket), request);
    if (!stored)
        throw XmsError{XmsExit::refused, "nothing is stored for " + xasMsgLongName(request.xH.msgtype)};
    const bool isDescribed = xasMsgFieldsOf(stored->xH.msgtype) != nullptr;
    if (options.json)
        print(
            xmsJsonLine({{"type", xasMsgShortName(stored->xH.msgtype)}, {"fields", xmsFieldsJson(*stored)}}));
    else if (isDescribed)
        std::fputs(xmsFieldsTable(*stored).c_str(), stdout);
    else
        print(xmsToHex(stored->payload));
    return XmsExit::applied;
}

XmsExit xmsWatchCommand(const XmsOptions &options)
{
    const XmsDescriptor server = xmsConnect(options.socket);
    std::string buffer;
    xmsSendLine(server, xmsJsonLine({{"do", "watch"}}));
    for (;;) {
        const XmsTraffic traffic = trafficFrom(readAnswer(server, buffer));
        print(options.json ? xmsJsonLine(xmsTrafficJson(traffic)) : xmsTrafficLine(traffic, options.paint));
    }
}
