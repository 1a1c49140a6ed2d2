// The private root itself: what every other test of this program takes for granted.
#include "support/link.h"
#include "support/log_socket.h"
#include "support/root.h"
#include "support/stub.h"

#include <sys/msg.h>
#include <sys/socket.h>

TEST(PrivateRoot, HidesTheFilesAndAccountsOfTheHost)
{
    EXPECT_TRUE(xasInPrivateRoot());
    EXPECT_EQ(::getuid(), 0U);
    EXPECT_EQ(xasReadFile("/etc/passwd"), "root:x:0:0:root:/root:/bin/sh\n");
    EXPECT_FALSE(xasExists("/r58"));
}

TEST(PrivateRoot, HasQueuesOfItsOwn)
{
    EXPECT_EQ(::msgget(1005, 0), -1);
    const int queue = ::msgget(1005, IPC_CREAT | IPC_EXCL | 0600);
    EXPECT_GE(queue, 0);
    EXPECT_EQ(::msgctl(queue, IPC_RMID, nullptr), 0);
}

TEST(PrivateRoot, HasANetworkOfItsOwnWithPortsThatCanBeMade)
{
    EXPECT_FALSE(xasExists("/sys"));
    const XasTestLink eth0{0};
    const XasTestLink eth1{1};
    eth0.plug();
    eth0.unplug();
}

TEST(PrivateRoot, LetsATestReplaceAnyProgramAndSeesItsCallsInOrder)
{
    XasStubs stubs;
    stubs.put("/bin/killall", 3);
    stubs.put("/usr/bin/xas_iptables.sh");
    EXPECT_EQ(WEXITSTATUS(std::system("/bin/killall -SIGHUP 'two words'")), 3);
    EXPECT_EQ(std::system("/usr/bin/xas_iptables.sh resetAll ''"), 0);
    EXPECT_THAT(stubs.calls(), ElementsAre(ElementsAre("/bin/killall", "-SIGHUP", "two words"),
                                           ElementsAre("/usr/bin/xas_iptables.sh", "resetAll", "")));
}

TEST(PrivateRoot, PutsTheSystemLoggersSocketIntoTheTestsHands)
{
    const XasLogSocket log;
    ASSERT_EQ(std::system("logger -p local6.err -t xasd 'sw/err-text'"), 0);
    ASSERT_TRUE(log.await("sw/err-text"));
    EXPECT_EQ(log.lines().front().priority, LOG_ERR);
    EXPECT_EQ(log.arrived().front().line.priority, LOG_LOCAL6 | LOG_ERR);
    EXPECT_EQ(log.arrived().front().ident, "xasd");
}

TEST(PrivateRoot, KeepsTheLineFeedOfALoggedText)
{
    const XasSocketLine line = xasParseLogDatagram("<179>Jan  2 03:04:05 xasd: sw/err-a: b\n");
    EXPECT_EQ(line.line, (XasLogLine{179, "sw/err-a: b\n"}));
    EXPECT_EQ(line.ident, "xasd");
}
