#include "xms/recording.h"

#include "support/message.h"
#include "support/test.h"
#include "xms/error.h"

namespace {

const std::string START = "{\"recording\":\"xms\",\"version\":1}\n";
const std::string DNS = R"({"to_daemon":true,"type":"dns","action":0,"sender":1,"id":3,"orig_id":0,)"
                        R"("payload":"00000000 0a000035"})"
                        "\n";

XmsTraffic traffic(bool toDaemon, const XasMessage &record)
{
    const auto bytes = std::as_bytes(std::span{&record, 1});
    return {1700000000123, toDaemon, {bytes.begin(), bytes.end()}};
}

std::string answer(std::uint32_t origId, const std::string &payload)
{
    return R"({"to_daemon":false,"type":"acknak","action":2,"sender":4,"id":10,"orig_id":)" +
           std::to_string(origId) + R"(,"payload":")" + payload + "\"}\n";
}

std::vector<XmsRecordedSetting> settingsOf(const std::string &text)
{
    std::istringstream recording{text};
    return xmsRecordedSettings(recording, "session");
}

std::string complaintOf(const std::string &text)
{
    try {
        settingsOf(text);
    } catch (const XmsError &error) {
        EXPECT_EQ(error.status, XmsExit::usage);
        return error.what();
    }
    return "none";
}

} // namespace

TEST(XmsRecording, AnotherFormatIsRefused)
{
    for (const char *first : {"", "hello", "[]", "{}", R"({"recording":"xms","version":2})",
                              R"({"recording":"tape","version":1})"})
        EXPECT_EQ(complaintOf(std::string{first} + "\n"), "session:1: this is no line of a recording of xms")
            << first;
}

TEST(XmsRecording, ALineThatIsNotUnderstoodIsRefusedWithItsNumber)
{
    for (const char *line : {
             "",
             "{}",
             R"({"to_daemon":1,"bytes":"00"})",
             R"({"to_daemon":true,"type":"dns","action":0,"sender":1,"id":3,"orig_id":0})",
             R"({"to_daemon":true,"type":"dsn","action":0,"sender":1,"id":3,"orig_id":0,"payload":""})",
             R"({"to_daemon":true,"type":"dns","action":0,"sender":1,"id":-3.5,"orig_id":"0","payload":""})",
             R"({"to_daemon":true,"type":"dns","action":0,"sender":1,"id":3,"orig_id":0,"payload":"0"})",
             R"({"to_daemon":true,"users":"00"})",
         })
        EXPECT_EQ(complaintOf(START + DNS + line + "\n"), "session:3: this is no line of a recording of xms")
            << line;
}

TEST(XmsRecording, APayloadThatDoesNotFitIsRefused)
{
    const std::string start =
        R"({"to_daemon":true,"type":"2","action":0,"sender":1,"id":3,"orig_id":0,"payload":")";
    EXPECT_EQ(settingsOf(START + start + std::string(std::size_t{2} * 2368, '1') + "\"}\n").size(), 1U);
    EXPECT_EQ(complaintOf(START + start + std::string(std::size_t{2} * 2369, '1') + "\"}\n"),
              "session:2: this is no line of a recording of xms");
}

TEST(XmsRecording, AListOfUsersBelongsToTheMessageBeforeIt)
{
    const std::string list =
        R"({"to_daemon":true,"users":")" + std::string(std::size_t{2} * 344, '6') + "\"}\n";
    EXPECT_EQ(complaintOf(START + DNS + list), "session:3: this is no line of a recording of xms");
    const std::string message =
        R"({"to_daemon":true,"type":"localusers","action":0,"sender":1,"id":4,"orig_id":0,"payload":"01"})"
        "\n";
    EXPECT_EQ(complaintOf(START + message + list + list), "session:4: this is no line of a recording of xms");
    const auto settings = settingsOf(START + message + list);
    ASSERT_EQ(settings.size(), 1U);
    EXPECT_EQ(settings[0].users, XmsUserEntry(344, std::byte{0x66}));
}

TEST(XmsRecording, TheAnswerIsThatOfTheSettingWithItsId)
{
    const std::string refusal = answer(3, "00000000010000000200000062616400");
    const auto settings = settingsOf(START + answer(2, "01") + DNS + answer(2, "01") + refusal);
    ASSERT_EQ(settings.size(), 1U);
    EXPECT_EQ(settings[0].record.xH.msgtype, 3U);
    EXPECT_EQ(settings[0].record.xH.id, 3U);
    EXPECT_EQ(xasValueIn(settings[0].record, "dns1"), "10.0.0.53");
    ASSERT_TRUE(settings[0].reply);
    EXPECT_EQ(settings[0].reply->success, 0U);
    EXPECT_EQ(settings[0].reply->complete, 1U);
    EXPECT_EQ(settings[0].reply->rcode, 2U);
    EXPECT_EQ(xasFieldText(settings[0].reply->rstr), "bad");
}

