#include "msg/values.h"

#include <gtest/gtest.h>
#include <string>

namespace {

using enum XasFieldKind;

constexpr std::size_t OFFSET = 8;

/** A block with one field in the middle of bytes that must not change. */
class MsgValues : public testing::Test {
  protected:
    MsgValues() : block(128, std::byte{0xEE}) {}

    XasMsgFieldAt at(const XasMsgField &field) const { return {"field", &field, field.place, 0}; }

    std::string set(const XasMsgField &field, std::string_view text,
                    XasValueCheck check = XasValueCheck::allowed)
    {
        return msgSetValue(block, at(field), text, check);
    }

    std::string read(const XasMsgField &field) const { return msgValueText(block, at(field)); }

    /** The field's bytes, and a check that no other byte has changed. */
    std::string bytes(const XasMsgField &field) const
    {
        for (std::size_t i = 0; i < block.size(); ++i) {
            const bool isInside = i >= OFFSET && i < OFFSET + field.place.width;
            EXPECT_TRUE(isInside || block[i] == std::byte{0xEE}) << i;
        }
        return {reinterpret_cast<const char *>(block.data()) + OFFSET, field.place.width};
    }

    void expectRefused(const XasMsgField &field, std::string_view text, std::string_view expected,
                       XasValueCheck check = XasValueCheck::allowed)
    {
        const std::vector<std::byte> before = block;
        const std::string complaint = set(field, text, check);
        EXPECT_NE(complaint.find(expected), std::string::npos) << text << ": " << complaint;
        EXPECT_EQ(block, before) << text;
    }

    /** Sets and reads back the same text. */
    void expectKept(const XasMsgField &field, const std::string &text)
    {
        EXPECT_EQ(set(field, text), "");
        EXPECT_EQ(read(field), text);
    }

    std::vector<std::byte> block;
};

XasMsgField field(XasFieldKind kind, std::size_t width)
{
    return {.name = "field", .place = {OFFSET, width}, .kind = kind, .meaning = "a field"};
}

std::string text4(const char (&bytes)[5])
{
    return {bytes, 4};
}

constexpr XasValueName COLOURS[] = {{0, "red"}, {2, "802.3ad"}, {200, "blue"}};

} // namespace

TEST_F(MsgValues, ATextThatLeavesNoRoomForItsNulIsRefused)
{
    expectRefused(field(text, 4), "four", "at most 3 characters");
}

TEST_F(MsgValues, AForcedTextMayFillTheFieldButNotMore)
{
    EXPECT_EQ(set(field(text, 4), "four", XasValueCheck::anyThatFits), "");
    EXPECT_EQ(read(field(text, 4)), "four");
    expectRefused(field(text, 4), "fives", "at most 3 characters", XasValueCheck::anyThatFits);
}

TEST_F(MsgValues, AShorterTextLeavesNothingOfALongerOne)
{
    const XasMsgField name = field(text, 6);
    EXPECT_EQ(set(name, "alpha"), "");
    EXPECT_EQ(set(name, "be"), "");
    EXPECT_EQ(bytes(name), std::string("be\0\0\0\0", 6));
    EXPECT_EQ(set(name, ""), "");
    EXPECT_EQ(bytes(name), std::string(6, '\0'));
}

TEST_F(MsgValues, ANumberOutsideItsWidthNamesTheRange)
{
    expectRefused(field(number, 1), "256", "0 to 255");
    expectRefused(field(number, 2), "65536", "0 to 65535");
    expectRefused(field(number, 4), "4294967296", "0 to 4294967295");
    expectRefused(field(number, 8), "18446744073709551616", "0 to 18446744073709551615");
    expectRefused(field(number, 1), "256", "0 to 255", XasValueCheck::anyThatFits);
}

TEST_F(MsgValues, WhatIsNoNumberIsRefused)
{
    for (const char *text : {"", "-1", "+1", "1.5", "12a", " 1", "0x", "0xg"})
        expectRefused(field(number, 4), text, "0 to 4294967295");
}

