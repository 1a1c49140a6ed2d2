// The built daemon when the configuration server takes its queues away.
#include "support/daemon.h"
#include "support/test.h"

#include <sys/msg.h>

TEST(DaemonQueues, ThatVanishAreLoggedOnceAndAttachedAgain)
{
    XasTestDaemon daemon;
    daemon.start({});
    EXPECT_EQ(daemon.ask(XasMessageBuilder{XMSG_SSH}.id(5)).xH.id, 10U);
    daemon.queues.reset();
    ASSERT_TRUE(daemon.log.awaitCount("auth/err-Error getting MSGQ_APP_TO_XMS message queue\n", 2, 5s));
    daemon.queues.emplace();
    EXPECT_EQ(daemon.ask(XasMessageBuilder{XMSG_SSH}.id(6)).xH.id, 11U);
    const auto lines = daemon.log.arrived();
    EXPECT_EQ(std::ranges::count(lines, "sw/err-Error receiving from XMS message queue\n",
                                 [](const auto &each) { return each.line.text; }),
              1);
    EXPECT_LE(lines.size(), 6U) << "a line a second, not ten";
}

TEST(DaemonQueues, DoNotKeepIdleWorkWaitingForAUserListThatNeverComes)
{
    XasTestDaemon daemon;
    daemon.start({});
    daemon.queues->send(XasMessageBuilder{XMSG_LOCALUSERS}.set("num_users", 1));
    daemon.signal(SIGTERM);
    EXPECT_TRUE(daemon.awaitEnd(2s)) << "signals are served meanwhile";
}