TEST(XmsRecording, WhatIsNoSettingIsLeftOut)
{
    const std::string returned =
        R"({"to_daemon":true,"type":"firewall","action":2,"sender":1,"id":3,"orig_id":9,"payload":"01"})"
        "\n";
    const std::string reported =
        R"({"to_daemon":false,"type":"firewall","action":0,"sender":4,"id":3,"orig_id":0,"payload":"01"})"
        "\n";
    const std::string odd = R"({"to_daemon":false,"bytes":"0102"})"
                            "\n";
    EXPECT_TRUE(settingsOf(START + returned + reported + odd).empty());
}

TEST(XmsRecording, AMessageLosesTheZeroesAtItsEnd)
{
    XasMessage record =
        XasMessageBuilder{XMSG_NAT_NOTIFY}.sender(1).id(7).set("add", 1).set("address", "10.1.0.0");
    EXPECT_EQ(xmsJsonLine(xmsRecordingLine(traffic(true, record), true)),
              R"({"time_ms":1700000000123,"to_daemon":true,"type":"nat_notify","action":0,"sender":1,"id":7,)"
              R"("orig_id":0,"payload":"010000000a01"})");
    record = XasMessageBuilder{66}.sender(4).id(8);
    record.xH.action = XAS_ACTION_RETURN;
    record.xH.orig_id = 5;
    EXPECT_EQ(xmsJsonLine(xmsRecordingLine(traffic(false, record), true)),
              R"({"time_ms":1700000000123,"to_daemon":false,"type":"66","action":2,"sender":4,"id":8,)"
              R"("orig_id":5,"payload":""})");
}

TEST(XmsRecording, WhatIsNoMessageIsKeptWhole)
{
    EXPECT_EQ(
        xmsJsonLine(xmsRecordingLine({5, true, XmsUserEntry(344, std::byte{0x61})}, true)),
        R"({"time_ms":5,"to_daemon":true,"users":")" +
            [] {
                std::string hex;
                for (int i = 0; i < 344; ++i)
                    hex += "61";
                return hex;
            }() +
            "\"}");
    EXPECT_EQ(xmsJsonLine(xmsRecordingLine({5, false, {std::byte{1}, std::byte{2}}}, true)),
              R"({"time_ms":5,"to_daemon":false,"bytes":"0102"})");
}

TEST(XmsRecording, WhatWasWrittenIsReadAgain)
{
    const XasMessage record =
        XasMessageBuilder{XMSG_TIMEZONE}.sender(1).id(7).set("zone", std::string(2368, 'z'));
    const auto settings = settingsOf(xmsJsonLine(xmsRecordingStart()) + "\n" +
                                     xmsJsonLine(xmsRecordingLine(traffic(true, record), true)) + "\n");
    ASSERT_EQ(settings.size(), 1U);
    EXPECT_EQ(xasMessageBytes(settings[0].record), xasMessageBytes(record));
    EXPECT_FALSE(settings[0].reply);
}

TEST(XmsRecording, WithoutSecretsTheFieldsThatHadOneAreNamed)
{
    const XasMessage record = XasMessageBuilder{XMSG_TACACS}.sender(1).id(7).set("server1_secret", "testing");
    const XmsJson line = xmsRecordingLine(traffic(true, record), false);
    EXPECT_EQ(line.at("masked").dump(), R"(["server1_secret"])");
    const auto settings =
        settingsOf(xmsJsonLine(xmsRecordingStart()) + "\n" + xmsJsonLine(line) + "\n" + DNS);
    ASSERT_EQ(settings.size(), 2U);
    EXPECT_EQ(xasValueIn(settings[0].record, "server1_secret"), "********");
    EXPECT_THAT(settings[0].masked, ElementsAre("server1_secret"));
    EXPECT_THAT(settings[1].masked, IsEmpty());
    EXPECT_FALSE(xmsRecordingLine(traffic(true, record), true).contains("masked"));
}

TEST(XmsRecording, LogLinesAndChangesAreReadAgainInTheirOrder)
{
    const XmsFileChange change{5, "/etc/x", "@@ -1 +1 @@\n-a\n+b\n", true};
    EXPECT_EQ(xmsJsonLine(xmsChangeLine(change)),
              R"({"time_ms":5,"file":"/etc/x","difference":"@@ -1 +1 @@\n-a\n+b\n","closed":true})");
    std::istringstream recording{START + xmsJsonLine(xmsLogJson({4, "a line"})) + "\n" + DNS +
                                 xmsJsonLine(xmsChangeLine(change)) + "\n"};
    std::vector<XmsRecordedEvent> events;
    xmsReadRecording(recording, "session", [&](const XmsRecordedEvent &event) { events.push_back(event); });
    ASSERT_EQ(events.size(), 3U);
    EXPECT_EQ(std::get<XmsLogLine>(events[0]).text, "a line");
    EXPECT_EQ(std::get<XmsLogLine>(events[0]).timeMs, 4);
    EXPECT_EQ(xmsTrafficMessage(std::get<XmsRecordedTraffic>(events[1]).traffic).xH.id, 3U);
    const auto &again = std::get<XmsFileChange>(events[2]);
    EXPECT_EQ(again.path, change.path);
    EXPECT_EQ(again.difference, change.difference);
    EXPECT_TRUE(again.isClosed);
}