TEST_F(MsgValues, ANumberOutsideItsRangeIsRefusedUnlessForced)
{
    XasMsgField prefix = field(number, 4);
    prefix.range = XasRange{1, 128};
    expectRefused(prefix, "129", "1 to 128");
    expectRefused(prefix, "0", "1 to 128");
    EXPECT_EQ(set(prefix, "129", XasValueCheck::anyThatFits), "");
    EXPECT_EQ(read(prefix), "129");
}

TEST_F(MsgValues, NumbersAreLittleEndianAndMayBeHexadecimal)
{
    EXPECT_EQ(set(field(number, 2), "0x1234"), "");
    EXPECT_EQ(bytes(field(number, 2)), "\x34\x12");
    EXPECT_EQ(read(field(number, 2)), "4660");
    EXPECT_EQ(set(field(number, 4), "67305985"), ""); // 0x04030201
    EXPECT_EQ(bytes(field(number, 4)), "\x01\x02\x03\x04");
    expectKept(field(number, 8), "18446744073709551615");
    expectKept(field(number, 1), "255");
}

TEST_F(MsgValues, ASignedNumberMayBeNegative)
{
    expectKept(field(integer, 4), "-1");
    EXPECT_EQ(bytes(field(integer, 4)), "\xFF\xFF\xFF\xFF");
    expectKept(field(integer, 4), "-2147483648");
    expectRefused(field(integer, 4), "2147483648", "-2147483648 to 2147483647");
    XasMsgField minutes = field(integer, 4);
    minutes.range = XasRange{-1, 60};
    expectRefused(minutes, "61", "-1 to 60");
    expectRefused(minutes, "-2", "-1 to 60");
    EXPECT_EQ(set(minutes, "-2", XasValueCheck::anyThatFits), "");
    EXPECT_EQ(read(minutes), "-2");
}

TEST_F(MsgValues, AFlagIsYesOrNoInSeveralSpellings)
{
    for (const char *yes : {"yes", "on", "true", "1"}) {
        EXPECT_EQ(set(field(flag, 4), yes), "");
        EXPECT_EQ(bytes(field(flag, 4)), text4("\x01\0\0\0")) << yes;
    }
    for (const char *no : {"no", "off", "false", "0"}) {
        EXPECT_EQ(set(field(flag, 4), no), "");
        EXPECT_EQ(bytes(field(flag, 4)), text4("\0\0\0\0")) << no;
    }
    for (const char *neither : {"", "2", "y", "YES", "maybe"})
        expectRefused(field(flag, 4), neither, "yes or no");
}

TEST_F(MsgValues, AnyNonZeroFlagReadsAsYes)
{
    EXPECT_EQ(set(field(flag, 4), "0x01000000", XasValueCheck::anyThatFits), "");
    EXPECT_EQ(bytes(field(flag, 4)), text4("\0\0\0\x01"));
    EXPECT_EQ(read(field(flag, 4)), "yes");
}

TEST_F(MsgValues, AChoiceTakesItsNamesAndTheirNumbersOnly)
{
    XasMsgField colour = field(choice, 1);
    colour.names = COLOURS;
    expectRefused(colour, "green", "red, 802.3ad or blue");
    expectRefused(colour, "1", "red, 802.3ad or blue");
    expectRefused(colour, "", "red, 802.3ad or blue");
    expectKept(colour, "802.3ad");
    EXPECT_EQ(bytes(colour), "\x02");
    EXPECT_EQ(set(colour, "200"), "");
    EXPECT_EQ(read(colour), "blue");
}

TEST_F(MsgValues, AChoiceWithARangeTakesNumbersWithoutNameToo)
{
    XasMsgField colour = field(choice, 4);
    colour.names = COLOURS;
    colour.range = XasRange{0, 6};
    expectKept(colour, "5");
    expectRefused(colour, "7", "red, 802.3ad or blue, or a number 0 to 6");
}

