// The filter's test timer from start to expiry, time being moved by the test, with the queues of XMS.
#include "dispatch/ipfilter_timer.h"

#include "core/msgqueue.h"
#include "core/wait.h"
#include "dispatch/ipfilter_enable.h"
#include "support/daemon.h"
#include "support/ipfilter.h"
#include "support/reply.h"
#include "support/shell.h"
#include "support/supervision.h"

#include <sys/msg.h>

namespace {

const std::string TIMER_FILE = "/tmp/.save/ipfilter-timer.txt";

/** The clock's wall time begins at 1000 s. */
class FilterTimerTest : public testing::Test {
  protected:
    FilterTimerTest()
    {
        stubs.put("/bin/iptables");
        xasWriteFile(TIMER_FILE, "");
        EXPECT_EQ(set(1, 0), 0);
        EXPECT_EQ(xasInitMsgQueues(), 0);
        log.take();
        shell.take();
    }

    int set(std::uint32_t enabled, std::int32_t testTime)
    {
        reply = {};
        const XasMessage msg = xasTestFirewallMessage(enabled, testTime);
        return xasIPFilterTestTimer(&msg, &reply);
    }

    /** Lets a timer of one minute run out; only the answer of XMS is left to come. */
    void reachOneMinute()
    {
        ASSERT_EQ(set(1, 1), 0);
        clock.pass(60s);
        log.take();
        shell.take();
    }

    /** Sends XMS's answer to the last update when a wait reaches 5 s from now. */
    void answerLater(std::uint32_t success, std::string_view reason, std::uint32_t idOffset = 0,
                     std::uint32_t msgtype = XMSG_ACKNAK)
    {
        clock.at(clock.now() + 5s, [this, success, reason = std::string{reason}, idOffset, msgtype] {
            update = queues.receive(0ms);
            ASSERT_TRUE(update);
            XasMessage answer = XasMessageBuilder{XMSG_ACKNAK}
                                    .answering(update->xH.id + idOffset)
                                    .set("success", success)
                                    .set("rstr", reason);
            answer.xH.msgtype = msgtype;
            queues.send(answer);
        });
    }

    void expectDisabledAnd(std::vector<XasLogLine> last)
    {
        std::vector<XasLogLine> lines{xasInfoLine("IP Filter Test Timer reached 1 minute(s).\n"),
                                      xasInfoLine("IP Filter disabled.\n")};
        lines.insert(lines.end(), last.begin(), last.end());
        EXPECT_THAT(log.take(), ElementsAreArray(lines));
        EXPECT_FALSE(xasIPFilterIsEnabled());
        EXPECT_FALSE(xasExists(TIMER_FILE));
        EXPECT_THAT(shell.take(), ElementsAre(XAS_DISABLE_FILTER));
    }

    XasTestClock clock;
    XasStubs stubs;
    XasShellLines shell;
    XasLogCapture log;
    XasReplyStatus reply;
    XasTestQueues queues;
    std::optional<XasMessage> update;
};

const XasLogLine QUEUE_ERROR = xasErrorLine("Cannot update IP Filter settings (message queue error).\n");

} // namespace

TEST_F(FilterTimerTest, IsRefusedWithoutAReasonWhenTheFilterIsNotToBeEnabled)
{
    EXPECT_EQ(set(0, 3), 1);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.take(), ElementsAre(xasErrorLine(
                                "Failed to start IP Filter Test Timer: must enable IP Filter first.\n")));
    EXPECT_THAT(shell.take(), IsEmpty());
    EXPECT_TRUE(xasIPFilterIsEnabled());
    EXPECT_FALSE(xasExists(TIMER_FILE));
}

TEST_F(FilterTimerTest, StartsWithoutACommandWhenTheFilterIsEnabled)
{
    EXPECT_EQ(set(1, 5), 0);
    EXPECT_THAT(shell.take(), IsEmpty());
    EXPECT_EQ(xasReadFile(TIMER_FILE), "5 1000\n");
    EXPECT_THAT(log.take(), ElementsAre(xasInfoLine("IP Filter Test Timer started for 5 minute(s).\n")));
}

