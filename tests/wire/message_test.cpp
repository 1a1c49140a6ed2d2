#include "wire/message.h"
#include "wire/reply_message.h"

#include "support/message.h"
#include "support/test.h"

using namespace std::string_literals;

TEST(MessageText, EndsWithItsFieldWhenNoNulIsThere)
{
    const char field[4] = {'a', 'b', 'c', 'd'};
    EXPECT_EQ(xasFieldText(field), "abcd");
}

TEST(MessageText, EndsAtItsFirstNul)
{
    const char field[6] = {'a', 'b', '\0', 'c', '\0', '\0'};
    EXPECT_EQ(xasFieldText(field), "ab");
    const char empty[3] = {'\0', 'x', 'y'};
    EXPECT_EQ(xasFieldText(empty), "");
}

TEST(MessageText, IsCutSoThatItsFieldEndsInANul)
{
    char field[4] = {'x', 'x', 'x', 'x'};
    xasSetFieldText(field, "abcdef");
    EXPECT_EQ((std::string_view{field, 4}), (std::string_view{"abc\0", 4}));
}

TEST(MessageText, LeavesNothingOfAnEarlierOneBehindIt)
{
    char field[6] = {'x', 'x', 'x', 'x', 'x', 'x'};
    xasSetFieldText(field, "a");
    EXPECT_EQ((std::string_view{field, 6}), (std::string_view{"a\0\0\0\0\0", 6}));
}

TEST(MessageRecord, IsOneHeaderAndOnePayload)
{
    EXPECT_EQ(sizeof(XasMessage), 2488U);
    EXPECT_EQ(sizeof(XasMsgHeader), 120U);
    EXPECT_EQ(XAS_PAYLOAD_SIZE, 2368U);
}

TEST(MessageRecord, HoldsItsHeaderWordsInOrder)
{
    XasMessage msg{};
    msg.xH.msgtype = 0x01020304;
    msg.xH.action = 1;
    msg.xH.sender = 4;
    msg.xH.id = 10;
    msg.xH.orig_id = 0xFFFFFFFFU;
    EXPECT_EQ(xasMessageBytes(msg, 0, 24), "\x04\x03\x02\x01"
                                           "\x01\0\0\0"
                                           "\x04\0\0\0"
                                           "\x0a\0\0\0"
                                           "\xff\xff\xff\xff"
                                           "\0\0\0\0"s);
}

TEST(MessageRecord, GivesPayloadWordsByNumberAndValuesByOffset)
{
    const XasMessage msg = XasMessageBuilder{1}.bytes(120, "\x44\x33\x22\x11\x07").bytes(2486, "\xcd\xab");
    EXPECT_EQ(xasPayloadWord<0>(msg), 0x11223344U);
    EXPECT_EQ(xasPayloadWord<1>(msg), 7U);
    EXPECT_EQ((xasPayloadValue<std::uint8_t, 121>(msg)), 0x33);
    EXPECT_EQ((xasPayloadValue<std::uint16_t, 2486>(msg)), 0xabcd);
}

TEST(MessageRecord, HoldsThePayloadBehindTheHeader)
{
    XasReplyPayload reply{.success = 1, .complete = 2, .rcode = 3, .rstr = {}};
    xasSetFieldText(reply.rstr, "reason");
    XasMessage msg{};
    xasWritePayload(msg, reply);
    EXPECT_EQ(xasMessageBytes(msg, 116, 24), "\0\0\0\0\1\0\0\0\2\0\0\0\3\0\0\0reason\0\0"s);
    EXPECT_EQ(xasReadPayload<XasReplyPayload>(msg).rcode, 3U);
    EXPECT_EQ(xasFieldString(xasReadPayload<XasReplyPayload>(msg).rstr), "reason");
}
