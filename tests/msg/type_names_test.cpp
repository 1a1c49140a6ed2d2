#include "msg/type_names.h"

#include "support/test.h"
#include "wire/message.h"

TEST(MsgTypeNames, WhatNamesNoTypeIsNone)
{
    for (const char *text : {"", "host name", "XMSG_", "hostname2", "-1", "3x", "0x3", "4294967296"})
        EXPECT_EQ(msgTypeFromText(text), std::nullopt) << text;
}

TEST(MsgTypeNames, ATypeIsNamedShortOrLongInAnyCase)
{
    for (const char *text : {"dp_global", "DP_GLOBAL", "XMSG_DP_GLOBAL", "xmsg_dp_global", "Dp_Global"})
        EXPECT_EQ(msgTypeFromText(text), XMSG_DP_GLOBAL) << text;
}

TEST(MsgTypeNames, ANumberNamesEveryTypeEvenOneWithoutName)
{
    EXPECT_EQ(msgTypeFromText("2"), XMSG_HOSTNAME);
    EXPECT_EQ(msgTypeFromText("66"), 66U);
    EXPECT_EQ(msgTypeFromText("0"), 0U);
    EXPECT_EQ(msgTypeFromText("4294967295"), 4294967295U);
}

TEST(MsgTypeNames, ATypeWithoutNameShowsItsNumber)
{
    EXPECT_EQ(msgShortName(66), "66");
    EXPECT_EQ(msgLongName(66), "type 66");
    EXPECT_EQ(msgShortName(0), "0");
    EXPECT_EQ(msgLongName(69), "type 69");
}

TEST(MsgTypeNames, TheShortNameIsInLowerCaseWithoutPrefix)
{
    EXPECT_EQ(msgShortName(XMSG_ETH), "eth");
    EXPECT_EQ(msgShortName(XMSG_IPFILTER_SET), "ipfilter_set");
    EXPECT_EQ(msgShortName(XMSG_ERROR), "error");
    EXPECT_EQ(msgLongName(XMSG_NAT_NOTIFY), "XMSG_NAT_NOTIFY");
}
