#include "xms/hex.h"

#include "support/test.h"

TEST(XmsHex, WhatIsNotWholeBytesOfHexIsNone)
{
    for (const char *text : {"0", "0g", "123", "0x12", "12-34"})
        EXPECT_EQ(xmsFromHex(text), std::nullopt) << text;
}

TEST(XmsHex, ARecordOfAnotherSizeIsNone)
{
    EXPECT_FALSE(xmsRecordFromHex(""));
    EXPECT_FALSE(xmsRecordFromHex(std::string(std::size_t{2} * 2487, '0')));
    EXPECT_FALSE(xmsRecordFromHex(std::string(std::size_t{2} * 2489, '0')));
}

TEST(XmsHex, DigitsOfEitherCaseAndBlanksBetweenThemAreRead)
{
    const std::vector<std::byte> expected = {std::byte{0x00}, std::byte{0xAB}, std::byte{0xCD},
                                             std::byte{0xFF}};
    EXPECT_EQ(xmsFromHex("00abCD fF\n"), expected);
    EXPECT_EQ(xmsFromHex("0 0\nab cdff"), expected);
    EXPECT_EQ(xmsFromHex(""), std::vector<std::byte>{});
    EXPECT_EQ(xmsToHex(expected), "00abcdff");
}

TEST(XmsHex, ARecordComesBackAsItWas)
{
    XasMessage record{};
    record.xH.msgtype = 0x01020304;
    record.payload.back() = std::byte{0xA5};
    const std::string text = xmsToHex(record);
    EXPECT_EQ(text.size(), 2U * 2488U);
    EXPECT_TRUE(text.starts_with("04030201"));
    EXPECT_TRUE(text.ends_with("a5"));
    const auto back = xmsRecordFromHex(text);
    ASSERT_TRUE(back);
    EXPECT_EQ(std::memcmp(&*back, &record, sizeof record), 0);
}
