// Recording the traffic of the message tool's server and playing it again; the test plays the daemon.
#include "support/serve_fixture.h"

#include <nlohmann/json.hpp>
#include <regex>

namespace {

using Json = nlohmann::ordered_json;

const std::string START = R"({"recording":"xms","version":1})";
const std::string SET_HOSTNAME =
    R"({"to_daemon":true,"type":"hostname","action":0,"sender":1,"id":1,"orig_id":0,"payload":"6131"})";
const std::string APPLIED =
    R"({"to_daemon":false,"type":"acknak","action":2,"sender":4,"id":10,"orig_id":1,"payload":"0100000001"})";
const std::string SET_DNS =
    R"({"to_daemon":true,"type":"dns","action":0,"sender":1,"id":2,"orig_id":0,"payload":""})";
const std::string REFUSED = R"({"to_daemon":false,"type":"acknak","action":2,"sender":4,"id":10,"orig_id":2,)"
                            R"("payload":"0000000001000000010000006e6f"})";

/** That many zero bytes in hexadecimal. */
std::string hexOfZeroes(std::size_t bytes)
{
    return std::string(2 * bytes, '0');
}

class XmsReplay : public XmsServeTest {
  protected:
    /** Starts recording into a file and waits until it has begun. */
    void record(std::vector<std::string> options = {})
    {
        options.insert(options.begin(), {"record", dir.path("session"), "--log", dir.path("sw")});
        recorder = startProgram(options, "recorder");
        ASSERT_TRUE(xasEventually([&] { return dir.has("session") && !dir.read("session").empty(); }));
    }

    /** The lines of the recording without the times. */
    std::vector<std::string> recordedLines() const
    {
        std::istringstream file{dir.read("session")};
        std::vector<std::string> lines;
        for (std::string text; std::getline(file, text);) {
            Json line = Json::parse(text);
            line.erase("time_ms");
            lines.push_back(line.dump());
        }
        return lines;
    }

    int endRecording()
    {
        kill(recorder, SIGTERM);
        return statusOf(recorder);
    }

    pid_t startReplay(const std::vector<std::string> &lines, std::vector<std::string> options = {})
    {
        std::string text;
        for (const std::string &line : lines)
            text += line + "\n";
        options.insert(options.begin(), {"replay", dir.write("session", text)});
        return startProgram(options, "out");
    }

    void receiveAndAnswer(bool success, std::string_view reason = "")
    {
        const auto record = receive();
        ASSERT_TRUE(record);
        received = *record;
        acknowledge(received.xH.id, success, reason);
    }

    /** What was printed, every time replaced by "N ms". */
    std::string printed() const
    {
        return std::regex_replace(dir.read("out"), std::regex{"[0-9]+ ms"}, "N ms");
    }

    pid_t recorder = -1;
};

} // namespace

TEST_F(XmsReplay, ARecordingThatCannotBeReadIsRefusedBeforeAnythingIsSent)
{
    serve();
    EXPECT_EQ(run({"replay", dir.path("missing")}), 2);
    EXPECT_EQ(dir.read("out.err"), "xms: cannot read " + dir.path("missing") + "\n");
    EXPECT_EQ(statusOf(startReplay({START, SET_HOSTNAME, "{}"})), 2);
    EXPECT_EQ(dir.read("out.err"),
              "xms: " + dir.path("session") + ":3: this is no line of a recording of xms\n");
    EXPECT_FALSE(receive(std::chrono::milliseconds{100}));
}

TEST_F(XmsReplay, AMessageWithoutTheUsersThatItAnnouncesIsRefused)
{
    serve();
    const std::string message =
        R"({"to_daemon":true,"type":"localusers","action":0,"sender":1,"id":1,"orig_id":0,"payload":")" +
        hexOfZeroes(40) + "02\"}";
    EXPECT_EQ(statusOf(startReplay({START, message})), 2);
    EXPECT_EQ(dir.read("out.err"), "xms: num_users is 2, but 0 users are given; xasd would wait for them\n");
}

TEST_F(XmsReplay, ARecordingThatCannotBeWrittenIsAnError)
{
    serve();
    EXPECT_EQ(run({"record", dir.path("missing/session")}), 2);
    EXPECT_EQ(dir.read("out.err"),
              "xms: cannot write " + dir.path("missing/session") + ": No such file or directory\n");
}

TEST_F(XmsReplay, WithoutADaemonTheFirstSettingEndsTheReplay)
{
    serve();
    EXPECT_EQ(statusOf(startReplay({START, SET_HOSTNAME, APPLIED, SET_DNS}, {"--timeout", "0.1"})), 3);
    EXPECT_EQ(printed(), "hostname #1: no acknowledgement in time: nobody reads the queue; is xasd running?\n"
                         "  recorded otherwise: applied, rcode 0\n");
}

