#include "msg/fields.h"

#include "msg/values.h"
#include "wire/message_names.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

namespace {

XasMsgFieldAt at(std::uint32_t msgtype, std::string_view name)
{
    const XasMsgFields *fields = msgFieldsOf(msgtype);
    auto where = fields == nullptr ? std::nullopt : xasFindField(*fields, name);
    if (!where)
        throw std::out_of_range{std::string{name}};
    return *std::move(where);
}

void expectPlace(std::uint32_t msgtype, std::string_view name, std::size_t offset, std::size_t width)
{
    const XasMsgFieldAt where = at(msgtype, name);
    EXPECT_EQ(where.place.offset, offset) << name;
    EXPECT_EQ(where.place.width, width) << name;
}

std::span<std::byte> bytesOf(XasMessage &record)
{
    return std::as_writable_bytes(std::span{&record, 1});
}

} // namespace

TEST(MsgFields, ATypeThatIsNotDescribedHasNone)
{
    EXPECT_EQ(msgFieldsOf(0), nullptr);
    EXPECT_EQ(msgFieldsOf(XMSG_SSH), nullptr);
    EXPECT_EQ(msgFieldsOf(66), nullptr);
    EXPECT_EQ(msgFieldsOf(4000000000U), nullptr);
}

TEST(MsgFields, AnUnknownNameIsNotFound)
{
    const XasMsgFields &eth = *msgFieldsOf(XMSG_ETH);
    for (const char *name :
         {"", "eth", "eth1", "eth0.ip", "eth3.ip", "eth1.ip ", "ETH1.ip", "ip", "eth1..ip"})
        EXPECT_FALSE(xasFindField(eth, name)) << name;
}

TEST(MsgFields, TheHostNameStandsBeforeTheDomainThatEndsTheRecord)
{
    expectPlace(XMSG_HOSTNAME, "hostname", 120, 65);
    expectPlace(XMSG_HOSTNAME, "domain", 185, 2488 - 185);
}

TEST(MsgFields, TheThreeNameServersFollowEachOther)
{
    expectPlace(XMSG_DNS, "dns1", 120, 20);
    expectPlace(XMSG_DNS, "dns2", 140, 20);
    expectPlace(XMSG_DNS, "dns3", 160, 20);
    expectPlace(XMSG_DNS, "prefer_ipv4", 180, 4);
}

TEST(MsgFields, ThePortsOfAnEthernetMessageAreCalledEth1AndEth2)
{
    expectPlace(XMSG_ETH, "eth1.marker", 120, 4);
    expectPlace(XMSG_ETH, "eth1.enabled", 124, 4);
    expectPlace(XMSG_ETH, "eth1.source", 128, 4);
    expectPlace(XMSG_ETH, "eth1.ip", 132, 4);
    expectPlace(XMSG_ETH, "eth1.mask", 136, 4);
    expectPlace(XMSG_ETH, "eth1.ipv6", 140, 16);
    expectPlace(XMSG_ETH, "eth1.maskv6", 156, 4);
    expectPlace(XMSG_ETH, "eth1.mode", 160, 4);
    expectPlace(XMSG_ETH, "eth1.mtu", 164, 4);
    expectPlace(XMSG_ETH, "eth2.marker", 168, 4);
    expectPlace(XMSG_ETH, "eth2.ip", 180, 4);
    expectPlace(XMSG_ETH, "eth2.mtu", 212, 4);
}

TEST(MsgFields, TheSharedPartOfAnEthernetMessageFollowsThePorts)
{
    expectPlace(XMSG_ETH, "ipv6_enabled", 216, 4);
    expectPlace(XMSG_ETH, "gateway", 220, 4);
    expectPlace(XMSG_ETH, "gateway_ipv6", 224, 28);
    expectPlace(XMSG_ETH, "bonding", 252, 4);
    expectPlace(XMSG_ETH, "gw_precedence", 256, 4);
    expectPlace(XMSG_ETH, "alt_gateway", 260, 4);
    expectPlace(XMSG_ETH, "ping_ip", 264, 4);
    expectPlace(XMSG_ETH, "ping_ifc", 268, 1);
    expectPlace(XMSG_ETH, "ping_delay", 269, 1);
    expectPlace(XMSG_ETH, "ping_failed", 270, 1);
    expectPlace(XMSG_ETH, "timer", 272, 4);
    expectPlace(XMSG_ETH, "probes", 276, 2);
    expectPlace(XMSG_ETH, "interval", 278, 2);
    expectPlace(XMSG_ETH, "ip_forwarding", 280, 4);
}

TEST(MsgFields, EventsAndCommandsAndAnswersHaveTheirPlaces)
{
    expectPlace(XMSG_NOTIFY, "code", 120, 4);
    expectPlace(XMSG_NOTIFY, "text", 136, 2488 - 136);
    expectPlace(XMSG_NAT_NOTIFY, "add", 120, 4);
    expectPlace(XMSG_NAT_NOTIFY, "address", 124, 4);
    expectPlace(XMSG_APPLICATION, "application", 120, 4);
    expectPlace(XMSG_APPLICATION, "start", 124, 4);
    expectPlace(XMSG_ACKNAK, "success", 120, 4);
    expectPlace(XMSG_ACKNAK, "complete", 124, 4);
    expectPlace(XMSG_ACKNAK, "rcode", 128, 4);
    expectPlace(XMSG_ACKNAK, "rstr", 132, 500);
    EXPECT_TRUE(msgFieldsOf(XMSG_USERLIST)->fields.empty());
}

