/**
 * The message tool: values, records shown, recordings, the lines of its socket, what the daemon sends.
 *
 * An input: which, a type, a field, and the text or the bytes. What must hold:
 *  - what is shown of a field can be set again, and is then shown the same; a value that is refused changes
 * nothing;
 *  - whatever a record holds, it is shown in lines without control characters;
 *  - what is recorded is read as what it was; a line that is none is a complaint, never anything else;
 *  - an acknowledgement answers one setting, once.
 */
#include "msg/print.h"
#include "msg/values.h"
#include "support/fuzz.h"
#include "wire/control.h"
#include "xms/asking.h"
#include "xms/error.h"
#include "xms/hex.h"
#include "xms/outcome.h"
#include "xms/protocol.h"
#include "xms/record.h"
#include "xms/recording.h"
#include "xms/show.h"

#include <algorithm>
#include <array>
#include <set>
#include <sstream>

namespace {

std::span<std::byte> bytesOf(XasMessage &msg)
{
    return std::as_writable_bytes(std::span{&msg, 1});
}

void requireLine(std::string_view text, const char *what)
{
    xasFuzzRequire(std::ranges::none_of(text, xasIsControl), what, text);
}

/** A field of the type, if it has fields. */
std::optional<XasMsgFieldAt> pickField(std::uint32_t msgtype, std::uint16_t number)
{
    const XasMsgFields *fields = msgFieldsOf(msgtype);
    if (fields == nullptr || fields->fields.empty())
        return std::nullopt;
    const std::vector<XasMsgFieldAt> all = xasListFields(*fields);
    return all[number % all.size()];
}

/** Shows what is there, sets it again, and shows it the same. */
void showAndSet(const XasMessage &msg, const XasMsgFieldAt &where)
{
    XasMessage other{};
    const std::string shown = msgValueText(std::as_bytes(std::span{&msg, 1}), where);
    const std::string problem = msgSetValue(bytesOf(other), where, shown, XasValueCheck::anyThatFits);
    const bool fillsField = where.field->kind == XasFieldKind::text && shown.size() == where.place.width;
    const bool fillsHost = where.field->kind == XasFieldKind::hostAddr;
    if (!problem.empty() && (fillsField || fillsHost))
        return; // a text without its end, or a name that is none
    xasFuzzRequire(problem.empty(), "what is shown can be set", shown, problem);
    const std::string again = msgValueText(std::as_bytes(std::span{&other, 1}), where);
    xasFuzzRequire(again == shown, "what is set is shown", shown, again);
}

void setValue(XasFuzzInput &in)
{
    const std::uint32_t msgtype = in.byte() % 70;
    const auto where = pickField(msgtype, in.word());
    const auto check = in.byte() % 2 == 0 ? XasValueCheck::allowed : XasValueCheck::anyThatFits;
    const std::string text{in.text()};
    XasMessage msg = in.record(msgtype);
    if (!where)
        return;
    const XasMessage before = msg;
    showAndSet(msg, *where);
    const std::string problem = msgSetValue(bytesOf(msg), *where, text, check);
    if (problem.empty())
        return showAndSet(msg, *where);
    xasFuzzRequire(std::memcmp(&before, &msg, sizeof msg) == 0, "a refused value changes nothing", text,
                   problem);
}

void showTraffic(XasFuzzInput &in)
{
    XmsTraffic traffic{.timeMs = in.word(), .toDaemon = in.byte() % 2 == 0, .bytes = {}};
    const std::uint32_t msgtype = in.byte();
    XasMessage msg = in.record(msgtype);
    msg.xH.action = in.byte();
    msg.xH.sender = in.byte();
    const auto whole = bytesOf(msg);
    traffic.bytes.assign(whole.begin(), whole.end());
    if (const std::uint16_t size = in.word(); size != 0)
        traffic.bytes.resize(size % 9000);
    requireLine(xmsTrafficLine(traffic, XmsPaint::plain), "traffic is shown in one line");
    requireLine(xmsJsonLine(xmsTrafficJson(traffic)), "an object is shown in one line");
    std::istringstream dump{xmsTrafficDump(traffic, msg, XmsPaint::plain)};
    for (std::string line; std::getline(dump, line);)
        requireLine(line, "a dump is shown in lines");
    std::istringstream table{xmsFieldsTable(xmsTrafficMessage(traffic))};
    for (std::string line; std::getline(table, line);)
        requireLine(line, "a table is shown in lines");
    const XmsTraffic again = xmsTrafficFrom(XmsJson{
        {"time_ms", traffic.timeMs}, {"to_daemon", traffic.toDaemon}, {"bytes", xmsToHex(traffic.bytes)}});
    xasFuzzRequire(again.timeMs == traffic.timeMs && again.toDaemon == traffic.toDaemon &&
                       again.bytes == traffic.bytes,
                   "traffic is told as it was");
}

void recordAndRead(XasFuzzInput &in)
{
    XasMessage msg = in.record(1 + in.byte() % 65);
    msg.xH.id = in.word();
    const auto whole = bytesOf(msg);
    std::istringstream recording{
        xmsJsonLine(xmsRecordingStart()) + "\n" +
        xmsJsonLine(
            xmsRecordingLine({.timeMs = 1, .toDaemon = true, .bytes = {whole.begin(), whole.end()}}, true)) +
        "\n"};
    const auto settings = xmsRecordedSettings(recording, "recording");
    xasFuzzRequire(settings.size() == 1 && std::memcmp(&settings[0].record, &msg, sizeof msg) == 0,
                   "what is recorded is read");
}

void readRecording(XasFuzzInput &in)
{
    std::istringstream recording{"{\"recording\":\"xms\",\"version\":1}\n" + std::string{in.rest()}};
    try {
        for (const XmsRecordedSetting &setting : xmsRecordedSettings(recording, "recording"))
            xasFuzzRequire(setting.record.xH.action == XAS_ACTION_SET, "a setting sets");
    } catch (const XmsError &error) {
        requireLine(error.what(), "a complaint is one line");
    }
}

void readAnswer(XasFuzzInput &in)
{
    const std::uint32_t msgtype = in.byte();
    const XmsJson answer = XmsJson::parse(in.rest(), nullptr, false);
    if (!answer.is_object())
        return;
    try {
        requireLine(xmsOutcomeText(xmsOutcomeFrom(msgtype, answer), XmsPaint::plain),
                    "an outcome is one line");
    } catch (const XmsError &) {
        requireLine("", "it says so");
    }
    try {
        requireLine(xmsTrafficLine(xmsTrafficFrom(answer), XmsPaint::plain), "traffic is shown in one line");
    } catch (const XmsError &) {
        requireLine("", "it says so");
    }
}

void readHex(XasFuzzInput &in)
{
    const std::string_view text = in.rest();
    const auto bytes = xmsFromHex(text);
    if (bytes)
        xasFuzzRequire(xmsFromHex(xmsToHex(*bytes)) == bytes, "digits are read as what they were", text);
    const auto raw = std::as_bytes(std::span{text});
    xasFuzzRequire(std::ranges::equal(xmsFromHex(xmsToHex(raw)).value(), raw), "bytes are told as they are");
}

void assign(XasFuzzInput &in)
{
    const std::uint32_t msgtype = in.byte() % 70;
    std::istringstream lines{std::string{in.rest()}};
    std::vector<std::string> words;
    for (std::string word; std::getline(lines, word);)
        words.push_back(word);
    try {
        XasMessage msg = xmsDefaultRecord(msgtype);
        xmsAssign(msg, xmsParseAssignments(words));
        xasFuzzRequire(msg.xH.msgtype == msgtype, "the type stays");
    } catch (const XmsError &error) {
        xasFuzzRequire(error.status == XmsExit::usage, "a wrong argument is one");
    }
}

/** The server's half of the protocol, the daemon sending anything. */
void converse(XasFuzzInput &in)
{
    XmsProtocol protocol;
    std::set<std::uint32_t> waiting;
    XmsClock::time_point now{};
    while (!in.isEmpty()) {
        const std::uint8_t what = in.byte();
        const std::uint32_t number = in.byte();
        now += std::chrono::seconds{what / 8};
        if (what % 5 == 0) {
            XasMessage setting{};
            setting.xH.msgtype = number % 70;
            const XasMessage sent = xmsEnterSetting(protocol, setting, 1, now + std::chrono::seconds{5});
            xasFuzzRequire(!waiting.contains(sent.xH.id), "an id is used once");
            if (xmsIsAnswered(setting.xH.msgtype))
                waiting.insert(sent.xH.id);
        } else if (what % 5 == 1) {
            xmsMarkSent(protocol, number, now);
        } else if (what % 5 == 2) {
            XasMessage answer{};
            answer.xH = {.msgtype = XMSG_ACKNAK,
                         .action = XAS_ACTION_RETURN,
                         .sender = 4,
                         .id = 1,
                         .orig_id = number,
                         .reserved = {}};
            const auto taken = xmsTakeAnswered(protocol, answer);
            xasFuzzRequire(!taken || (taken->setting.xH.id == number && waiting.erase(number) == 1),
                           "one setting is answered, once");
        } else if (what % 5 == 3) {
            for (const XmsPending &expired : xmsExpire(protocol, now)) {
                xasFuzzRequire(expired.deadline <= now, "a time that is up");
                if (!expired.sent)
                    waiting.erase(expired.setting.xH.id);
            }
        } else {
            xmsForgetClient(protocol, 1);
        }
        xasFuzzRequire(protocol.pending.size() == waiting.size(), "whoever waits is remembered");
    }
}

constexpr std::array PARTS = {setValue,   showTraffic, recordAndRead, readRecording,
                              readAnswer, readHex,     assign,        converse};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    XasFuzzInput in{data, size};
    xasFuzzLog().clear();
    PARTS[in.byte() % PARTS.size()](in);
    return 0;
}
