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

/** What the filter shows of the traffic: ids of records, 0 for lists of users, a blank after each. */
std::string shownOf(XmsWatchFilter filter, const std::vector<XmsTraffic> &all)
{
    std::string text;
    for (const XmsTraffic &traffic : all) {
        for (const XmsTraffic &shown : filter.pass(traffic))
            text += std::to_string(xmsTrafficMessage(shown).xH.id) + " ";
        text += "| ";
    }
    return text;
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

TEST(XmsWatch, MessagesThatAreNeverAnsweredDoNotPileUp)
{
    XmsWatchFilter filter{{}, true};
    for (std::uint32_t id = 1; id <= 257; ++id)
        filter.pass(setting(XMSG_NOTIFY, id));
    EXPECT_EQ(filter.pass(answer(1, false)).size(), 0U) << "256 are held";
    EXPECT_EQ(filter.pass(answer(2, false)).size(), 2U);
}
