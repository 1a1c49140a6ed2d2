#include "xms/protocol.h"

#include "support/message.h"
#include "support/test.h"

namespace {

constexpr XmsClock::time_point NOW{1000s};

XasMessage acknowledgementOf(std::uint32_t id)
{
    XasMessage record = XasMessageBuilder{XMSG_ACKNAK}.sender(4).id(10).set("success", 1);
    record.xH.action = 2;
    record.xH.orig_id = id;
    return record;
}

XasMessage fromDaemon(std::uint32_t msgtype, std::uint32_t action)
{
    XasMessage record = XasMessageBuilder{msgtype}.sender(4).id(42);
    record.xH.action = action;
    return record;
}

} // namespace

TEST(XmsProtocol, AnAcknowledgementOfSomethingElseAnswersNothing)
{
    XmsProtocol protocol;
    xmsEnterSetting(protocol, XasMessageBuilder{XMSG_DNS}, 1, NOW + 30s);
    EXPECT_FALSE(xmsTakeAnswered(protocol, acknowledgementOf(2)));
    EXPECT_FALSE(xmsTakeAnswered(protocol, acknowledgementOf(0)));
    EXPECT_EQ(protocol.pending.size(), 1U);
}

TEST(XmsProtocol, AnAcknowledgementCountsOnce)
{
    XmsProtocol protocol;
    xmsEnterSetting(protocol, XasMessageBuilder{XMSG_DNS}, 1, NOW + 30s);
    EXPECT_TRUE(xmsTakeAnswered(protocol, acknowledgementOf(1)));
    EXPECT_FALSE(xmsTakeAnswered(protocol, acknowledgementOf(1)));
}

TEST(XmsProtocol, ASettingGoesOutAsASetFromTheServerWithAFreshId)
{
    XmsProtocol protocol;
    XasMessage typed = XasMessageBuilder{XMSG_DNS}.id(99).sender(3).set("prefer_ipv4", 1);
    typed.xH.action = 1;
    typed.xH.orig_id = 5;
    typed.xH.reserved[0] = std::byte{1};
    const XasMessage first = xmsEnterSetting(protocol, typed, 1, NOW);
    EXPECT_EQ(first.xH.msgtype, 3U);
    EXPECT_EQ(first.xH.action, 0U);
    EXPECT_EQ(first.xH.sender, 1U);
    EXPECT_EQ(first.xH.id, 1U);
    EXPECT_EQ(first.xH.orig_id, 0U);
    EXPECT_EQ(xasMessageBytes(first, 20, 100), std::string(100, '\0'));
    EXPECT_EQ(xasValueIn(first, "prefer_ipv4"), "yes");
    EXPECT_EQ(xmsEnterSetting(protocol, typed, 1, NOW).xH.id, 2U);
}

TEST(XmsProtocol, AnswersFindTheirOwnClientWhateverTheirOrder)
{
    XmsProtocol protocol;
    xmsEnterSetting(protocol, XasMessageBuilder{XMSG_DNS}, 7, NOW);
    xmsEnterSetting(protocol, XasMessageBuilder{XMSG_HOSTNAME}, 8, NOW);
    xmsMarkSent(protocol, 2, NOW);
    const auto second = xmsTakeAnswered(protocol, acknowledgementOf(2));
    ASSERT_TRUE(second);
    EXPECT_EQ(second->client, 8);
    EXPECT_EQ(second->setting.xH.msgtype, XMSG_HOSTNAME);
    EXPECT_EQ(second->sent, NOW);
    const auto first = xmsTakeAnswered(protocol, acknowledgementOf(1));
    ASSERT_TRUE(first);
    EXPECT_EQ(first->client, 7);
    EXPECT_EQ(first->sent, std::nullopt);
}

TEST(XmsProtocol, EventsAreSentWithoutAwaitingAnAnswer)
{
    XmsProtocol protocol;
    for (const std::uint32_t msgtype : {XMSG_NOTIFY, XMSG_NAT_NOTIFY})
        xmsEnterSetting(protocol, XasMessageBuilder{msgtype}, 1, NOW);
    EXPECT_TRUE(protocol.pending.empty());
}