TEST_F(MsgValues, AForcedChoiceTakesWhatFits)
{
    XasMsgField colour = field(choice, 1);
    colour.names = COLOURS;
    EXPECT_EQ(set(colour, "4", XasValueCheck::anyThatFits), "");
    EXPECT_EQ(read(colour), "4");
    expectRefused(colour, "256", "red", XasValueCheck::anyThatFits);
}

TEST_F(MsgValues, AMaskIsShownInHexadecimal)
{
    expectKept(field(mask, 8), "0xffffffffffffffff");
    EXPECT_EQ(set(field(mask, 4), "255"), "");
    EXPECT_EQ(read(field(mask, 4)), "0xff");
    expectRefused(field(mask, 1), "0x100", "0x0 to 0xff");
}

TEST_F(MsgValues, ABadIpv4AddressNamesTheFormThatIsExpected)
{
    for (const char *text :
         {"", "none", "1.2.3", "1.2.3.256", "1.2.3.4.5", "console1", "fd00::1", "1.2.3.4 "})
        expectRefused(field(ipv4, 4), text, "an IPv4 address such as 192.168.1.10");
}

TEST_F(MsgValues, AnIpv4AddressStandsInNetworkOrder)
{
    expectKept(field(ipv4, 4), "192.168.1.10");
    EXPECT_EQ(bytes(field(ipv4, 4)), text4("\xC0\xA8\x01\x0A"));
    expectKept(field(ipv4, 4), "255.255.255.255");
    expectKept(field(ipv4, 4), "0.0.0.0");
}

TEST_F(MsgValues, NoIpv4AddressIsAllOnesWhereTheFieldKnowsNone)
{
    XasMsgField gateway = field(ipv4, 4);
    gateway.none = true;
    expectRefused(gateway, "nothing", "or none");
    expectKept(gateway, "none");
    EXPECT_EQ(bytes(gateway), "\xFF\xFF\xFF\xFF");
    EXPECT_EQ(set(gateway, "10.0.0.1"), "");
    EXPECT_EQ(set(gateway, ""), "");
    EXPECT_EQ(read(gateway), "none");
    expectKept(gateway, "0.0.0.0");
}

TEST_F(MsgValues, AnIpv6AddressIsSixteenBytesAndZeroIsNone)
{
    expectRefused(field(ipv6, 16), "10.0.0.1", "an IPv6 address such as fd00::1");
    expectKept(field(ipv6, 16), "fd00::1");
    EXPECT_EQ(bytes(field(ipv6, 16)), "\xFD" + std::string(14, '\0') + "\x01");
    expectKept(field(ipv6, 16), "none");
    EXPECT_EQ(bytes(field(ipv6, 16)), std::string(16, '\0'));
}

TEST_F(MsgValues, AnIpv6SocketAddressCarriesItsFamily)
{
    expectRefused(field(sockaddr6, 28), "gateway", "an IPv6 address such as fd00::1");
    expectKept(field(sockaddr6, 28), "fe80::1");
    std::string expected(28, '\0');
    expected[0] = 10; // AF_INET6
    expected.replace(8, 2, "\xFE\x80");
    expected[23] = 1;
    EXPECT_EQ(bytes(field(sockaddr6, 28)), expected);
    expectKept(field(sockaddr6, 28), "none");
    EXPECT_EQ(bytes(field(sockaddr6, 28)), std::string(28, '\0'));
}

TEST_F(MsgValues, AnAddressRecordHoldsEitherFamily)
{
    const XasMsgField server = field(ipAddr, 20);
    expectRefused(server, "ns1.example.org", "an IPv4 or IPv6 address");
    expectKept(server, "fd00::35");
    EXPECT_EQ(bytes(server), text4("\x01\0\0\0") + "\xFD" + std::string(14, '\0') + "\x35");
    expectKept(server, "10.0.0.53"); // nothing of the longer address is left
    EXPECT_EQ(bytes(server), std::string(4, '\0') + text4("\x0A\0\0\x35") + std::string(12, '\0'));
    expectKept(server, "none");
    EXPECT_EQ(bytes(server), std::string(20, '\0'));
}

