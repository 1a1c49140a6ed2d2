#include "xms/recording.h"
#include "wire/reply_message.h"

#include "msg/type_names.h"
#include "xms/error.h"
#include "xms/hex.h"
#include "xms/json_number.h"

#include <algorithm>

namespace {

constexpr int VERSION = 1;

/** The payload without the zeroes at its end. */
std::span<const std::byte> usedPart(const XasMessage &record)
{
    const auto isUsed = [](std::byte byte) {
        return byte != std::byte{0};
    };
    const auto last = std::find_if(record.payload.rbegin(), record.payload.rend(), isUsed);
    return std::span{record.payload}.first(static_cast<std::size_t>(record.payload.rend() - last));
}

XasMessage messageOf(const XmsJson &line)
{
    const auto msgtype = msgTypeFromText(line.at("type").get<std::string>());
    const auto payload = xmsFromHex(line.at("payload").get<std::string>());
    if (!msgtype || !payload || payload->size() > XAS_PAYLOAD_SIZE)
        throw std::invalid_argument{"neither type nor payload"};
    XasMessage record{};
    record.xH.msgtype = *msgtype;
    record.xH.action = xmsNumberAt<std::uint32_t>(line, "action");
    record.xH.sender = xmsNumberAt<std::uint32_t>(line, "sender");
    record.xH.id = xmsNumberAt<std::uint32_t>(line, "id");
    record.xH.orig_id = xmsNumberAt<std::uint32_t>(line, "orig_id");
    std::ranges::copy(*payload, record.payload.begin());
    return record;
}

/** The setting that a list of users or an acknowledgement belongs to. */
XmsRecordedSetting &last(std::vector<XmsRecordedSetting> &settings, auto belongs)
{
    const auto found = std::find_if(settings.rbegin(), settings.rend(), belongs);
    if (found == settings.rend())
        throw std::invalid_argument{"belongs to nothing"};
    return *found;
}

void addUsers(std::vector<XmsRecordedSetting> &settings, const XmsJson &line)
{
    const auto users = xmsFromHex(line.at("users").get<std::string>());
    if (!users || !xmsUserCount(users->size()))
        throw std::invalid_argument{"no list"};
    last(settings, [](const XmsRecordedSetting &setting) {
        return setting.record.xH.msgtype == XMSG_LOCALUSERS && setting.users.empty();
    }).users = *users;
}

void addReply(std::vector<XmsRecordedSetting> &settings, const XasMessage &record)
{
    const auto isAnswered = [&](const XmsRecordedSetting &setting) {
        return setting.record.xH.id == record.xH.orig_id && !setting.reply;
    };
    const auto found = std::ranges::find_if(settings, isAnswered);
    if (found != settings.end()) // else it answers what was sent before the recording began
        found->reply = xasReadPayload<XasReplyPayload>(record);
}

void addLine(std::vector<XmsRecordedSetting> &settings, const XmsJson &line)
{
    const bool toDaemon = line.at("to_daemon").get<bool>();
    if (line.contains("users"))
        return addUsers(settings, line);
    if (line.contains("bytes"))
        return;
    const XasMessage record = messageOf(line);
    if (toDaemon && record.xH.action == XAS_ACTION_SET)
        settings.push_back({.record = record});
    else if (!toDaemon && record.xH.msgtype == XMSG_ACKNAK)
        addReply(settings, record);
}

void requireStart(const XmsJson &line)
{
    if (line.at("recording") != "xms" || line.at("version") != VERSION)
        throw std::invalid_argument{"another format"};
}

} // namespace

XmsJson xmsRecordingStart()
{
    return {{"recording", "xms"}, {"version", VERSION}};
}

XmsJson xmsRecordingLine(const XmsTraffic &traffic)
{
    XmsJson line = {{"time_ms", traffic.timeMs}, {"to_daemon", traffic.toDaemon}};
    if (traffic.bytes.size() != sizeof(XasMessage)) {
        const bool isList = traffic.toDaemon && xmsUserCount(traffic.bytes.size());
        line[isList ? "users" : "bytes"] = xmsToHex(traffic.bytes);
        return line;
    }
    XasMessage record;
    std::memcpy(&record, traffic.bytes.data(), sizeof record);
    line["type"] = msgShortName(record.xH.msgtype);
    line["action"] = record.xH.action;
    line["sender"] = record.xH.sender;
    line["id"] = record.xH.id;
    line["orig_id"] = record.xH.orig_id;
    line["payload"] = xmsToHex(usedPart(record));
    return line;
}

std::vector<XmsRecordedSetting> xmsRecordedSettings(std::istream &recording, const std::string &name)
{
    std::vector<XmsRecordedSetting> settings;
    std::string text;
    for (std::size_t number = 1; std::getline(recording, text); ++number) {
        try {
            const XmsJson line = XmsJson::parse(text);
            number == 1 ? requireStart(line) : addLine(settings, line);
        } catch (const std::exception &) {
            throw XmsError{XmsExit::usage,
                           name + ":" + std::to_string(number) + ": this is no line of a recording of xms"};
        }
    }
    return settings;
}
