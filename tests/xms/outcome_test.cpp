#include "xms/outcome.h"

#include "support/message.h"
#include "support/test.h"
#include "xms/hex.h"

namespace {

XmsJson answered(bool success, std::uint32_t rcode, std::string_view reason)
{
    const XasMessage record = XasMessageBuilder{XMSG_ACKNAK}
                                  .set("success", success ? 1 : 0)
                                  .set("complete", 1)
                                  .set("rcode", rcode)
                                  .set("rstr", reason);
    return {
        {"result", "answered"}, {"id", 7}, {"record", xmsToHex(record)}, {"ms", 104.4}, {"stored", success}};
}

std::string textOf(const XmsJson &answer)
{
    return xmsOutcomeText(xmsOutcomeFrom(XMSG_HOSTNAME, answer), XmsPaint::plain);
}

XmsExit exitOf(const XmsJson &answer)
{
    return xmsOutcomeExit(xmsOutcomeFrom(XMSG_HOSTNAME, answer));
}

} // namespace

TEST(XmsOutcomes, AnAnswerThatIsNoOutcomeIsAComplaint)
{
    EXPECT_THROW(xmsOutcomeFrom(XMSG_DNS, XmsJson::object()), XmsError);
    EXPECT_THROW(xmsOutcomeFrom(XMSG_DNS, {{"result", "answered"}, {"record", "00"}}), XmsError);
    EXPECT_THROW(xmsOutcomeFrom(XMSG_DNS, {{"result", "stored"}}), XmsError);
}

TEST(XmsOutcomes, ARefusalGivesCodeAndReasonAndStatusOne)
{
    EXPECT_EQ(textOf(answered(false, 1, "Error determining hosts file")),
              "hostname #7: refused, rcode 1, \"Error determining hosts file\", 104 ms");
    EXPECT_EQ(textOf(answered(false, 0, "")), "hostname #7: refused, rcode 0, no reason given, 104 ms");
    EXPECT_EQ(exitOf(answered(false, 1, "")), XmsExit::refused);
}

TEST(XmsOutcomes, NoProblemThatTheServerTellsBeginsALine)
{
    const XmsOutcome outcome =
        xmsOutcomeFrom(XMSG_DNS, XmsJson::parse(R"({"result":"timeout","id":4,"problem":"a\nb"})"));
    EXPECT_EQ(xmsOutcomeText(outcome, XmsPaint::plain), "dns #4: no acknowledgement in time: a\\nb");
}

TEST(XmsOutcomes, ATimeoutSaysWhyAndEndsWithStatusThree)
{
    const XmsJson answer = {{"result", "timeout"}, {"id", 7}, {"problem", "nobody reads the queue"}};
    EXPECT_EQ(textOf(answer), "hostname #7: no acknowledgement in time: nobody reads the queue");
    EXPECT_EQ(exitOf(answer), XmsExit::noServer);
}

TEST(XmsOutcomes, ASuccessEndsWithStatusZero)
{
    EXPECT_EQ(textOf(answered(true, 0, "")), "hostname #7: applied, rcode 0, 104 ms");
    EXPECT_EQ(exitOf(answered(true, 0, "")), XmsExit::applied);
}

TEST(XmsOutcomes, ASuccessThatCouldNotBeStoredSaysSo)
{
    XmsJson answer = answered(true, 0, "");
    answer["problem"] = "disk full";
    EXPECT_EQ(textOf(answer), "hostname #7: applied, rcode 0, 104 ms; not stored: disk full");
    EXPECT_EQ(exitOf(answer), XmsExit::applied);
}

TEST(XmsOutcomes, AnEventIsSentAndThatIsSuccess)
{
    const XmsJson answer = {{"result", "sent"}, {"id", 3}};
    EXPECT_EQ(textOf(answer), "hostname #3: sent (never answered)");
    EXPECT_EQ(exitOf(answer), XmsExit::applied);
    EXPECT_EQ(xmsJsonLine(xmsOutcomeJson(xmsOutcomeFrom(XMSG_NOTIFY, answer))),
              R"({"type":"notify","id":3,"result":"sent"})");
}

TEST(XmsOutcomes, ProgramsGetEveryPartOfTheAcknowledgement)
{
    EXPECT_EQ(xmsJsonLine(xmsOutcomeJson(xmsOutcomeFrom(XMSG_DNS, answered(false, 3, "no")))),
              R"({"type":"dns","id":7,"result":"refused","success":false,"complete":true,"rcode":3,)"
              R"("rstr":"no","ms":104.4,"stored":false})");
}

TEST(XmsOutcomes, TheLogOfARefusalStandsBelowIt)
{
    XmsOutcome outcome = xmsOutcomeFrom(XMSG_HOSTNAME, answered(false, 1, "no"));
    outcome.log = {"xasd: sw/err-no", "a\tb"};
    EXPECT_EQ(xmsOutcomeText(outcome, XmsPaint::plain), "hostname #7: refused, rcode 1, \"no\", 104 ms\n"
                                                        "  log: xasd: sw/err-no\n"
                                                        "  log: a\\x09b");
    EXPECT_EQ(xmsOutcomeJson(outcome).at("log").dump(), R"(["xasd: sw/err-no","a\tb"])");
}