TEST_F(MsgValues, AHostRecordHoldsANameOrAnAddress)
{
    const XasMsgField host = field(hostAddr, 76);
    expectKept(host, "time.example.org");
    EXPECT_EQ(bytes(host),
              text4("\x01\0\0\0") + std::string(4, '\0') + "time.example.org" + std::string(68 - 16, '\0'));
    expectKept(host, "192.168.1.1");
    EXPECT_EQ(bytes(host), std::string(8, '\0') + "\xC0\xA8\x01\x01" + std::string(64, '\0'));
    expectKept(host, "fd00::7");
    EXPECT_EQ(bytes(host), std::string(4, '\0') + text4("\x01\0\0\0") + "\xFD" + std::string(14, '\0') +
                               "\x07" + std::string(52, '\0'));
}

TEST_F(MsgValues, AnUnusedHostIsAnEmptyName)
{
    const XasMsgField host = field(hostAddr, 76);
    for (const char *unused : {"none", ""}) {
        EXPECT_EQ(set(host, unused), "");
        EXPECT_EQ(bytes(host), text4("\x01\0\0\0") + std::string(72, '\0'));
        EXPECT_EQ(read(host), "none");
    }
}

TEST_F(MsgValues, AnAllZeroHostReadsAsAddress)
{
    block.assign(128, std::byte{0});
    EXPECT_EQ(read(field(hostAddr, 76)), "0.0.0.0");
}

TEST_F(MsgValues, WhatIsNeitherHostNameNorAddressIsRefusedUnlessForced)
{
    const XasMsgField host = field(hostAddr, 76);
    for (const char *text : {"10.0.0", "10.0.0.256", "a b", "fd00::g", "tab\t"})
        expectRefused(host, text, "a host name of at most 67 characters");
    expectKept(host, std::string(67, 'n'));
    expectRefused(host, std::string(68, 'n'), "at most 67", XasValueCheck::anyThatFits);
    EXPECT_EQ(set(host, "a b", XasValueCheck::anyThatFits), "");
    EXPECT_EQ(read(host), "a b");
}

TEST_F(MsgValues, KindsAreNamedWithTheirBits)
{
    EXPECT_EQ(msgKindName(field(number, 1)), "u8");
    EXPECT_EQ(msgKindName(field(number, 8)), "u64");
    EXPECT_EQ(msgKindName(field(integer, 4)), "i32");
    EXPECT_EQ(msgKindName(field(text, 9)), "text");
    EXPECT_EQ(msgKindName(field(hostAddr, 76)), "host");
}

TEST_F(MsgValues, DefaultsFillTheFieldsOutsideGroupsAndInFixedOnes)
{
    static constexpr XasMsgGroup LOOSE = {.name = "a", .place = {8, 8}, .stride = 4};
    static constexpr XasMsgGroup FIXED = {.name = "b", .place = {16, 8}, .stride = 4, .fixed = true};
    static constexpr XasMsgField FIELDS[] = {
        {.name = "x", .place = {8, 4}, .meaning = "x", .initial = "7", .group = &LOOSE},
        {.name = "x", .place = {16, 4}, .meaning = "x", .initial = "8", .group = &FIXED},
        {.name = "y", .place = {24, 4}, .meaning = "y", .initial = "9"}};
    const XasMsgFields fields = {.fields = FIELDS};
    block.assign(128, std::byte{0});
    msgSetDefaults(block, fields);
    EXPECT_TRUE(xasIsZero(block, {8, 8}));
    EXPECT_EQ(msgValueNumber(block, {16, 4}), 8U);
    EXPECT_EQ(msgValueNumber(block, {20, 4}), 8U);
    EXPECT_EQ(msgValueNumber(block, {24, 4}), 9U);
    msgSetElementDefaults(block, fields, LOOSE, 1);
    EXPECT_EQ(msgValueNumber(block, {8, 4}), 0U);
    EXPECT_EQ(msgValueNumber(block, {12, 4}), 7U);
}