TEST(XmsProtocol, NothingExpiresBeforeItsTime)
{
    XmsProtocol protocol;
    xmsEnterSetting(protocol, XasMessageBuilder{XMSG_DNS}, 1, NOW + 30s);
    EXPECT_TRUE(xmsExpire(protocol, NOW + 29999ms).empty());
    EXPECT_EQ(xmsExpire(protocol, NOW + 30s).size(), 1U);
}

TEST(XmsProtocol, ASettingThatWasSentMayStillBeAnsweredAfterItsTime)
{
    XmsProtocol protocol;
    xmsEnterSetting(protocol, XasMessageBuilder{XMSG_DNS}, 7, NOW + 30s);
    xmsMarkSent(protocol, 1, NOW);
    const auto expired = xmsExpire(protocol, NOW + 30s);
    ASSERT_EQ(expired.size(), 1U);
    EXPECT_EQ(expired[0].client, 7);
    EXPECT_TRUE(xmsExpire(protocol, NOW + 31s).empty()); // told once
    const auto late = xmsTakeAnswered(protocol, acknowledgementOf(1));
    ASSERT_TRUE(late);
    EXPECT_EQ(late->client, 0);
}

TEST(XmsProtocol, ASettingThatWasNeverSentIsTakenOutWhenItsTimeIsUp)
{
    XmsProtocol protocol;
    xmsEnterSetting(protocol, XasMessageBuilder{XMSG_DNS}, 7, NOW + 30s);
    ASSERT_EQ(xmsExpire(protocol, NOW + 30s).size(), 1U);
    EXPECT_TRUE(protocol.pending.empty());
}

TEST(XmsProtocol, ASettingOfAClientThatHasGoneStillCounts)
{
    XmsProtocol protocol;
    xmsEnterSetting(protocol, XasMessageBuilder{XMSG_DNS}, 7, NOW + 30s);
    xmsMarkSent(protocol, 1, NOW);
    xmsForgetClient(protocol, 7);
    EXPECT_TRUE(xmsExpire(protocol, NOW + 30s).empty());
    const auto answered = xmsTakeAnswered(protocol, acknowledgementOf(1));
    ASSERT_TRUE(answered);
    EXPECT_EQ(answered->client, 0);
}

TEST(XmsProtocol, AnUnsentSettingOfAClientThatHasGoneIsWithdrawnInTime)
{
    XmsProtocol protocol;
    xmsEnterSetting(protocol, XasMessageBuilder{XMSG_DNS}, 7, NOW + 30s);
    xmsForgetClient(protocol, 7);
    const auto expired = xmsExpire(protocol, NOW + 30s);
    ASSERT_EQ(expired.size(), 1U);
    EXPECT_EQ(expired[0].client, 0);
    EXPECT_TRUE(protocol.pending.empty());
}

TEST(XmsProtocol, WhatTheDaemonSendsIsToldApartByTypeAndAction)
{
    EXPECT_EQ(xmsArrivalOf(acknowledgementOf(1)), XmsArrival::acknowledgement);
    EXPECT_EQ(xmsArrivalOf(fromDaemon(XMSG_IPFILTER_SET, 1)), XmsArrival::request);
    EXPECT_EQ(xmsArrivalOf(fromDaemon(XMSG_FIREWALL, 0)), XmsArrival::report);
    EXPECT_EQ(xmsArrivalOf(fromDaemon(XMSG_NOTIFY, 0)), XmsArrival::event);
    EXPECT_EQ(xmsArrivalOf(fromDaemon(XMSG_FIREWALL, 2)), XmsArrival::event);
    EXPECT_EQ(xmsArrivalOf(fromDaemon(XMSG_FIREWALL, 3)), XmsArrival::event);
}

