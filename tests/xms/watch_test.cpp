#include "xms/watch.h"

#include "support/message.h"
#include "support/test.h"

namespace {

XmsTraffic toDaemon(const XasMessage &record)
{
    const auto bytes = xasBytesOf(record);
    return {1, true, {bytes.begin(), bytes.end()}};
}

XmsTraffic fromDaemon(const XasMessage &record)
{
    XmsTraffic traffic = toDaemon(record);
    traffic.toDaemon = false;
    return traffic;
}

XmsTraffic setting(std::uint32_t msgtype, std::uint32_t id)
{
    return toDaemon(XasMessageBuilder{msgtype}.id(id));
}

XmsTraffic answer(std::uint32_t id, bool success)
{
    return fromDaemon(
        XasMessageBuilder{XMSG_ACKNAK}.id(1000 + id).answering(id).set("success", success ? 1 : 0));
}

/** A list with one user: 120 bytes and one of 224. */
XmsTraffic users()
{
    return {1, true, std::vector<std::byte>(344)};
}

/** What the filter shows: ids of records, 0 for lists of users, texts of log lines, a blank after each. */
std::string shownOf(XmsWatchFilter filter, const std::vector<XmsEvent> &all)
{
    std::string text;
    for (const XmsEvent &event : all) {
        for (const XmsEvent &shown : filter.pass(event)) {
            const auto *traffic = std::get_if<XmsTraffic>(&shown);
            text += traffic == nullptr ? std::get<XmsLogLine>(shown).text
                                       : std::to_string(xmsTrafficMessage(*traffic).xH.id);
            text += " ";
        }
        text += "| ";
    }
    return text;
}

XmsEvent logged(const std::string &text)
{
    return XmsLogLine{1, text};
}

} // namespace

TEST(XmsWatch, WithoutAFilterEverythingIsShownAtOnce)
{
    const XmsTraffic odd{1, false, std::vector<std::byte>(7)};
    EXPECT_EQ(shownOf({{}, false}, {setting(XMSG_DNS, 1), answer(1, true), users(), odd}),
              "1 | 1001 | 0 | 0 | ");
}

TEST(XmsWatch, ATypeIsShownWithItsOwnAnswersOnly)
{
    EXPECT_EQ(shownOf({{XMSG_DNS}, false}, {setting(XMSG_HOSTNAME, 1), setting(XMSG_DNS, 2), answer(1, true),
                                            answer(2, true), answer(2, true)}),
              "| 2 | | 1002 | | ");
    EXPECT_EQ(shownOf({{XMSG_DNS, XMSG_NTP}, false}, {setting(XMSG_NTP, 1), setting(XMSG_DNS, 2)}),
              "1 | 2 | ");
}

TEST(XmsWatch, WhatTheDaemonAsksAndIsToldAboutATypeIsShown)
{
    const XasMessage question = XasMessageBuilder{XMSG_ETH}.id(5).action(XAS_ACTION_GET);
    const XasMessage told = XasMessageBuilder{XMSG_ETH}.id(6).answering(5);
    EXPECT_EQ(shownOf({{XMSG_ETH}, false}, {fromDaemon(question), toDaemon(told)}), "5 | 6 | ");
    EXPECT_EQ(shownOf({{XMSG_DNS}, false}, {fromDaemon(question), toDaemon(told)}), "| | ");
    EXPECT_EQ(shownOf({{}, true}, {fromDaemon(question), toDaemon(told)}), "| | ");
}

TEST(XmsWatch, TheListOfUsersGoesWithItsMessage)
{
    EXPECT_EQ(shownOf({{XMSG_LOCALUSERS}, false}, {setting(XMSG_LOCALUSERS, 1), users()}), "1 | 0 | ");
    EXPECT_EQ(shownOf({{XMSG_DNS}, false}, {setting(XMSG_LOCALUSERS, 1), users()}), "| | ");
    EXPECT_EQ(shownOf({{}, true}, {setting(XMSG_LOCALUSERS, 1), users(), answer(1, false)}),
              "| | 1 0 1001 | ");
}

TEST(XmsWatch, ARefusedSettingIsShownOnceItIsRefused)
{
    EXPECT_EQ(
        shownOf({{}, true}, {setting(XMSG_DNS, 1), answer(1, true), setting(XMSG_NTP, 2), answer(2, false)}),
        "| | | 2 1002 | ");
    EXPECT_EQ(shownOf({{XMSG_DNS}, true},
                      {setting(XMSG_NTP, 2), answer(2, false), setting(XMSG_DNS, 3), answer(3, false)}),
              "| | | 3 1003 | ");
}

TEST(XmsWatch, AnswersThemselvesCanBeAskedFor)
{
    EXPECT_EQ(shownOf({{XMSG_ACKNAK}, false}, {setting(XMSG_DNS, 1), answer(1, true)}), "| 1001 | ");
}

TEST(XmsWatch, MessagesThatAreNotAnsweredDoNotPileUp)
{
    XmsWatchFilter filter{{}, true};
    for (std::uint32_t id = 1; id <= 257; ++id)
        filter.pass(setting(XMSG_DNS, id));
    EXPECT_EQ(filter.pass(answer(1, false)).size(), 0U) << "256 are held";
    EXPECT_EQ(filter.pass(answer(2, false)).size(), 2U);
}

TEST(XmsWatch, EventsAreNeverAnsweredAndWaitForNothing)
{
    EXPECT_EQ(shownOf({{XMSG_NOTIFY}, false}, {setting(XMSG_NOTIFY, 1), logged("a")}), "1 | | ");
    EXPECT_EQ(shownOf({{}, true}, {setting(XMSG_NOTIFY, 1), logged("a"), setting(XMSG_DNS, 2), logged("b"),
                                   answer(2, false)}),
              "| | | | 2 b 1002 | ");
}

TEST(XmsWatch, WhatIsLoggedIsShownInBetween)
{
    EXPECT_EQ(shownOf({{}, false}, {logged("a"), setting(XMSG_DNS, 1), logged("b")}), "a | 1 | b | ");
}

TEST(XmsWatch, OfAFilterOnlyTheLogOfItsOwnSettingsIsShown)
{
    EXPECT_EQ(shownOf({{XMSG_DNS}, false}, {logged("a"), setting(XMSG_NTP, 1), logged("b"), answer(1, true),
                                            setting(XMSG_DNS, 2), logged("c"), answer(2, true), logged("d")}),
              "| | | | 2 | c | 1002 | | ");
    EXPECT_EQ(shownOf({{}, true}, {logged("a"), setting(XMSG_DNS, 1), setting(XMSG_NTP, 2), logged("b"),
                                   answer(1, true), logged("c"), answer(2, false)}),
              "| | | | | | 2 c 1002 | ")
        << "the daemon acts on the first one first";
}