TEST_F(XmsReplay, AnotherOutcomeThanTheRecordedOneEndsWithStatusOne)
{
    serve();
    const pid_t client = startReplay({START, SET_HOSTNAME, APPLIED, SET_DNS, REFUSED});
    receiveAndAnswer(false, "no");
    receiveAndAnswer(false, "not that way");
    EXPECT_EQ(statusOf(client), 1);
    EXPECT_EQ(printed(), "hostname #1: refused, rcode 1, \"no\", N ms\n"
                         "  recorded otherwise: applied, rcode 0\n"
                         "dns #2: refused, rcode 1, \"not that way\", N ms\n"
                         "  recorded otherwise: refused, rcode 1, \"no\"\n"
                         "2 settings replayed, 2 not as recorded\n");
}

TEST_F(XmsReplay, TheSameOutcomeEndsWithStatusZeroARefusalIncluded)
{
    serve();
    const pid_t client = startReplay({START, SET_HOSTNAME, APPLIED, SET_DNS, REFUSED});
    receiveAndAnswer(true);
    EXPECT_EQ(received.xH.msgtype, 2U);
    EXPECT_EQ(received.xH.action, 0U);
    EXPECT_EQ(received.xH.sender, 1U);
    EXPECT_EQ(xasPayloadBytes(received), "a1" + std::string(2366, '\0'));
    receiveAndAnswer(false, "no");
    EXPECT_EQ(statusOf(client), 0);
    EXPECT_EQ(printed(), "hostname #1: applied, rcode 0, N ms\n"
                         "dns #2: refused, rcode 1, \"no\", N ms\n"
                         "2 settings replayed, all as recorded\n");
    EXPECT_EQ(dir.read("store/XMSG_HOSTNAME"),
              xasMessageBytes(XasMessageBuilder{XMSG_HOSTNAME}.sender(1).id(1).set("hostname", "a1")));
}

TEST_F(XmsReplay, ProgramsAreToldWhatWasRecorded)
{
    serve();
    const pid_t client = startReplay({START, SET_HOSTNAME, APPLIED}, {"--json"});
    receiveAndAnswer(false, "no");
    EXPECT_EQ(statusOf(client), 1);
    Json line = Json::parse(dir.read("out"));
    line.erase("ms");
    EXPECT_EQ(line.dump(), R"({"type":"hostname","id":1,"result":"refused","success":false,"complete":true,)"
                           R"("rcode":1,"rstr":"no","stored":false,)"
                           R"("recorded":{"success":true,"rcode":0,"rstr":""},"same":false})");
}

TEST_F(XmsReplay, EverythingThatPassesIsRecordedForTheOwnerOnly)
{
    serve();
    record({"--secrets"});
    EXPECT_EQ(setAndAnswer({"set", "hostname", "hostname=a1"}, true), 0);
    EXPECT_EQ(setAndAnswer({"set", "dns"}, false, "no"), 1);
    send(std::string(5, 'x'));
    ASSERT_TRUE(xasEventually([&] { return recordedLines().size() == 6; }));
    EXPECT_EQ(endRecording(), 0);
    EXPECT_THAT(recordedLines(), ElementsAre(START, SET_HOSTNAME, APPLIED, SET_DNS, REFUSED,
                                             R"({"to_daemon":false,"bytes":"7878787878"})"));
    EXPECT_EQ(xasModeOf(dir.path("session")), 0600U);
}

TEST_F(XmsReplay, AFileThatIsThereIsClosedToOthersToo)
{
    serve();
    dir.write("session", "", 0644);
    record();
    EXPECT_EQ(xasModeOf(dir.path("session")), 0600U);
    EXPECT_EQ(endRecording(), 0);
    EXPECT_THAT(recordedLines(), ElementsAre(START));
}

TEST_F(XmsReplay, TheEndOfTheServerEndsARecordingAndNothingIsLost)
{
    serve();
    record();
    EXPECT_EQ(run({"set", "nat_notify", "address=10.1.2.3"}), 0);
    EXPECT_EQ(stop(), 0);
    EXPECT_EQ(statusOf(recorder), 0);
    EXPECT_THAT(recordedLines(),
                ElementsAre(START, R"({"to_daemon":true,"type":"nat_notify","action":0,"sender":1,"id":1,)"
                                   R"("orig_id":0,"payload":"010000000a010203"})"));
}

TEST_F(XmsReplay, AListOfUsersIsRecordedAndFollowsItsMessageAgain)
{
    const std::string list = std::string(120, '\0') + "alice" + std::string(219, '\0');
    serve();
    record();
    const pid_t first = startProgram({"set", "localusers", "enabled=no", "user1.login=alice"}, "out");
    received = *receive();
    ASSERT_EQ(receiveEntry(std::chrono::seconds{10})->second, list);
    acknowledge(received.xH.id, true);
    EXPECT_EQ(statusOf(first), 0);
    ASSERT_TRUE(xasEventually([&] { return recordedLines().size() == 4; }));
    EXPECT_EQ(endRecording(), 0);
    EXPECT_EQ(recordedLines()[2],
              R"({"to_daemon":true,"users":")" + hexOfZeroes(120) + "616c696365" + hexOfZeroes(219) + "\"}");

    const XasMessage before = received;
    const pid_t second = startProgram({"replay", dir.path("session")}, "out");
    received = *receive();
    EXPECT_EQ(xasPayloadBytes(received), xasPayloadBytes(before));
    EXPECT_EQ(receiveEntry(std::chrono::seconds{10})->second, list);
    acknowledge(received.xH.id, true);
    EXPECT_EQ(statusOf(second), 0);
    EXPECT_EQ(printed(), "localusers #2: applied, rcode 0, N ms\n1 settings replayed, all as recorded\n");
}

