#include "xms/asking.h"

#include "xms/hex.h"
#include "xms/json_number.h"

#include <poll.h>

namespace {

XmsError notUnderstood()
{
    return {XmsExit::noServer, "the server's answer cannot be understood"};
}

/** The text called `key`; empty when there is none. */
std::string textAt(const XmsJson &answer, const char *key)
{
    const auto found = answer.find(key);
    return found != answer.end() && found->is_string() ? found->get<std::string>() : "";
}

XmsJson ask(const XmsDescriptor &server, const XmsJson &command, const XmsPatience &patience = {})
{
    std::string buffer;
    xmsSendLine(server, xmsJsonLine(command));
    if (patience.tell) {
        pollfd answer{server.get(), POLLIN, 0};
        if (::poll(&answer, 1, static_cast<int>(patience.limit.count())) == 0)
            patience.tell();
    }
    return xmsReadAnswer(server, buffer);
}

} // namespace

XmsJson xmsReadAnswer(const XmsDescriptor &server, std::string &buffer)
{
    const auto line = xmsReadLine(server, buffer);
    if (!line)
        throw XmsError{XmsExit::noServer, "the server has ended"};
    XmsJson answer = XmsJson::parse(*line, nullptr, false);
    if (!answer.is_object() || textAt(answer, "result").empty())
        throw notUnderstood();
    if (textAt(answer, "result") == "error")
        throw XmsError{XmsExit::noServer, "the server says: " + textAt(answer, "problem")};
    return answer;
}

XmsOutcome xmsAskToSet(const XmsDescriptor &server, const XasMessage &record, const XmsUserEntry &users,
                       double timeoutSeconds, const XmsPatience &patience)
{
    const XmsJson answer = ask(server,
                               {{"do", "set"},
                                {"record", xmsToHex(record)},
                                {"users", xmsToHex(users)},
                                {"timeout_ms", static_cast<std::int64_t>(timeoutSeconds * 1000)}},
                               patience);
    return xmsOutcomeFrom(record.xH.msgtype, answer);
}

std::optional<XasMessage> xmsAskStored(const XmsDescriptor &server, const XasMessage &request)
{
    const XmsJson answer = ask(server, {{"do", "get"}, {"record", xmsToHex(request)}});
    const auto record = answer.find("record");
    if (record == answer.end() || !record->is_string())
        return std::nullopt;
    return xmsRecordFromHex(record->get<std::string>());
}

std::vector<XasMessage> xmsAskAllStored(const XmsDescriptor &server)
{
    std::vector<XasMessage> records;
    for (const auto &hex : ask(server, {{"do", "get_all"}}).value("records", std::vector<std::string>{})) {
        if (const auto record = xmsRecordFromHex(hex))
            records.push_back(*record);
    }
    return records;
}

void xmsAskToWatch(const XmsDescriptor &server, std::string &buffer)
{
    xmsSendLine(server, xmsJsonLine({{"do", "watch"}}));
    if (textAt(xmsReadAnswer(server, buffer), "result") != "watching")
        throw notUnderstood();
}

XmsTraffic xmsTrafficFrom(const XmsJson &line)
{
    try {
        return {xmsNumberAt(line, "time_ms", std::int64_t{0}), line.value("to_daemon", false),
                xmsFromHex(line.value("bytes", "")).value_or(std::vector<std::byte>{})};
    } catch (const std::exception &) {
        throw notUnderstood();
    }
}
