#include "xms/watch.h"

#include "wire/reply_message.h"
#include "xms/asking.h"
#include "xms/record.h"

#include <algorithm>
#include <cstdio>

namespace {

/** Messages that were never answered are forgotten, the oldest first. */
constexpr std::size_t PENDING_MAX = 256;

void show(const std::string &text)
{
    std::printf("%s\n", text.c_str());
    std::fflush(stdout);
}

std::vector<std::uint32_t> typesOf(const std::vector<std::string> &names)
{
    std::vector<std::uint32_t> types;
    types.reserve(names.size());
    for (const std::string &name : names)
        types.push_back(xmsTypeFromText(name));
    return types;
}

} // namespace

XmsWatchFilter::XmsWatchFilter(std::vector<std::uint32_t> types, bool refusedOnly)
    : wanted{std::move(types)}, isRefusedOnly{refusedOnly}
{
}

bool XmsWatchFilter::isWanted(std::uint32_t msgtype) const
{
    return wanted.empty() || std::ranges::find(wanted, msgtype) != wanted.end();
}

void XmsWatchFilter::remember(const XmsTraffic &traffic, std::uint32_t id)
{
    if (pending.size() == PENDING_MAX)
        pending.pop_front();
    pending.push_back({id, {traffic}});
}

/** What is no record belongs to the message in front of it. */
std::vector<XmsTraffic> XmsWatchFilter::passUsers(const XmsTraffic &traffic)
{
    if (!areUsersWanted)
        return {};
    if (!isRefusedOnly)
        return {traffic};
    if (!pending.empty())
        pending.back().records.push_back(traffic);
    return {};
}

std::vector<XmsTraffic> XmsWatchFilter::passAnswer(const XmsTraffic &traffic, const XasMessage &answer)
{
    const auto asked = std::ranges::find(pending, answer.xH.orig_id, &Pending::id);
    if (asked == pending.end())
        return {};
    std::vector<XmsTraffic> shown;
    if (isRefusedOnly)
        shown = std::move(asked->records);
    pending.erase(asked);
    if (isRefusedOnly && xasReadPayload<XasReplyPayload>(answer).success != 0)
        return {};
    shown.push_back(traffic);
    return shown;
}

std::vector<XmsTraffic> XmsWatchFilter::pass(const XmsTraffic &traffic)
{
    if (wanted.empty() && !isRefusedOnly)
        return {traffic};
    if (traffic.bytes.size() != XAS_MESSAGE_SIZE)
        return traffic.toDaemon ? passUsers(traffic) : std::vector<XmsTraffic>{};
    const XasMessage record = xmsTrafficMessage(traffic);
    const bool isNamed = isWanted(record.xH.msgtype);
    if (!traffic.toDaemon) {
        const bool isAnswer = record.xH.msgtype == XMSG_ACKNAK && (isRefusedOnly || !isNamed);
        if (isAnswer)
            return passAnswer(traffic, record);
        return isNamed && !isRefusedOnly ? std::vector<XmsTraffic>{traffic} : std::vector<XmsTraffic>{};
    }
    areUsersWanted = isNamed && record.xH.action == XAS_ACTION_SET;
    if (areUsersWanted)
        remember(traffic, record.xH.id);
    return isNamed && !isRefusedOnly ? std::vector<XmsTraffic>{traffic} : std::vector<XmsTraffic>{};
}

XmsExit xmsWatchCommand(const XmsOptions &options, const XmsWatchOptions &watch)
{
    XmsWatchFilter filter{typesOf(watch.types), watch.only == "refused"};
    const XmsDescriptor server = xmsConnect(options.socket);
    std::string buffer;
    xmsAskToWatch(server, buffer);
    XasMessage last{};
    for (;;) {
        for (const XmsTraffic &traffic : filter.pass(xmsTrafficFrom(xmsReadAnswer(server, buffer)))) {
            if (options.json)
                show(xmsJsonLine(xmsTrafficJson(traffic)));
            else
                show(watch.dump ? xmsTrafficDump(traffic, last, options.paint)
                                : xmsTrafficLine(traffic, options.paint));
            if (traffic.toDaemon)
                last = xmsTrafficMessage(traffic);
        }
    }
}
