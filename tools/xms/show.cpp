#include "xms/show.h"
#include "wire/reply_message.h"

#include "msg/print.h"
#include "msg/type_names.h"
#include "msg/values.h"
#include "wire/message_names.h"
#include "xms/users.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>

namespace {

std::span<const std::byte> bytesOf(const XasMessage &record)
{
    return std::as_bytes(std::span{&record, 1});
}

/** The fields that are in use; none for a type that is not described. */
std::vector<XasMsgFieldAt> usedFields(const XasMessage &record)
{
    const XasMsgFields *fields = msgFieldsOf(record.xH.msgtype);
    std::vector<XasMsgFieldAt> list =
        fields == nullptr ? std::vector<XasMsgFieldAt>{} : xasListFields(*fields);
    std::erase_if(list, [&](const XasMsgFieldAt &where) { return !xasIsUsed(bytesOf(record), where); });
    return list;
}

std::string clockText(std::int64_t timeMs)
{
    const auto seconds = static_cast<std::time_t>(timeMs / 1000);
    std::tm local{};
    localtime_r(&seconds, &local);
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d:%02d.%03d", local.tm_hour, local.tm_min, local.tm_sec,
                  static_cast<int>(timeMs % 1000));
    return text.data();
}

std::string nameOrNumber(std::string_view name, std::uint32_t number)
{
    return name.empty() ? std::to_string(number) : std::string{name};
}

std::string padded(std::string text, std::size_t width)
{
    if (text.size() < width)
        text.append(width - text.size(), ' ');
    return text;
}

/** What a message says, in one line; an acknowledgement by its outcome. */
std::string summary(const XasMessage &record, XmsPaint paint)
{
    if (record.xH.msgtype != XMSG_ACKNAK)
        return xmsFieldsLine(record);
    const auto reply = xasReadPayload<XasReplyPayload>(record);
    if (reply.success != 0)
        return xmsPainted(paint, XmsInk::good, "applied");
    const std::string_view reason = xasFieldText(reply.rstr);
    return xmsPainted(paint, XmsInk::bad, "refused") + " rcode=" + std::to_string(reply.rcode) +
           (reason.empty() ? "" : " rstr=" + xmsQuoted(reason));
}

std::string oddText(const XmsTraffic &traffic)
{
    return "odd record of " + std::to_string(traffic.bytes.size()) + " bytes, " +
           std::to_string(XAS_MESSAGE_SIZE) + " expected";
}

XmsJson valueJson(std::span<const std::byte> bytes, const XasMsgFieldAt &where)
{
    switch (where.field->kind) {
    case XasFieldKind::flag:
        return msgValueNumber(bytes, where.place) != 0;
    case XasFieldKind::number:
        return msgValueNumber(bytes, where.place);
    case XasFieldKind::integer:
        return static_cast<std::int32_t>(msgValueNumber(bytes, where.place));
    default:
        return msgValueText(bytes, where);
    }
}

} // namespace

std::string xmsPainted(XmsPaint paint, XmsInk ink, std::string_view text)
{
    static constexpr std::array<std::string_view, 4> CODES = {"\033[32m", "\033[31m", "\033[2m", "\033[1m"};
    if (paint == XmsPaint::plain)
        return std::string{text};
    return std::string{CODES[static_cast<std::size_t>(ink)]} + std::string{text} + "\033[0m";
}

std::string xmsEscaped(std::string_view text)
{
    std::string escaped;
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        std::array<char, 5> number{};
        std::snprintf(number.data(), number.size(), "\\x%02x", static_cast<unsigned>(code));
        if (character == '\n')
            escaped += "\\n";
        else if (code < 0x20 || code == 0x7F)
            escaped += number.data();
        else
            escaped += character;
    }
    return escaped;
}

std::string xmsQuoted(std::string_view text)
{
    std::string escaped = xmsEscaped(text);
    if (!text.empty() && escaped.find_first_of(" \"") == std::string::npos)
        return escaped;
    std::string quoted = "\"";
    for (const char character : escaped) {
        if (character == '"')
            quoted += '\\';
        quoted += character;
    }
    return quoted + "\"";
}

std::string xmsFieldsLine(const XasMessage &record)
{
    const auto bytes = bytesOf(record);
    std::string line;
    for (const XasMsgFieldAt &where : usedFields(record)) {
        if (xasIsZero(bytes, where.place))
            continue;
        line += (line.empty() ? "" : " ") + where.name + "=" + xmsQuoted(msgValueText(bytes, where));
    }
    return line;
}

std::string xmsFieldsTable(const XasMessage &record)
{
    std::vector<std::vector<std::string>> rows;
    for (const XasMsgFieldAt &where : usedFields(record))
        rows.push_back({where.name, xmsEscaped(msgValueText(bytesOf(record), where))});
    return xmsAligned(rows);
}

