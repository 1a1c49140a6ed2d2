#include "xms/protocol.h"
#include "wire/reply_message.h"

#include "config/firewall_message.h"
#include "msg/fields.h"

#include <algorithm>

namespace {

void fillHeader(XmsProtocol &protocol, XasMessage &record, XasAction action, std::uint32_t origId)
{
    record.xH.action = action;
    record.xH.sender = XMS_SENDER;
    record.xH.id = protocol.nextId++;
    record.xH.orig_id = origId;
    record.xH.reserved = {};
}

auto hasId(std::uint32_t id)
{
    return [id](const XmsPending &pending) {
        return pending.setting.xH.id == id;
    };
}

} // namespace

XmsArrival xmsArrivalOf(const XasMessage &record)
{
    if (record.xH.msgtype == XMSG_ACKNAK)
        return XmsArrival::acknowledgement;
    if (!xmsIsAnswered(record.xH.msgtype))
        return XmsArrival::event;
    if (record.xH.action == XAS_ACTION_GET)
        return XmsArrival::request;
    return record.xH.action == XAS_ACTION_SET ? XmsArrival::report : XmsArrival::event;
}

bool xmsIsAnswered(std::uint32_t msgtype)
{
    const XasMsgFields *fields = msgFieldsOf(msgtype);
    return fields == nullptr || fields->answered;
}

bool xmsIsKept(std::uint32_t msgtype)
{
    const XasMsgFields *fields = msgFieldsOf(msgtype);
    return fields == nullptr || fields->stored;
}

XasMessage xmsEnterSetting(XmsProtocol &protocol, XasMessage setting, int client,
                           XmsClock::time_point deadline)
{
    fillHeader(protocol, setting, XAS_ACTION_SET, 0);
    if (xmsIsAnswered(setting.xH.msgtype))
        protocol.pending.push_back({setting, client, deadline, std::nullopt});
    return setting;
}

void xmsMarkSent(XmsProtocol &protocol, std::uint32_t id, XmsClock::time_point now)
{
    const auto found = std::ranges::find_if(protocol.pending, hasId(id));
    if (found != protocol.pending.end())
        found->sent = now;
}

std::optional<XmsPending> xmsTakeAnswered(XmsProtocol &protocol, const XasMessage &acknowledgement)
{
    const auto found = std::ranges::find_if(protocol.pending, hasId(acknowledgement.xH.orig_id));
    if (found == protocol.pending.end())
        return std::nullopt;
    const XmsPending answered = *found;
    protocol.pending.erase(found);
    return answered;
}

std::vector<XmsPending> xmsExpire(XmsProtocol &protocol, XmsClock::time_point now)
{
    std::vector<XmsPending> expired;
    for (XmsPending &pending : protocol.pending) {
        if (pending.deadline <= now && (pending.client != 0 || !pending.sent))
            expired.push_back(pending);
        if (pending.deadline <= now)
            pending.client = 0;
    }
    std::erase_if(protocol.pending, [&](const XmsPending &p) { return p.deadline <= now && !p.sent; });
    return expired;
}

void xmsForgetClient(XmsProtocol &protocol, int client)
{
    for (XmsPending &pending : protocol.pending) {
        if (pending.client == client)
            pending.client = 0;
    }
}

XasMessage xmsAnswerRequest(XmsProtocol &protocol, const XasMessage &request,
                            const std::optional<XasMessage> &stored)
{
    XasMessage answer = stored.value_or(XasMessage{});
    answer.xH.msgtype = request.xH.msgtype;
    fillHeader(protocol, answer, XAS_ACTION_RETURN, request.xH.id);
    return answer;
}

XasMessage xmsCompleteReport(const XasMessage &report, const std::optional<XasMessage> &stored)
{
    if (report.xH.msgtype != XMSG_FIREWALL || !stored)
        return report;
    const auto told = xasReadPayload<XasFirewallPayload>(report);
    auto settings = xasReadPayload<XasFirewallPayload>(*stored);
    settings.enabled = told.enabled;
    settings.test_time = told.test_time;
    XasMessage complete = *stored;
    xasWritePayload(complete, settings);
    return complete;
}

XasMessage xmsAnswerReport(XmsProtocol &protocol, const XasMessage &report, std::string_view problem)
{
    XasReplyPayload reply{};
    reply.success = problem.empty() ? 1 : 0;
    reply.complete = 1;
    reply.rcode = problem.empty() ? 0 : 1;
    xasSetFieldText(reply.rstr, problem);
    XasMessage answer{};
    answer.xH.msgtype = XMSG_ACKNAK;
    xasWritePayload(answer, reply);
    fillHeader(protocol, answer, XAS_ACTION_RETURN, report.xH.id);
    return answer;
}
