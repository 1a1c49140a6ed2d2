#include "xms/outcome.h"
#include "wire/reply_message.h"

#include "msg/type_names.h"
#include "xms/hex.h"
#include "xms/json_number.h"

#include <array>
#include <cstdio>

namespace {

std::string logText(const std::vector<std::string> &log, XmsPaint paint)
{
    std::string text;
    for (const std::string &line : log)
        text += "\n" + xmsPainted(paint, XmsInk::faint, "  log: " + xmsEscaped(line));
    return text;
}

std::string milliseconds(double ms)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.0f ms", ms);
    return text.data();
}

} // namespace

namespace {

/** As told; throws whatever when the answer is none. */
XmsOutcome outcomeFrom(std::uint32_t msgtype, const XmsJson &answer)
{
    XmsOutcome outcome;
    outcome.type = msgShortName(msgtype);
    outcome.result = answer.value("result", "");
    outcome.id = xmsNumberAt(answer, "id", std::uint32_t{0});
    outcome.problem = answer.value("problem", "");
    if (outcome.result == "sent" || outcome.result == "timeout")
        return outcome;
    const auto record = xmsRecordFromHex(answer.value("record", ""));
    if (outcome.result != "answered" || !record)
        throw std::invalid_argument{"no outcome"};
    outcome.reply = xasReadPayload<XasReplyPayload>(*record);
    outcome.result = outcome.reply.success != 0 ? "applied" : "refused";
    outcome.ms = answer.value("ms", 0.0);
    outcome.stored = answer.value("stored", false);
    return outcome;
}

} // namespace

XmsOutcome xmsOutcomeFrom(std::uint32_t msgtype, const XmsJson &answer)
{
    try {
        return outcomeFrom(msgtype, answer);
    } catch (const std::exception &) {
        throw XmsError{XmsExit::noServer, "the server's answer cannot be understood"};
    }
}

std::string xmsReplyText(const XasReplyPayload &reply, XmsPaint paint)
{
    const bool isApplied = reply.success != 0;
    const std::string result =
        xmsPainted(paint, isApplied ? XmsInk::good : XmsInk::bad, isApplied ? "applied" : "refused");
    const std::string_view reason = xasFieldText(reply.rstr);
    const std::string reasonText = reason.empty() ? "no reason given" : "\"" + xmsEscaped(reason) + "\"";
    const bool isPlainSuccess = isApplied && reason.empty();
    return result + ", rcode " + std::to_string(reply.rcode) + (isPlainSuccess ? "" : ", " + reasonText);
}

std::string xmsOutcomeText(const XmsOutcome &outcome, XmsPaint paint)
{
    const std::string start = outcome.type + " #" + std::to_string(outcome.id) + ": ";
    if (outcome.result == "sent")
        return start + "sent (never answered)";
    if (outcome.result == "timeout")
        return start + xmsPainted(paint, XmsInk::bad, "no acknowledgement in time") + ": " +
               xmsEscaped(outcome.problem);
    const std::string text = start + xmsReplyText(outcome.reply, paint) + ", " + milliseconds(outcome.ms);
    return (outcome.problem.empty() ? text : text + "; not stored: " + xmsEscaped(outcome.problem)) +
           logText(outcome.log, paint);
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
    if (!outcome.log.empty())
        json["log"] = outcome.log;
    return json;
}

XmsExit xmsOutcomeExit(const XmsOutcome &outcome)
{
    if (outcome.result == "applied" || outcome.result == "sent")
        return XmsExit::applied;
    return outcome.result == "refused" ? XmsExit::refused : XmsExit::noServer;
}
