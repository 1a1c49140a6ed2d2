#include "xms/serve.h"
#include "wire/reply_message.h"

#include "msg/type_names.h"
#include "xms/clients.h"
#include "xms/error.h"
#include "xms/hex.h"
#include "xms/json_number.h"
#include "xms/protocol.h"
#include "xms/queues.h"
#include "xms/secrets.h"
#include "xms/store.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <deque>
#include <unistd.h>

namespace {

/** Message queues cannot be polled for, so they are looked at this often: while an answer is awaited, more
 * and more seldom the longer it takes, and else. */
constexpr std::chrono::milliseconds SHORTEST_INTERVAL{2};
constexpr std::chrono::milliseconds IDLE_INTERVAL{20};
constexpr int PARTS_OF_WAIT = 10;

/** What the daemon's queue had no room for yet. */
struct Outgoing {
    XasMessage record;
    std::vector<std::byte> users = {}; /**< the list that goes out behind it; empty: none */
    bool isBegun = false;              /**< the record is out, its users are not */
};

struct Server {
    const XmsServeOptions &options;
    XmsDescriptor listener;
    XmsDescriptor signals;
    XmsQueues queues;
    std::deque<Outgoing> outgoing;
    XmsClients clients;
    XmsProtocol protocol;
    XmsClock::time_point lastTraffic = XmsClock::now();
};

std::span<const std::byte> bytesOf(const XasMessage &record)
{
    return std::as_bytes(std::span{&record, 1});
}

/** Shows one record here and to all who watch. */
void showTraffic(Server &server, bool toDaemon, std::span<const std::byte> bytes)
{
    server.lastTraffic = XmsClock::now();
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const XmsTraffic traffic{std::chrono::duration_cast<std::chrono::milliseconds>(now).count(),
                             toDaemon,
                             {bytes.begin(), bytes.end()}};
    const XmsJson line = {
        {"time_ms", traffic.timeMs}, {"to_daemon", traffic.toDaemon}, {"bytes", xmsToHex(bytes)}};
    xmsTellWatchers(server.clients, xmsJsonLine(line));
    if (server.options.quiet)
        return;
    const XmsTraffic shown = server.options.secrets ? traffic : xmsMasked(traffic);
    const std::string text = server.options.json ? xmsJsonLine(xmsTrafficJson(shown))
                                                 : xmsTrafficLine(shown, server.options.paint);
    std::puts(text.c_str());
    std::fflush(stdout);
}

/** A remark on what happened, beside the traffic. */
void remark(const std::string &text)
{
    std::fprintf(stderr, "xms: %s\n", text.c_str());
}

void tellProblem(Server &server, int client, const char *result, const std::string &problem)
{
    xmsTell(server.clients, client, xmsJsonLine({{"result", result}, {"problem", problem}}));
}

// what clients ask for

/** Whoever would wait longer for an acknowledgement waits so long. */
constexpr std::chrono::milliseconds LONGEST_WAIT = std::chrono::hours{24};

void doSet(Server &server, int client, const XmsJson &command)
{
    const auto setting = xmsRecordFromHex(command.at("record").get<std::string>());
    if (!setting)
        return tellProblem(server, client, "error", "not a record");
    const auto users = xmsFromHex(command.value("users", ""));
    const std::size_t largest = xmsLargestEntry(server.queues);
    if (!users || users->size() > largest)
        return tellProblem(server, client, "error",
                           "the list of users is too long for a message queue, which takes " +
                               std::to_string(largest) + " bytes (kernel.msgmax, kernel.msgmnb)");
    const std::chrono::milliseconds timeout{
        std::clamp(xmsNumberAt<std::int64_t>(command, "timeout_ms"), std::int64_t{0}, LONGEST_WAIT.count())};
    const XasMessage record = xmsEnterSetting(server.protocol, *setting, client, XmsClock::now() + timeout);
    server.outgoing.push_back({record, *users});
    if (!xmsIsAnswered(record.xH.msgtype))
        xmsTell(server.clients, client, xmsJsonLine({{"result", "sent"}, {"id", record.xH.id}}));
}

void doGet(Server &server, int client, const XmsJson &command)
{
    const auto request = xmsRecordFromHex(command.at("record").get<std::string>());
    if (!request)
        return tellProblem(server, client, "error", "not a record");
    const auto stored = xmsReadStored(*request);
    const XmsJson record = stored ? XmsJson(xmsToHex(*stored)) : XmsJson(nullptr);
    xmsTell(server.clients, client, xmsJsonLine({{"result", "stored"}, {"record", record}}));
}

void doGetAll(Server &server, int client)
{
    XmsJson records = XmsJson::array();
    for (const XasMessage &record : xmsReadAllStored())
        records.push_back(xmsToHex(record));
    xmsTell(server.clients, client, xmsJsonLine({{"result", "stored"}, {"records", records}}));
}

void doWatch(Server &server, int client)
{
    server.clients.all.at(client).watches = true;
    xmsTell(server.clients, client, xmsJsonLine({{"result", "watching"}}));
}

void doCommand(Server &server, int client, const std::string &line)
{
    try {
        const XmsJson command = XmsJson::parse(line);
        const auto what = command.at("do").get<std::string>();
        if (what == "set")
            doSet(server, client, command);
        else if (what == "get")
            doGet(server, client, command);
        else if (what == "get_all")
            doGetAll(server, client);
        else if (what == "watch")
            doWatch(server, client);
        else
            tellProblem(server, client, "error", "unknown command " + what);
    } catch (const std::exception &error) {
        tellProblem(server, client, "error", error.what());
    }
}

// what the daemon sends

/** Keeps an applied setting; returns what went wrong, if anything. */
std::string keep(const XasMessage &setting)
{
    if (!xmsIsKept(setting.xH.msgtype))
        return {};
    std::string problem = xmsStoreApplied(setting);
    if (!problem.empty())
        remark(problem);
    return problem;
}

void takeAcknowledgement(Server &server, const XasMessage &acknowledgement)
{
    const auto answered = xmsTakeAnswered(server.protocol, acknowledgement);
    if (!answered)
        return remark("this answers nothing that was sent");
    const bool isApplied = xasReadPayload<XasReplyPayload>(acknowledgement).success != 0;
    const std::string problem = isApplied ? keep(answered->setting) : "";
    const bool isStored = isApplied && problem.empty() && xmsIsKept(answered->setting.xH.msgtype);
    const auto now = XmsClock::now();
    const std::chrono::duration<double, std::milli> taken = now - answered->sent.value_or(now);
    xmsTell(server.clients, answered->client,
            xmsJsonLine({{"result", "answered"},
                         {"id", answered->setting.xH.id},
                         {"record", xmsToHex(acknowledgement)},
                         {"ms", taken.count()},
                         {"stored", isStored},
                         {"problem", problem}}));
}

/** Answers go before settings: the daemon waits for the next record it gets. But users follow their message.
 */
void sendAhead(Server &server, const XasMessage &answer)
{
    const bool isBegun = !server.outgoing.empty() && server.outgoing.front().isBegun;
    server.outgoing.insert(server.outgoing.begin() + (isBegun ? 1 : 0), {answer});
}

void takeReport(Server &server, const XasMessage &report)
{
    const XasMessage setting = xmsCompleteReport(report, xmsReadStored(report));
    sendAhead(server, xmsAnswerReport(server.protocol, report, keep(setting)));
}

void takeRecord(Server &server, const XasMessage &record)
{
    switch (xmsArrivalOf(record)) {
    case XmsArrival::acknowledgement:
        return takeAcknowledgement(server, record);
    case XmsArrival::request:
        return sendAhead(server, xmsAnswerRequest(server.protocol, record, xmsReadStored(record)));
    case XmsArrival::report:
        return takeReport(server, record);
    case XmsArrival::event:
        return;
    }
}

void receiveAll(Server &server)
{
    while (const auto bytes = xmsReceive(server.queues)) {
        showTraffic(server, false, *bytes);
        if (bytes->size() != sizeof(XasMessage))
            continue;
        XasMessage record;
        std::memcpy(&record, bytes->data(), sizeof record);
        takeRecord(server, record);
    }
}

// what goes out

/** Sends what is left of one entry; false when the queue is full. */
bool sendOne(Server &server, Outgoing &outgoing)
{
    if (!outgoing.isBegun) {
        if (!xmsSend(server.queues, outgoing.record))
            return false;
        outgoing.isBegun = true;
        xmsMarkSent(server.protocol, outgoing.record.xH.id, XmsClock::now());
        showTraffic(server, true, bytesOf(outgoing.record));
    }
    if (outgoing.users.empty())
        return true;
    if (!xmsSendUsers(server.queues, outgoing.users))
        return false;
    showTraffic(server, true, outgoing.users);
    return true;
}

void sendAll(Server &server)
{
    while (!server.outgoing.empty() && sendOne(server, server.outgoing.front()))
        server.outgoing.pop_front();
}

/** Why an acknowledgement may be missing. */
std::string timeoutCause(const Server &server, const XmsPending &expired)
{
    if (!expired.sent)
        return "not even sent, the queue is full and nobody reads it; is xasd running?";
    if (xmsUnread(server.queues) > 0)
        return "nobody reads the queue; is xasd running?";
    return "it was taken from the queue but not answered";
}

void expire(Server &server)
{
    for (const XmsPending &expired : xmsExpire(server.protocol, XmsClock::now())) {
        const std::uint32_t id = expired.setting.xH.id;
        if (!expired.sent)
            std::erase_if(server.outgoing,
                          [id](const Outgoing &outgoing) { return outgoing.record.xH.id == id; });
        const std::string cause = timeoutCause(server, expired);
        remark(msgShortName(expired.setting.xH.msgtype) + " #" + std::to_string(id) +
               ": no acknowledgement in time: " + cause);
        xmsTell(server.clients, expired.client,
                xmsJsonLine({{"result", "timeout"}, {"id", id}, {"problem", cause}}));
    }
}

// the loop

/** How long the queues are left alone: a slow machine has better things to do than to look at them. */
std::chrono::milliseconds interval(const Server &server)
{
    const bool isAwaited = std::ranges::any_of(server.protocol.pending, &XmsPending::client);
    if (!isAwaited && server.outgoing.empty())
        return IDLE_INTERVAL;
    const auto waited =
        std::chrono::duration_cast<std::chrono::milliseconds>(XmsClock::now() - server.lastTraffic);
    return std::clamp(waited / PARTS_OF_WAIT, SHORTEST_INTERVAL, IDLE_INTERVAL);
}

/** Waits for something to do; true when it is time to end. */
bool waitForWork(Server &server)
{
    std::vector<pollfd> waits = {{server.signals.get(), POLLIN, 0}, {server.listener.get(), POLLIN, 0}};
    xmsAddToPoll(server.clients, waits);
    poll(waits.data(), waits.size(), static_cast<int>(interval(server).count()));
    return (waits.front().revents & POLLIN) != 0;
}

void serveOnce(Server &server)
{
    xmsAcceptClients(server.clients, server.listener);
    xmsReadClients(server.clients,
                   [&](int client, const std::string &line) { doCommand(server, client, line); });
    receiveAll(server);
    sendAll(server);
    expire(server);
    xmsFlushClients(server.clients);
    for (const int client : xmsDropGone(server.clients))
        xmsForgetClient(server.protocol, client);
}

/** Takes socket and queues away when the server ends, however it ends. */
struct CleanUp {
    const Server &server;
    ~CleanUp()
    {
        unlink(server.options.socket.c_str());
        if (!server.options.keepQueues)
            xmsRemoveQueues(server.queues);
    }
};

/** A daemon may still answer what an earlier server sent, so ids go on from a point it did not reach. */
std::uint32_t firstId(const XmsQueues &queues)
{
    return queues.found ? static_cast<std::uint32_t>(std::time(nullptr)) : 1;
}

} // namespace

void xmsServe(const XmsServeOptions &options)
{
    Server server{.options = options,
                  .listener = xmsListen(options.socket),
                  .signals = xmsCatchEnd(),
                  .queues = xmsOpenQueues(),
                  .outgoing = {},
                  .clients = {},
                  .protocol = {}};
    server.protocol.nextId = firstId(server.queues);
    remark("serving at " + options.socket + (server.queues.found ? ", queues found" : ", queues made"));
    const CleanUp cleanUp{server};
    while (!waitForWork(server))
        serveOnce(server);
    remark("ended");
}
