#include "xms/feed.h"

#include "xms/asking.h"
#include "xms/error.h"

#include <algorithm>
#include <array>
#include <poll.h>
#include <sys/socket.h>

namespace {

/** Log files are looked at this often while nothing passes. */
constexpr int LOG_INTERVAL_MS = 100;

void append(std::vector<XmsEvent> &events, const std::vector<XmsLogLine> &lines)
{
    events.insert(events.end(), lines.begin(), lines.end());
}

/** Reads what has arrived; false when the server has ended. */
bool readInto(std::string &buffer, const XmsDescriptor &server)
{
    std::array<char, 16384> block;
    const ssize_t size = recv(server.get(), block.data(), block.size(), 0);
    buffer.append(block.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    return size > 0;
}

} // namespace

bool xmsIsAnswer(const XmsTraffic &traffic)
{
    return !traffic.toDaemon && xmsTrafficMessage(traffic).xH.msgtype == XMSG_ACKNAK;
}

XmsFeed::XmsFeed(const std::string &socket, const std::vector<std::string> &paths, const XmsDescriptor *end)
    : logs{paths}, server{xmsConnect(socket)}, ends{end}
{
    xmsAskToWatch(server, buffer);
}

void XmsFeed::takeLine(const std::string &line, std::vector<XmsEvent> &events)
{
    XmsJson json = XmsJson::parse(line, nullptr, false);
    if (!json.is_object())
        throw XmsError{XmsExit::noServer, "the server's answer cannot be understood"};
    XmsTraffic traffic = xmsTrafficFrom(json);
    if (traffic.toDaemon) { // what is new in the log by now was hardly there before it
        events.emplace_back(std::move(traffic));
        return append(events, logs.take());
    }
    std::vector<XmsLogLine> lines = xmsIsAnswer(traffic) ? settle() : logs.take();
    for (XmsLogLine &each : lines) // it was logged before, but read only now
        each.timeMs = std::min(each.timeMs, traffic.timeMs);
    append(events, lines);
    events.emplace_back(std::move(traffic));
}

/** As long as nothing else passes: what is logged from then on belongs to that. */
std::vector<XmsLogLine> XmsFeed::settle()
{
    return logs.settle([&](std::chrono::milliseconds time) {
        pollfd more{server.get(), POLLIN, 0};
        return buffer.empty() && poll(&more, 1, static_cast<int>(time.count())) == 0;
    });
}

XmsFeed::Wait XmsFeed::wait() const
{
    std::array<pollfd, 2> waits = {
        {{server.get(), POLLIN, 0}, {ends == nullptr ? -1 : ends->get(), POLLIN, 0}}};
    poll(waits.data(), waits.size(), LOG_INTERVAL_MS);
    if (waits.front().revents != 0)
        return Wait::server;
    return waits.back().revents != 0 ? Wait::end : Wait::log;
}

std::optional<std::vector<XmsEvent>> XmsFeed::next()
{
    std::vector<XmsEvent> events;
    while (events.empty()) {
        if (const auto line = xmsTakeLine(buffer)) {
            takeLine(*line, events);
            continue;
        }
        const Wait what = wait();
        if (what == Wait::log)
            append(events, logs.take());
        else if (what == Wait::end || !readInto(buffer, server))
            return std::nullopt;
    }
    return events;
}