TEST_F(FilterTimerTest, EnablesTheFilterFirst)
{
    ASSERT_EQ(set(0, 0), 0);
    EXPECT_THAT(shell.take(), ElementsAre(XAS_DISABLE_FILTER));
    log.take();
    clock.pass(7s);
    EXPECT_EQ(set(0x80000000, 2), 0);
    EXPECT_THAT(shell.take(), ElementsAre(XAS_ENABLE_FILTER));
    EXPECT_EQ(xasReadFile(TIMER_FILE), "2 1007\n");
    EXPECT_THAT(log.take(), ElementsAre(xasInfoLine("IP Filter enabled.\n"),
                                        xasInfoLine("IP Filter Test Timer started for 2 minute(s).\n")));
}

TEST_F(FilterTimerTest, RunsEvenWhenItsFileCannotBeWritten)
{
    ::mkdir(TIMER_FILE.c_str(), 0755);
    EXPECT_EQ(set(1, 1), 0);
    EXPECT_THAT(log.take(), ElementsAre(xasInfoLine("IP Filter Test Timer started for 1 minute(s).\n")));
    ::rmdir(TIMER_FILE.c_str());
    clock.pass(60s);
    answerLater(1, "");
    EXPECT_EQ(xasIPFilterTimerTick(), 0);
    EXPECT_FALSE(xasIPFilterIsEnabled());
}

TEST_F(FilterTimerTest, IsStoppedByATestTimeOfZeroOrLess)
{
    for (const std::int32_t testTime : {0, -1, -2147483647 - 1}) {
        ASSERT_EQ(set(1, 1), 0);
        log.take();
        EXPECT_EQ(set(1, testTime), 0);
        EXPECT_THAT(log.take(), ElementsAre(xasInfoLine("IP Filter Test Timer stopped.\n"))) << testTime;
        EXPECT_FALSE(xasExists(TIMER_FILE));
        clock.pass(3600s);
        EXPECT_EQ(xasIPFilterTimerTick(), 0);
        EXPECT_THAT(shell.take(), IsEmpty());
    }
}

TEST_F(FilterTimerTest, IsStoppedWhenTheFilterIsDisabled)
{
    ASSERT_EQ(set(1, 1), 0);
    log.take();
    EXPECT_EQ(set(0, 0), 0);
    EXPECT_THAT(log.take(), ElementsAre(xasInfoLine("IP Filter Test Timer stopped.\n"),
                                        xasInfoLine("IP Filter disabled.\n")));
    EXPECT_THAT(shell.take(), ElementsAre(XAS_DISABLE_FILTER));
    clock.pass(60s);
    EXPECT_EQ(xasIPFilterTimerTick(), 0);
    EXPECT_THAT(shell.take(), IsEmpty());
}

