#include "xms/recording.h"
#include "wire/reply_message.h"

#include "msg/type_names.h"
#include "xms/error.h"
#include "xms/hex.h"
#include "xms/json_number.h"
#include "xms/secrets.h"

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

/** The bytes that passed. */
std::vector<std::byte> bytesOf(const XmsJson &line)
{
    if (!line.contains("users") && !line.contains("bytes")) {
        const XasMessage record = messageOf(line);
        const auto bytes = std::as_bytes(std::span{&record, 1});
        return {bytes.begin(), bytes.end()};
    }
    const bool isList = line.contains("users");
    const auto bytes = xmsFromHex(line.at(isList ? "users" : "bytes").get<std::string>());
    if (!bytes || (isList && !xmsUserCount(bytes->size())))
        throw std::invalid_argument{"no list"};
    return *bytes;
}

XmsRecordedEvent eventOf(const XmsJson &line)
{
    const auto timeMs = line.value("time_ms", std::int64_t{0});
    if (line.contains("log"))
        return XmsLogLine{timeMs, line.at("log").get<std::string>()};
    if (line.contains("file"))
        return XmsFileChange{timeMs, line.at("file").get<std::string>(),
                             line.at("difference").get<std::string>(), line.value("closed", false)};
    return XmsRecordedTraffic{{timeMs, line.at("to_daemon").get<bool>(), bytesOf(line)},
                              line.value("masked", std::vector<std::string>{})};
}

/** Of a setting whose list has not come yet. */
bool awaitsUsers(const XmsRecordedSetting &setting)
{
    return setting.record.xH.msgtype == XMSG_LOCALUSERS && setting.users.empty();
}

void addUsers(std::vector<XmsRecordedSetting> &settings, const XmsRecordedTraffic &list)
{
    const auto setting = std::find_if(settings.rbegin(), settings.rend(), awaitsUsers);
    if (setting == settings.rend())
        throw std::invalid_argument{"belongs to nothing"};
    setting->users = list.traffic.bytes;
    setting->masked.insert(setting->masked.end(), list.masked.begin(), list.masked.end());
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

void addTraffic(std::vector<XmsRecordedSetting> &settings, const XmsRecordedTraffic &recorded)
{
    const XmsTraffic &traffic = recorded.traffic;
    if (traffic.toDaemon && xmsUserCount(traffic.bytes.size()))
        return addUsers(settings, recorded);
    if (traffic.bytes.size() != XAS_MESSAGE_SIZE)
        return;
    const XasMessage record = xmsTrafficMessage(traffic);
    if (traffic.toDaemon && record.xH.action == XAS_ACTION_SET)
        settings.push_back({.record = record, .masked = recorded.masked});
    else if (!traffic.toDaemon && record.xH.msgtype == XMSG_ACKNAK)
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

XmsJson xmsRecordingLine(const XmsTraffic &traffic, bool withSecrets)
{
    if (const auto names = xmsSecretFields(traffic); !withSecrets && !names.empty()) {
        XmsJson line = xmsRecordingLine(xmsMasked(traffic), true);
        line["masked"] = names;
        return line;
    }
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

XmsJson xmsChangeLine(const XmsFileChange &change)
{
    XmsJson line = {{"time_ms", change.timeMs}, {"file", change.path}, {"difference", change.difference}};
    if (change.isClosed)
        line["closed"] = true;
    return line;
}

void xmsReadRecording(std::istream &recording, const std::string &name,
                      const std::function<void(XmsRecordedEvent)> &take)
{
    std::string text;
    for (std::size_t number = 1; std::getline(recording, text); ++number) {
        try {
            const XmsJson line = XmsJson::parse(text);
            number == 1 ? requireStart(line) : take(eventOf(line));
        } catch (const std::exception &) {
            throw XmsError{XmsExit::usage,
                           name + ":" + std::to_string(number) + ": this is no line of a recording of xms"};
        }
    }
}

std::vector<XmsRecordedSetting> xmsRecordedSettings(std::istream &recording, const std::string &name)
{
    std::vector<XmsRecordedSetting> settings;
    xmsReadRecording(recording, name, [&](const XmsRecordedEvent &event) {
        if (const auto *recorded = std::get_if<XmsRecordedTraffic>(&event))
            addTraffic(settings, *recorded);
    });
    return settings;
}