TEST(XmsProtocol, ARequestForNothingStoredIsAnsweredWithAZeroPayload)
{
    XmsProtocol protocol{.nextId = 5, .pending = {}};
    const XasMessage request = fromDaemon(XMSG_IPFILTER_SET, 1);
    const XasMessage answer = xmsAnswerRequest(protocol, request, std::nullopt);
    EXPECT_EQ(answer.xH.msgtype, 6U);
    EXPECT_EQ(answer.xH.action, 2U);
    EXPECT_EQ(answer.xH.sender, 1U);
    EXPECT_EQ(answer.xH.id, 5U);
    EXPECT_EQ(answer.xH.orig_id, 42U);
    EXPECT_EQ(xasPayloadBytes(answer), std::string(2368, '\0'));
    EXPECT_EQ(protocol.nextId, 6U);
}

TEST(XmsProtocol, ARequestIsAnsweredWithTheStoredPayloadUnderAHeaderOfItsOwn)
{
    XmsProtocol protocol;
    const XasMessage stored =
        XasMessageBuilder{XMSG_IPFILTER_SET}.id(900).sender(3).set("id", 3).set("name", "office");
    const XasMessage answer = xmsAnswerRequest(protocol, fromDaemon(XMSG_IPFILTER_SET, 1), stored);
    EXPECT_EQ(xasPayloadBytes(answer), xasPayloadBytes(stored));
    EXPECT_EQ(answer.xH.id, 1U);
    EXPECT_EQ(answer.xH.orig_id, 42U);
    EXPECT_EQ(answer.xH.sender, 1U);
}

TEST(XmsProtocol, AReportThatCouldNotBeStoredIsRefusedWithTheReason)
{
    XmsProtocol protocol;
    const XasMessage answer = xmsAnswerReport(protocol, fromDaemon(XMSG_FIREWALL, 0), "disk full");
    EXPECT_EQ(xasOutcomeIn(answer), "0 1 disk full");
}

TEST(XmsProtocol, AStoredReportIsAcknowledged)
{
    XmsProtocol protocol;
    const XasMessage answer = xmsAnswerReport(protocol, fromDaemon(XMSG_FIREWALL, 0), "");
    EXPECT_EQ(answer.xH.action, 2U);
    EXPECT_EQ(answer.xH.sender, 1U);
    EXPECT_EQ(answer.xH.orig_id, 42U);
    EXPECT_EQ(xasPayloadBytes(answer),
              xasPayloadBytes(XasMessageBuilder{XMSG_ACKNAK}.set("success", 1).set("complete", 1)));
}

TEST(XmsProtocol, AReportIsKeptAsItIsWhenNothingIsStored)
{
    const XasMessage report = XasMessageBuilder{XMSG_FIREWALL}.sender(4).id(42).set("test_time", 3);
    const XasMessage kept = xmsCompleteReport(report, std::nullopt);
    EXPECT_EQ(xasMessageBytes(kept), xasMessageBytes(report));
}

TEST(XmsProtocol, AReportOfTheFilterLeavesTheOtherFirewallSettingsAsTheyAreStored)
{
    const XasMessage report = XasMessageBuilder{XMSG_FIREWALL}.sender(4).id(42);
    const auto stored = [](std::uint32_t enabled, std::uint32_t testTime) {
        return XasMessageBuilder{XMSG_FIREWALL}
            .sender(1)
            .id(7)
            .set("enabled", enabled)
            .set("test_time", testTime)
            .set("reject_method=drop invisible=1 ssh=1 smb=1")
            .bytes(2484, "rest");
    };
    const XasMessage kept = xmsCompleteReport(report, stored(1, 5));
    EXPECT_EQ(xasMessageBytes(kept), xasMessageBytes(stored(0, 0)));
}

TEST(XmsProtocol, AReportOfAnotherTypeReplacesWhatIsStored)
{
    const XasMessage report = XasMessageBuilder{XMSG_HOSTNAME}.sender(4).set("hostname", "new");
    const XasMessage stored = XasMessageBuilder{XMSG_HOSTNAME}.set("hostname", "old").set("domain", "domain");
    const XasMessage kept = xmsCompleteReport(report, stored);
    EXPECT_EQ(xasMessageBytes(kept), xasMessageBytes(report));
}