TEST_F(XmsReplay, AnEventIsSentAgainAndAnUnansweredSettingIsNotCompared)
{
    serve();
    const std::string event =
        R"({"to_daemon":true,"type":"notify","action":0,"sender":1,"id":9,"orig_id":0,"payload":"03"})";
    const pid_t client = startReplay({START, event, SET_HOSTNAME});
    ASSERT_EQ(receive()->xH.msgtype, 64U);
    receiveAndAnswer(false, "no");
    EXPECT_EQ(statusOf(client), 0);
    EXPECT_EQ(printed(), "notify #1: sent (never answered)\n"
                         "hostname #2: refused, rcode 1, \"no\", N ms\n"
                         "2 settings replayed, all as recorded\n");
}

TEST_F(XmsReplay, ASessionThatWasRecordedWithoutItsSecretsIsNotReplayed)
{
    serve();
    record();
    EXPECT_EQ(setAndAnswer({"set", "radius", "secret1=testing"}, true), 0);
    ASSERT_TRUE(xasEventually([&] { return recordedLines().size() == 3; }));
    EXPECT_EQ(endRecording(), 0);
    EXPECT_EQ(dir.read("session").find("74657374696e67"), std::string::npos) << "testing";
    EXPECT_THAT(recordedLines()[1], HasSubstr(R"("masked":["secret1"])"));
    EXPECT_EQ(run({"replay", dir.path("session")}), 2);
    EXPECT_EQ(dir.read("out.err"), "xms: radius #1 was recorded without its secrets (secret1): what is to be "
                                   "replayed is recorded with --secrets\n");
    EXPECT_FALSE(receive(std::chrono::milliseconds{100}));
}

TEST_F(XmsReplay, ASessionThatWasRecordedWithItsSecretsIsReplayed)
{
    serve();
    record({"--secrets"});
    EXPECT_EQ(setAndAnswer({"set", "radius", "secret1=testing"}, true), 0);
    ASSERT_TRUE(xasEventually([&] { return recordedLines().size() == 3; }));
    EXPECT_EQ(endRecording(), 0);
    const pid_t client = startProgram({"replay", dir.path("session")}, "out");
    receiveAndAnswer(true);
    EXPECT_EQ(statusOf(client), 0);
    EXPECT_EQ(xasValueIn(received, "secret1"), "testing");
}

TEST_F(XmsReplay, WhatIsLoggedAndWhatChangesIsRecordedButNotReplayed)
{
    serve();
    dir.write("sysapp.xml", "<SYSAPP><APP><NAME>radius</NAME><CFGFILE><TYPE>radius</TYPE><PATH>" +
                                dir.path("server") + "</PATH></CFGFILE></APP></SYSAPP>");
    dir.write("server", "10.0.0.1 before\n");
    dir.write("store/XMSG_RADIUS", xasMessageBytes(XasMessageBuilder{XMSG_RADIUS}.set("secret1", "before")));
    record({"--files", "--list", dir.path("sysapp.xml")});
    const pid_t client = startProgram({"set", "radius", "secret1=testing"}, "out");
    const auto setting = receive();
    ASSERT_TRUE(setting);
    ASSERT_TRUE(xasEventually([&] { return recordedLines().size() == 2; }));
    dir.write("server", "10.0.0.1 testing\n");
    dir.write("sw", "Nov 22 05:21:43 console xasd: sw/info-secret testing is written \n");
    acknowledge(setting->xH.id, true);
    EXPECT_EQ(statusOf(client), 0);
    ASSERT_TRUE(xasEventually([&] { return recordedLines().size() == 5; }));
    EXPECT_EQ(endRecording(), 0);
    EXPECT_EQ(recordedLines()[2], R"({"log":"xasd: sw/info-secret ******** is written"})");
    EXPECT_EQ(recordedLines()[3], APPLIED);
    EXPECT_EQ(recordedLines()[4],
              R"({"file":")" + dir.path("server") +
                  R"(","difference":"@@ -1 +1 @@\n-10.0.0.1 ********\n+10.0.0.1 ********\n"})");
    EXPECT_EQ(dir.read("session").find("testing"), std::string::npos);
    EXPECT_EQ(dir.read("session").find("before"), std::string::npos);
}

TEST_F(XmsReplay, AListThatIsNotThereEndsARecordingBeforeItBegins)
{
    serve();
    EXPECT_EQ(run({"record", "--files", "--list", dir.path("none"), dir.path("session")}), 2);
    EXPECT_EQ(dir.read("out.err"), "xms: cannot read the application list " + dir.path("none") + "\n");
}
