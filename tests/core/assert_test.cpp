#include "core/assert.h"

#include "support/test.h"

TEST(AssertDeathTest, EndsTheProcessWithTheConditionsText)
{
    EXPECT_EXIT(xasAssert(false, "XMSG_ETH == msg->xH.msgtype"), testing::KilledBySignal(SIGABRT),
                "Assertion `XMSG_ETH == msg->xH.msgtype' failed\\.");
}

TEST(AssertDeathTest, NamesAnArgumentThatIsNotGiven)
{
    EXPECT_EXIT(xasAssertGiven(nullptr, "msg"), testing::KilledBySignal(SIGABRT),
                "Assertion `msg != \\(\\(void \\*\\)0\\)' failed\\.");
}

TEST(AssertDeathTest, NamesTheFunctionThatAsserts)
{
    EXPECT_EXIT(xasAssert(false, "x"), testing::KilledBySignal(SIGABRT), "TestBody");
}

TEST(Assert, LetsAConditionThatHoldsPass)
{
    const int given = 0;
    xasAssert(true, "true");
    xasAssertGiven(&given, "given");
}
