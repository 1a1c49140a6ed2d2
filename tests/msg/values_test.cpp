#include "msg/values.h"

#include "support/values.h"

namespace {

using enum XasFieldKind;
using MsgValues = XasValuesTest;

constexpr XasValueName COLOURS[] = {{0, "red"}, {2, "802.3ad"}, {200, "blue"}};

} // namespace

TEST_F(MsgValues, ATextThatLeavesNoRoomForItsNulIsRefused)
{
    expectRefused(xasTestField(text, 4), "four", "at most 3 characters");
}

TEST_F(MsgValues, ATextWithANulInItIsRefusedEvenWhenForced)
{
    const std::string_view text{"a\0b", 3};
    expectRefused(xasTestField(XasFieldKind::text, 8), text, "at most 7 characters");
    expectRefused(xasTestField(XasFieldKind::text, 8), text, "at most 7 characters",
                  XasValueCheck::anyThatFits);
}

TEST_F(MsgValues, AForcedTextMayFillTheFieldButNotMore)
{
    EXPECT_EQ(set(xasTestField(text, 4), "four", XasValueCheck::anyThatFits), "");
    EXPECT_EQ(read(xasTestField(text, 4)), "four");
    expectRefused(xasTestField(text, 4), "fives", "at most 3 characters", XasValueCheck::anyThatFits);
}

TEST_F(MsgValues, AShorterTextLeavesNothingOfALongerOne)
{
    const XasMsgField name = xasTestField(text, 6);
    EXPECT_EQ(set(name, "alpha"), "");
    EXPECT_EQ(set(name, "be"), "");
    EXPECT_EQ(bytes(name), std::string("be\0\0\0\0", 6));
    EXPECT_EQ(set(name, ""), "");
    EXPECT_EQ(bytes(name), std::string(6, '\0'));
}

TEST_F(MsgValues, ANumberOutsideItsWidthNamesTheRange)
{
    expectRefused(xasTestField(number, 1), "256", "0 to 255");
    expectRefused(xasTestField(number, 2), "65536", "0 to 65535");
    expectRefused(xasTestField(number, 4), "4294967296", "0 to 4294967295");
    expectRefused(xasTestField(number, 8), "18446744073709551616", "0 to 18446744073709551615");
    expectRefused(xasTestField(number, 1), "256", "0 to 255", XasValueCheck::anyThatFits);
}

TEST_F(MsgValues, WhatIsNoNumberIsRefused)
{
    for (const char *text : {"", "-1", "+1", "1.5", "12a", " 1", "0x", "0xg"})
        expectRefused(xasTestField(number, 4), text, "0 to 4294967295");
}

TEST_F(MsgValues, ANumberOutsideItsRangeIsRefusedUnlessForced)
{
    XasMsgField prefix = xasTestField(number, 4);
    prefix.range = XasRange{1, 128};
    expectRefused(prefix, "129", "1 to 128");
    expectRefused(prefix, "0", "1 to 128");
    EXPECT_EQ(set(prefix, "129", XasValueCheck::anyThatFits), "");
    EXPECT_EQ(read(prefix), "129");
}

TEST_F(MsgValues, NumbersAreLittleEndianAndMayBeHexadecimal)
{
    EXPECT_EQ(set(xasTestField(number, 2), "0x1234"), "");
    EXPECT_EQ(bytes(xasTestField(number, 2)), "\x34\x12");
    EXPECT_EQ(read(xasTestField(number, 2)), "4660");
    EXPECT_EQ(set(xasTestField(number, 2), "0XaB"), "");
    EXPECT_EQ(read(xasTestField(number, 2)), "171");
    EXPECT_EQ(set(xasTestField(number, 4), "67305985"), ""); // 0x04030201
    EXPECT_EQ(bytes(xasTestField(number, 4)), "\x01\x02\x03\x04");
    expectKept(xasTestField(number, 8), "18446744073709551615");
    expectKept(xasTestField(number, 1), "255");
}

TEST_F(MsgValues, ASignedNumberMayBeNegative)
{
    expectKept(xasTestField(integer, 4), "-1");
    EXPECT_EQ(bytes(xasTestField(integer, 4)), "\xFF\xFF\xFF\xFF");
    expectKept(xasTestField(integer, 4), "-2147483648");
    expectRefused(xasTestField(integer, 4), "2147483648", "-2147483648 to 2147483647");
    XasMsgField minutes = xasTestField(integer, 4);
    minutes.range = XasRange{-1, 60};
    expectRefused(minutes, "61", "-1 to 60");
    expectRefused(minutes, "-2", "-1 to 60");
    EXPECT_EQ(set(minutes, "-2", XasValueCheck::anyThatFits), "");
    EXPECT_EQ(read(minutes), "-2");
}

TEST_F(MsgValues, AFlagIsYesOrNoInSeveralSpellings)
{
    for (const char *yes : {"yes", "on", "true", "1"}) {
        EXPECT_EQ(set(xasTestField(flag, 4), yes), "");
        EXPECT_EQ(bytes(xasTestField(flag, 4)), xasFourBytes("\x01\0\0\0")) << yes;
    }
    for (const char *no : {"no", "off", "false", "0"}) {
        EXPECT_EQ(set(xasTestField(flag, 4), no), "");
        EXPECT_EQ(bytes(xasTestField(flag, 4)), xasFourBytes("\0\0\0\0")) << no;
    }
    for (const char *neither : {"", "2", "y", "YES", "maybe"})
        expectRefused(xasTestField(flag, 4), neither, "yes or no");
}

TEST_F(MsgValues, AnyNonZeroFlagReadsAsYes)
{
    EXPECT_EQ(set(xasTestField(flag, 4), "0x01000000", XasValueCheck::anyThatFits), "");
    EXPECT_EQ(bytes(xasTestField(flag, 4)), xasFourBytes("\0\0\0\x01"));
    EXPECT_EQ(read(xasTestField(flag, 4)), "yes");
}

TEST_F(MsgValues, AChoiceTakesItsNamesAndTheirNumbersOnly)
{
    XasMsgField colour = xasTestField(choice, 1);
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
    XasMsgField colour = xasTestField(choice, 4);
    colour.names = COLOURS;
    colour.range = XasRange{0, 6};
    expectKept(colour, "5");
    expectRefused(colour, "7", "red, 802.3ad or blue, or a number 0 to 6");
}

TEST_F(MsgValues, AForcedChoiceTakesWhatFits)
{
    XasMsgField colour = xasTestField(choice, 1);
    colour.names = COLOURS;
    EXPECT_EQ(set(colour, "4", XasValueCheck::anyThatFits), "");
    EXPECT_EQ(read(colour), "4");
    expectRefused(colour, "256", "red", XasValueCheck::anyThatFits);
}

TEST_F(MsgValues, AMaskIsShownInHexadecimal)
{
    expectKept(xasTestField(mask, 8), "0xffffffffffffffff");
    EXPECT_EQ(set(xasTestField(mask, 4), "255"), "");
    EXPECT_EQ(read(xasTestField(mask, 4)), "0xff");
    expectRefused(xasTestField(mask, 1), "0x100", "0x0 to 0xff");
}

TEST_F(MsgValues, KindsAreNamedWithTheirBits)
{
    EXPECT_EQ(msgKindName(xasTestField(number, 1)), "u8");
    EXPECT_EQ(msgKindName(xasTestField(number, 8)), "u64");
    EXPECT_EQ(msgKindName(xasTestField(integer, 4)), "i32");
    EXPECT_EQ(msgKindName(xasTestField(text, 9)), "text");
    EXPECT_EQ(msgKindName(xasTestField(hostAddr, 76)), "host");
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