TEST_F(FilterTimerTest, IsStoppedEvenWhenDisablingFails)
{
    ASSERT_EQ(set(1, 1), 0);
    stubs.put("/bin/iptables", 1);
    EXPECT_EQ(set(0, 0), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Error disabling IP Filter");
    EXPECT_FALSE(xasExists(TIMER_FILE));
    clock.pass(60s);
    shell.take();
    EXPECT_EQ(xasIPFilterTimerTick(), 0);
    EXPECT_THAT(shell.take(), IsEmpty());
}

TEST_F(FilterTimerTest, IsReplacedByANewOne)
{
    ASSERT_EQ(set(1, 1), 0);
    clock.pass(50s);
    ASSERT_EQ(set(1, 2), 0);
    EXPECT_EQ(xasReadFile(TIMER_FILE), "2 1050\n");
    EXPECT_THAT(log.take(), ElementsAre(xasInfoLine("IP Filter Test Timer started for 1 minute(s).\n"),
                                        xasInfoLine("IP Filter Test Timer started for 2 minute(s).\n")));
    clock.pass(119s);
    EXPECT_EQ(xasIPFilterTimerTick(), 0);
    EXPECT_TRUE(xasIPFilterIsEnabled());
    clock.pass(1s);
    answerLater(1, "");
    EXPECT_EQ(xasIPFilterTimerTick(), 0);
    EXPECT_FALSE(xasIPFilterIsEnabled());
}

TEST_F(FilterTimerTest, DoesNothingWhileItIsNotRunning)
{
    clock.pass(24h);
    EXPECT_EQ(xasIPFilterTimerTick(), 0);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_THAT(shell.take(), IsEmpty());
}

TEST_F(FilterTimerTest, DoesNothingBeforeItsLastSecond)
{
    ASSERT_EQ(set(1, 2), 0);
    log.take();
    clock.pass(119s);
    EXPECT_EQ(xasIPFilterTimerTick(), 0);
    clock.moveWallClock(-50s);
    clock.pass(30s);
    EXPECT_EQ(xasIPFilterTimerTick(), 0);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_THAT(shell.take(), IsEmpty());
    EXPECT_TRUE(xasExists(TIMER_FILE));
}

TEST_F(FilterTimerTest, DoesNothingAtItsEndWhileTheFilterIsDisabledAnyway)
{
    ASSERT_EQ(set(1, 1), 0);
    ASSERT_EQ(xasIPFilterDisable(), 0); // as after a removed set, when the stored setting says so
    log.take();
    shell.take();
    clock.pass(60s);
    EXPECT_EQ(xasIPFilterTimerTick(), 0);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_THAT(shell.take(), IsEmpty());
    EXPECT_TRUE(xasExists(TIMER_FILE));
    EXPECT_FALSE(queues.receive(0ms));
    xasIPFilterNoteReset(); // it is enabled again, and its time is up
    answerLater(1, "");
    EXPECT_EQ(xasIPFilterTimerTick(), 0);
    expectDisabledAnd({});
}

TEST_F(FilterTimerTest, NeverOverflowsWithTheLongestTime)
{
    ASSERT_EQ(set(1, 2147483647), 0);
    clock.pass(24h * 365);
    EXPECT_EQ(xasIPFilterTimerTick(), 0);
    EXPECT_TRUE(xasIPFilterIsEnabled());
}

TEST_F(FilterTimerTest, DisablesTheFilterInItsLastSecondAndTellsXms)
{
    ASSERT_EQ(set(1, 2), 0);
    log.take();
    shell.take();
    clock.pass(120s);
    answerLater(1, "");
    EXPECT_EQ(xasIPFilterTimerTick(), 0);
    EXPECT_THAT(log.take(), ElementsAre(xasInfoLine("IP Filter Test Timer reached 2 minute(s).\n"),
                                        xasInfoLine("IP Filter disabled.\n")));
    EXPECT_THAT(shell.take(), ElementsAre(XAS_DISABLE_FILTER));
    EXPECT_FALSE(xasExists(TIMER_FILE));
    ASSERT_TRUE(update);
    const XasMessage expected = XasMessageBuilder{XMSG_FIREWALL}.sender(4).id(xasNextMsgId() - 1);
    EXPECT_TRUE(xasMessageBytes(*update) == xasMessageBytes(expected));
    EXPECT_FALSE(queues.receive(0ms));
    clock.pass(600s);
    EXPECT_EQ(xasIPFilterTimerTick(), 0) << "once only";
    EXPECT_THAT(shell.take(), IsEmpty());
}

TEST_F(FilterTimerTest, StaysEnabledWithoutATimerWhenDisablingFails)
{
    reachOneMinute();
    stubs.put("/bin/iptables", 1);
    EXPECT_EQ(xasIPFilterTimerTick(), 1);
    EXPECT_THAT(log.take(), ElementsAre(xasInfoLine("IP Filter Test Timer reached 1 minute(s).\n"),
                                        xasErrorLine("Error disabling IP Filter.\n")));
    EXPECT_TRUE(xasIPFilterIsEnabled());
    EXPECT_FALSE(xasExists(TIMER_FILE));
    EXPECT_FALSE(queues.receive(0ms)) << "XMS is told nothing";
    shell.take();
    clock.pass(600s);
    EXPECT_EQ(xasIPFilterTimerTick(), 0);
    EXPECT_THAT(shell.take(), IsEmpty());
}

TEST_F(FilterTimerTest, AcceptsAnAnswerOfAnyNonZeroSuccess)
{
    reachOneMinute();
    answerLater(0x100, "not looked at");
    EXPECT_EQ(xasIPFilterTimerTick(), 0);
    expectDisabledAnd({});
}

TEST_F(FilterTimerTest, NamesTheReasonOfAnyOtherAnswerOrElseTheQueue)
{
    struct Answer {
        std::uint32_t success;
        const char *reason;
        std::uint32_t idOffset;
        std::uint32_t msgtype;
        XasLogLine line;
    };
    const Answer answers[] = {
        {0, "the store is full", 0, XMSG_ACKNAK,
         xasErrorLine("Cannot update IP Filter settings (the store is full).\n")},
        {0, "", 0, XMSG_ACKNAK, QUEUE_ERROR},
        {1, "", 1, XMSG_ACKNAK, QUEUE_ERROR},
        {1, "of another message", 1, XMSG_ACKNAK,
         xasErrorLine("Cannot update IP Filter settings (of another message).\n")},
        {1, "not a reason", 0, XMSG_DNS, QUEUE_ERROR},
    };
    for (const Answer &a : answers) {
        reachOneMinute();
        answerLater(a.success, a.reason, a.idOffset, a.msgtype);
        EXPECT_EQ(xasIPFilterTimerTick(), 1) << a.reason;
        expectDisabledAnd({a.line});
        EXPECT_EQ(set(1, 0), 0); // enabled for the next one
    }
}

TEST_F(FilterTimerTest, TakesNoShortRecordForAnAnswer)
{
    reachOneMinute();
    clock.at(clock.now() + 1s, [this] { queues.send(67, std::string(2487, '\1')); });
    EXPECT_EQ(xasIPFilterTimerTick(), 1);
    expectDisabledAnd({xasErrorLine("Expected 2488 bytes from queue, got 2487 bytes\n"), QUEUE_ERROR});
}

TEST_F(FilterTimerTest, EndsItsWaitWhenTheQueueGoesAway)
{
    reachOneMinute();
    clock.at(clock.now() + 3600s, [this] { ::msgctl(queues.fromXms, IPC_RMID, nullptr); });
    EXPECT_EQ(xasIPFilterTimerTick(), 1);
    expectDisabledAnd({xasErrorLine("Error receiving from XMS message queue\n"), QUEUE_ERROR});
}

TEST_F(FilterTimerTest, WaitsForTheAnswerEvenWhenTheUpdateCannotBeSent)
{
    reachOneMinute();
    ::msgctl(queues.toXms, IPC_RMID, nullptr);
    clock.at(clock.now() + 1s, [this] {
        queues.send(XasMessageBuilder{XMSG_ACKNAK}.answering(xasNextMsgId() - 1).set("success", 1));
    });
    EXPECT_EQ(xasIPFilterTimerTick(), 0);
    expectDisabledAnd({xasErrorLine("Error sending to XMS message queue\n")});
}

TEST_F(FilterTimerTest, ServesSignalsAndDeathsWhileNoAnswerComes)
{
    std::vector<std::string> served;
    xasServe([&] { served.emplace_back("terminate"); }, [&] { served.emplace_back("alarm"); },
             [&](pid_t, int) { served.emplace_back("child"); });
    reachOneMinute();
    const auto begin = clock.now();
    clock.at(begin + 1s, [] { ::raise(SIGALRM); });
    clock.at(begin + 2s, [] {
        const pid_t pid = ::fork();
        if (pid == 0)
            ::_exit(0);
        xasAwaitExit(pid);
    });
    clock.at(begin + 3s, [] { ::raise(SIGTERM); });
    EXPECT_EQ(xasIPFilterTimerTick(), 1);
    EXPECT_THAT(served, ElementsAre("alarm", "child", "terminate"));
}

TEST_F(FilterTimerTest, WaitsTenSecondsForAnAnswerAndLeavesLaterRecordsAlone)
{
    reachOneMinute();
    const auto begin = clock.now();
    const XasMessage next = XasMessageBuilder{XMSG_DNS}.id(5);
    clock.at(begin + 11s, [&] { queues.send(next); });
    EXPECT_EQ(xasIPFilterTimerTick(), 1);
    EXPECT_EQ(clock.now() - begin, 10s);
    expectDisabledAnd({xasErrorLine("Error receiving from XMS message queue\n"),
                       xasErrorLine("Cannot update IP Filter settings (message queue error).\n")});
    xasWait(2s);
    XasMessage msg{};
    EXPECT_EQ(xasGetMessage(&msg, false), 0);
    EXPECT_EQ(xasMessageBytes(msg), xasMessageBytes(next));
}