XmsJson xmsFieldsJson(const XasMessage &record)
{
    XmsJson json = XmsJson::object();
    for (const XasMsgFieldAt &where : usedFields(record))
        json[where.name] = valueJson(bytesOf(record), where);
    return json;
}

XasMessage xmsTrafficMessage(const XmsTraffic &traffic)
{
    XasMessage record{};
    if (traffic.bytes.size() == sizeof record)
        std::memcpy(&record, traffic.bytes.data(), sizeof record);
    return record;
}

namespace {

/** The lines of a dump as a terminal may have them. */
std::string escapedLines(std::string_view text)
{
    std::string escaped;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        escaped += xmsEscaped(line);
        text.remove_prefix(line.size());
        escaped += text.empty() ? "" : "\n";
        text.remove_prefix(text.empty() ? 0 : 1);
    }
    return escaped;
}

} // namespace

std::string xmsTrafficDump(const XmsTraffic &traffic, const XasMessage &last, XmsPaint paint)
{
    const std::string start = xmsPainted(paint, XmsInk::faint, clockText(traffic.timeMs)) +
                              (traffic.toDaemon ? "  -> xasd\n" : "  <- xasd\n");
    if (traffic.toDaemon && xmsUserCount(traffic.bytes.size())) {
        const auto users = std::span{traffic.bytes}.subspan(XAS_PAYLOAD_OFFSET);
        return start + escapedLines(msgAllText(last, users).substr(msgAllText(last).size()));
    }
    if (traffic.bytes.size() != XAS_MESSAGE_SIZE)
        return start + xmsPainted(paint, XmsInk::bad, oddText(traffic)) + "\n";
    const XasMessage record = xmsTrafficMessage(traffic);
    return start + escapedLines(msgBasicText(&record) + msgAllText(record));
}

std::string xmsTrafficLine(const XmsTraffic &traffic, XmsPaint paint)
{
    const std::string start =
        xmsPainted(paint, XmsInk::faint, clockText(traffic.timeMs)) + (traffic.toDaemon ? "  -> " : "  <- ");
    if (traffic.toDaemon && xmsUserCount(traffic.bytes.size()))
        return start + xmsUsersText(traffic.bytes);
    if (traffic.bytes.size() != XAS_MESSAGE_SIZE)
        return start + xmsPainted(paint, XmsInk::bad, oddText(traffic));
    const XasMessage record = xmsTrafficMessage(traffic);
    const XasMsgHeader &head = record.xH;
    std::string line = start + padded(nameOrNumber(xasSenderName(head.sender), head.sender), 3) + "  " +
                       padded(nameOrNumber(xasActionName(head.action), head.action), 6) + "  " +
                       xmsPainted(paint, XmsInk::strong, padded(msgShortName(head.msgtype), 10)) + "  " +
                       padded("#" + std::to_string(head.id), 4);
    if (head.orig_id != 0)
        line += "  to #" + std::to_string(head.orig_id);
    const std::string text = summary(record, paint);
    line = text.empty() ? line : line + "  " + text;
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

XmsJson xmsTrafficJson(const XmsTraffic &traffic)
{
    XmsJson json = {{"time_ms", traffic.timeMs},
                    {"direction", traffic.toDaemon ? "to-daemon" : "from-daemon"},
                    {"size", traffic.bytes.size()}};
    if (traffic.bytes.size() != XAS_MESSAGE_SIZE)
        return json;
    const XasMessage record = xmsTrafficMessage(traffic);
    json["type"] = msgShortName(record.xH.msgtype);
    json["action"] = nameOrNumber(xasActionName(record.xH.action), record.xH.action);
    json["sender"] = nameOrNumber(xasSenderName(record.xH.sender), record.xH.sender);
    json["id"] = record.xH.id;
    json["orig_id"] = record.xH.orig_id;
    json["fields"] = xmsFieldsJson(record);
    return json;
}

std::string xmsLogLineText(const XmsLogLine &line, XmsPaint paint)
{
    return xmsPainted(paint, XmsInk::faint, clockText(line.timeMs) + "  log " + xmsEscaped(line.text));
}

XmsJson xmsLogJson(const XmsLogLine &line)
{
    return {{"time_ms", line.timeMs}, {"log", line.text}};
}

std::string xmsJsonLine(const XmsJson &json)
{
    return json.dump(-1, ' ', false, XmsJson::error_handler_t::replace);
}

std::string xmsAligned(const std::vector<std::vector<std::string>> &rows, std::string_view indent)
{
    std::vector<std::size_t> widths;
    for (const auto &row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size());
    }
    std::string text;
    for (const auto &row : rows) {
        std::string line{indent};
        for (std::size_t i = 0; i < row.size(); ++i)
            line += i + 1 == row.size() ? row[i] : padded(row[i], widths[i] + 2);
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}
