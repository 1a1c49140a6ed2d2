#include "xms/watch.h"

#include "wire/reply_message.h"
#include "xms/error.h"
#include "xms/protocol.h"
#include "xms/record.h"
#include "xms/secrets.h"

#include <algorithm>
#include <cstdio>

namespace {

/** Messages that were never answered are forgotten, the oldest first. */
constexpr std::size_t PENDING_MAX = 256;

struct Display {
    const XmsOptions &options;
    bool isDump;
    XmsKnownSecrets secrets = {};
    XasMessage last = {}; /**< the message to the daemon that a list of users may follow */
};

std::string textOf(const XmsTraffic &traffic, Display &display)
{
    const XmsOptions &options = display.options;
    const XmsTraffic shown = options.secrets ? traffic : xmsMasked(traffic);
    const XasMessage last = display.last;
    if (traffic.toDaemon)
        display.last = xmsTrafficMessage(shown);
    if (options.json)
        return xmsJsonLine(xmsTrafficJson(shown));
    return display.isDump ? xmsTrafficDump(shown, last, options.paint) : xmsTrafficLine(shown, options.paint);
}

std::string textOf(const XmsLogLine &line, const Display &display)
{
    const XmsOptions &options = display.options;
    const XmsLogLine shown = {line.timeMs, options.secrets ? line.text : display.secrets.hide(line.text)};
    return options.json ? xmsJsonLine(xmsLogJson(shown)) : xmsLogLineText(shown, options.paint);
}

void show(Display &display, const XmsEvent &event)
{
    const std::string text = std::visit([&](const auto &each) { return textOf(each, display); }, event);
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

void XmsWatchFilter::remember(const XmsTraffic &traffic, const XasMessage &setting)
{
    if (!xmsIsAnswered(setting.xH.msgtype))
        return;
    if (pending.size() == PENDING_MAX)
        pending.pop_front();
    pending.push_back({setting.xH.id, {traffic}});
}

std::vector<XmsEvent> XmsWatchFilter::passLog(const XmsLogLine &line)
{
    if (wanted.empty() && !isRefusedOnly)
        return {line};
    if (pending.empty())
        return {};
    if (!isRefusedOnly)
        return {line};
    pending.front().held.emplace_back(line);
    return {};
}

/** What is no record belongs to the message in front of it. */
std::vector<XmsEvent> XmsWatchFilter::passUsers(const XmsTraffic &traffic)
{
    if (!areUsersWanted)
        return {};
    if (!isRefusedOnly)
        return {traffic};
    if (!pending.empty())
        pending.back().held.emplace_back(traffic);
    return {};
}

std::vector<XmsEvent> XmsWatchFilter::passAnswer(const XmsTraffic &traffic, const XasMessage &answer)
{
    const auto asked = std::ranges::find(pending, answer.xH.orig_id, &Pending::id);
    if (asked == pending.end())
        return {};
    std::vector<XmsEvent> shown;
    if (isRefusedOnly)
        shown = std::move(asked->held);
    pending.erase(asked);
    if (isRefusedOnly && xasReadPayload<XasReplyPayload>(answer).success != 0)
        return {};
    shown.emplace_back(traffic);
    return shown;
}

std::vector<XmsEvent> XmsWatchFilter::passRecord(const XmsTraffic &traffic)
{
    const XasMessage record = xmsTrafficMessage(traffic);
    const bool isNamed = isWanted(record.xH.msgtype);
    if (xmsIsAnswer(traffic) && (isRefusedOnly || !isNamed))
        return passAnswer(traffic, record);
    if (traffic.toDaemon) {
        areUsersWanted = isNamed && record.xH.action == XAS_ACTION_SET;
        if (areUsersWanted)
            remember(traffic, record);
    }
    return isNamed && !isRefusedOnly ? std::vector<XmsEvent>{traffic} : std::vector<XmsEvent>{};
}

std::vector<XmsEvent> XmsWatchFilter::pass(const XmsEvent &event)
{
    if (const auto *line = std::get_if<XmsLogLine>(&event))
        return passLog(*line);
    const auto &traffic = std::get<XmsTraffic>(event);
    if (wanted.empty() && !isRefusedOnly)
        return {traffic};
    if (traffic.bytes.size() == XAS_MESSAGE_SIZE)
        return passRecord(traffic);
    return traffic.toDaemon ? passUsers(traffic) : std::vector<XmsEvent>{};
}

XmsExit xmsWatchCommand(const XmsOptions &options, const XmsWatchOptions &watch)
{
    XmsWatchFilter filter{typesOf(watch.types), watch.only == "refused"};
    XmsFeed feed{options.socket, options.logs};
    Display display{.options = options, .isDump = watch.dump};
    while (const auto events = feed.next()) {
        for (const XmsEvent &event : *events) {
            if (const auto *traffic = std::get_if<XmsTraffic>(&event))
                display.secrets.learn(*traffic);
            for (const XmsEvent &shown : filter.pass(event))
                show(display, shown);
        }
    }
    throw XmsError{XmsExit::noServer, "the server has ended"};
}