TEST(MsgFields, OnlySettingsAreStoredAndOnlyEventsAndAnswersAreNeverAnswered)
{
    for (const std::uint32_t msgtype : {XMSG_ETH, XMSG_HOSTNAME, XMSG_DNS}) {
        EXPECT_TRUE(msgFieldsOf(msgtype)->stored) << msgtype;
        EXPECT_TRUE(msgFieldsOf(msgtype)->answered) << msgtype;
    }
    for (const std::uint32_t msgtype : {XMSG_APPLICATION, XMSG_USERLIST}) {
        EXPECT_FALSE(msgFieldsOf(msgtype)->stored) << msgtype;
        EXPECT_TRUE(msgFieldsOf(msgtype)->answered) << msgtype;
    }
    for (const std::uint32_t msgtype : {XMSG_NOTIFY, XMSG_NAT_NOTIFY, XMSG_ACKNAK}) {
        EXPECT_FALSE(msgFieldsOf(msgtype)->stored) << msgtype;
        EXPECT_FALSE(msgFieldsOf(msgtype)->answered) << msgtype;
    }
}

TEST(MsgFields, TheListSpreadsGroupsInTheOrderOfTheRecord)
{
    const auto list = xasListFields(*msgFieldsOf(XMSG_ETH));
    ASSERT_EQ(list.size(), 2U * 9U + 14U);
    EXPECT_EQ(list[0].name, "eth1.marker");
    EXPECT_EQ(list[8].name, "eth1.mtu");
    EXPECT_EQ(list[9].name, "eth2.marker");
    EXPECT_EQ(list[18].name, "ipv6_enabled");
    EXPECT_TRUE(std::ranges::is_sorted(list, {}, [](const auto &where) { return where.place.offset; }));
}

TEST(MsgFields, EveryDescribedTypeHasANameAMeaningAndFieldsThatFit)
{
    for (std::uint32_t msgtype = 0; msgtype <= 100; ++msgtype) {
        const XasMsgFields *fields = msgFieldsOf(msgtype);
        if (fields == nullptr)
            continue;
        EXPECT_FALSE(xasMsgTypeName(msgtype).empty()) << msgtype;
        EXPECT_FALSE(fields->meaning.empty()) << msgtype;
        std::set<std::string> names;
        for (const XasMsgFieldAt &where : xasListFields(*fields)) {
            EXPECT_TRUE(names.insert(where.name).second) << where.name;
            EXPECT_LE(where.place.offset + where.place.width, XAS_MESSAGE_SIZE) << where.name;
            EXPECT_FALSE(where.field->meaning.empty()) << where.name;
        }
    }
}

TEST(MsgFields, EveryDefaultIsAValueThatItsFieldTakes)
{
    for (std::uint32_t msgtype = 0; msgtype <= 100; ++msgtype) {
        const XasMsgFields *fields = msgFieldsOf(msgtype);
        if (fields == nullptr)
            continue;
        XasMessage record{};
        for (const XasMsgFieldAt &where : xasListFields(*fields)) {
            if (where.field->initial.empty())
                continue;
            EXPECT_EQ(msgSetValue(bytesOf(record), where, where.field->initial), "") << where.name;
            EXPECT_EQ(msgValueText(bytesOf(record), where), where.field->initial) << where.name;
        }
    }
}

TEST(MsgFields, AGroupOfSingleValuesIsNamedByItsNumbersAlone)
{
    static constexpr XasMsgGroup SLAVES = {.name = "slave", .place = {120, 12}, .stride = 4};
    static constexpr XasMsgField FIELDS[] = {
        {.place = {120, 4}, .kind = XasFieldKind::ipv4, .meaning = "a slave", .group = &SLAVES}};
    const auto list = xasListFields({.fields = FIELDS});
    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(list[2].name, "slave3");
    EXPECT_EQ(list[2].place.offset, 128U);
}

TEST(MsgFields, AnAllZeroElementIsUnusedUnlessItsGroupIsFixed)
{
    static constexpr XasMsgGroup LOOSE = {.name = "a", .place = {120, 16}, .stride = 8};
    static constexpr XasMsgGroup FIXED = {.name = "b", .place = {136, 16}, .stride = 8, .fixed = true};
    static constexpr XasMsgField FIELDS[] = {
        {.name = "x", .place = {124, 4}, .meaning = "x", .group = &LOOSE},
        {.name = "x", .place = {136, 4}, .meaning = "x", .group = &FIXED},
        {.name = "y", .place = {152, 4}, .meaning = "y"}};
    const XasMsgFields fields = {.fields = FIELDS};
    XasMessage record{};
    bytesOf(record)[128] = std::byte{1}; // the first byte of a2, in front of a2.x
    EXPECT_FALSE(xasIsUsed(bytesOf(record), *xasFindField(fields, "a1.x")));
    EXPECT_TRUE(xasIsUsed(bytesOf(record), *xasFindField(fields, "a2.x")));
    EXPECT_TRUE(xasIsUsed(bytesOf(record), *xasFindField(fields, "b1.x")));
    EXPECT_TRUE(xasIsUsed(bytesOf(record), *xasFindField(fields, "y")));
}
