// The fields of XMSG_NTP.
#include "msg/fields.h"

#include "msg/values.h"
#include "support/fields.h"

#include <gtest/gtest.h>

TEST(NtpFields, StandWhereTheHandlerReadsThem)
{
    xasExpectFields(XMSG_NTP, {{"enabled", 120, 4},
                               {"sync", 124, 4},
                               {"poll", 128, 4},
                               {"server1", 132, 76},
                               {"server2", 208, 76},
                               {"server3", 284, 76},
                               {"single", 360, 76}});
}

TEST(NtpFields, HaveNoServersUnlessTheyAreSet)
{
    XasMessage record{};
    const auto bytes = std::as_writable_bytes(std::span{&record, 1});
    msgSetDefaults(bytes, *msgFieldsOf(XMSG_NTP));
    for (const std::size_t offset : {132U, 208U, 284U, 360U})
        EXPECT_EQ(msgValueNumber(bytes, {offset, 4}), 1U) << offset; // a name, which is empty
}
