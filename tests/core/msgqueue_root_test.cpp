// The transport over queues of the test's own.
#include "core/msgqueue.h"

#include "core/wait.h"
#include "support/daemon.h"
#include "support/faults.h"
#include "support/supervision.h"

#include <fstream>
#include <sys/msg.h>

namespace {

class Transport : public testing::Test {
  protected:
    Transport() { EXPECT_EQ(xasInitMsgQueues(), 0); }

    /** Receives; the idle work counts its calls and does `idleWork`. */
    int receive()
    {
        return xasReceiveMessage(&msg, users, [this](XasMessage &buffer) {
            ++idleCalls;
            return idleWork ? idleWork(buffer) : XasIdleResult::nothing;
        });
    }

    /** A second entry of this many user records, each filled with its number. */
    static std::string userEntry(unsigned count)
    {
        std::string bytes(120, 'h');
        for (unsigned i = 0; i < count; ++i)
            bytes += std::string(224, static_cast<char>('a' + i));
        return bytes;
    }

    /** The records that the message refers to. */
    [[nodiscard]] const char *userRecords() const
    {
        return xasPayloadValue<const char *, XAS_USER_REFERENCE_OFFSET>(msg);
    }

    const XasTestQueues queues;
    XasTestClock clock;
    XasLogCapture log;
    XasMessage msg{};
    XasUserList users;
    int idleCalls = 0;
    std::function<XasIdleResult(XasMessage &)> idleWork;
};

} // namespace

TEST(TransportStart, FailsAndPrintsTheAuthTagWithoutTheQueueToTheServer)
{
    const XasLogCapture log;
    EXPECT_EQ(xasInitMsgQueues(), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(XasLogLine{LOG_ERR, "auth/err-Error getting MSGQ_APP_TO_XMS message queue\n"}));
}

TEST(TransportStart, FailsWithoutTheQueueFromTheServer)
{
    const XasTestQueues queues;
    const XasLogCapture log;
    const XasFault fault{"msgget", ENOENT, 1};
    EXPECT_EQ(xasInitMsgQueues(), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error getting MSGQ_APP_FROM_XMS message queue\n")));
}

TEST(MessageIds, BeginAtTenAndCountUp)
{
    EXPECT_EQ(xasNextMsgId(), 10U);
    EXPECT_EQ(xasNextMsgId(), 11U);
    EXPECT_EQ(xasNextMsgId(), 12U);
}

TEST_F(Transport, ReportsARecordThatCannotBeSent)
{
    const XasFault fault{"msgsnd", EINTR};
    EXPECT_EQ(xasSendMessage(&msg), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error sending to XMS message queue\n")));
    EXPECT_EQ(fault.calls(), 1U) << "an interrupted send is not tried again";
}

TEST_F(Transport, SendsTheWholeRecordUnderItsType)
{
    const XasMessage sent = XasMessageBuilder{XMSG_ACKNAK}.id(10).bytes(2484, "last");
    EXPECT_EQ(xasSendMessage(&sent), 0);
    const auto arrived = queues.receive(1s);
    ASSERT_TRUE(arrived);
    EXPECT_EQ(std::memcmp(&*arrived, &sent, sizeof sent), 0);
}

TEST_F(Transport, GivesNothingFromAnEmptyQueueWithoutWaiting)
{
    msg.xH.id = 5;
    EXPECT_EQ(xasGetMessage(&msg, false), 1);
    EXPECT_EQ(msg.xH.id, 5U);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(clock.now(), 0ms);
}

TEST_F(Transport, DropsARecordOfAnotherSizeAndNamesBothSizes)
{
    for (const std::size_t size : {0U, 1U, 119U, 2487U, 2489U, 8000U}) {
        queues.send(1, std::string(size, 'x'));
        EXPECT_EQ(xasGetMessage(&msg, false), 1) << size;
        EXPECT_THAT(log.take(), ElementsAre(xasErrorLine("Expected 2488 bytes from queue, got " +
                                                         std::to_string(size) + " bytes\n")));
        EXPECT_EQ(queues.waiting(), 0U) << "it is consumed";
    }
}

TEST_F(Transport, ReportsAQueueThatCannotBeRead)
{
    const XasFault fault{"msgrcv", EIDRM};
    EXPECT_EQ(xasGetMessage(&msg, false), 1);
    EXPECT_EQ(receive(), 1);
    const auto line = xasErrorLine("Error receiving from XMS message queue\n");
    EXPECT_THAT(log.lines(), ElementsAre(line, line));
}

TEST_F(Transport, ReadsAgainWhenInterrupted)
{
    queues.send(XasMessageBuilder{XMSG_SSH}.id(9));
    const XasFault fault{"msgrcv", EINTR, 0, 3};
    EXPECT_EQ(xasGetMessage(&msg, false), 0);
    EXPECT_EQ(msg.xH.id, 9U);
    EXPECT_EQ(fault.calls(), 4U);
}

TEST_F(Transport, GivesTheFirstRecordWhateverItsTypeIs)
{
    queues.send(99, std::string(2488, 'a'));
    queues.send(1, std::string(2488, 'b'));
    EXPECT_EQ(xasGetMessage(&msg, false), 0);
    EXPECT_EQ(xasMessageBytes(msg), std::string(2488, 'a'));
    EXPECT_EQ(xasGetMessage(&msg, true), 0);
    EXPECT_EQ(xasMessageBytes(msg), std::string(2488, 'b'));
}

TEST_F(Transport, WaitsForARecordAndServesSignalsMeanwhile)
{
    int alarms = 0;
    xasServe([] {}, [&] { ++alarms; });
    clock.at(300ms, [] { ::raise(SIGALRM); });
    clock.at(700ms, [this] { queues.send(XasMessageBuilder{XMSG_SSH}.id(8)); });
    EXPECT_EQ(xasGetMessage(&msg, true), 0);
    EXPECT_EQ(msg.xH.id, 8U);
    EXPECT_EQ(alarms, 1);
    xasServe();
}

TEST_F(Transport, FailsToReceiveARecordOfAnotherSize)
{
    queues.send(1, std::string(2487, 'x'));
    EXPECT_EQ(receive(), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Expected 2488 bytes from queue, got 2487 bytes\n")));
    queues.send(XasMessageBuilder{XMSG_SSH});
    EXPECT_EQ(receive(), 0) << "the next one starts afresh";
}

TEST_F(Transport, WaitsATenthOfASecondBeforeEachLook)
{
    queues.send(XasMessageBuilder{XMSG_SSH});
    EXPECT_EQ(receive(), 0);
    EXPECT_EQ(clock.now(), 100ms);
    EXPECT_EQ(idleCalls, 0);
    clock.at(450ms, [this] { queues.send(XasMessageBuilder{XMSG_SSH}); });
    EXPECT_EQ(receive(), 0);
    EXPECT_EQ(clock.now(), 500ms);
    EXPECT_EQ(idleCalls, 3) << "once for each empty look";
}

TEST_F(Transport, ReturnsTheMessageThatTheIdleWorkMade)
{
    idleWork = [](XasMessage &buffer) {
        buffer = XasMessageBuilder{XMSG_NOTIFY}.id(77);
        return XasIdleResult::message;
    };
    EXPECT_EQ(receive(), 0);
    EXPECT_EQ(msg.xH.id, 77U);
    EXPECT_EQ(users, nullptr);
}

TEST_F(Transport, FailsWhenTheIdleWorkDoes)
{
    idleWork = [](XasMessage &) {
        return XasIdleResult::failed;
    };
    EXPECT_EQ(receive(), 1);
}

TEST_F(Transport, ReadsNoSecondRecordForAListOfNoUsers)
{
    queues.send(XasMessageBuilder{XMSG_LOCALUSERS}.set("num_users", 0));
    queues.send(XasMessageBuilder{XMSG_SSH}.id(3));
    EXPECT_EQ(receive(), 0);
    EXPECT_EQ(users, nullptr);
    EXPECT_EQ(userRecords(), nullptr);
    EXPECT_EQ(receive(), 0);
    EXPECT_EQ(msg.xH.id, 3U);
}

TEST_F(Transport, FailsWhenTheUserListIsOfAnotherSizeThanItsCountSays)
{
    queues.send(XasMessageBuilder{XMSG_LOCALUSERS}.set("num_users", 3));
    queues.send(1, userEntry(2));
    EXPECT_EQ(receive(), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Expected 792 bytes from queue, got 568 bytes\n")));
    EXPECT_EQ(queues.waiting(), 0U);
}

TEST_F(Transport, LeavesTheUserListOnTheQueueWhenThereIsNoMemoryForIt)
{
    queues.send(XasMessageBuilder{XMSG_LOCALUSERS}.set("num_users", 10));
    queues.send(1, userEntry(10));
    {
        const XasFailingNew failing{2360};
        EXPECT_EQ(receive(), 1);
    }
    EXPECT_THAT(log.take(), ElementsAre(xasErrorLine("Error allocating memory for user list\n")));
    EXPECT_EQ(queues.waiting(), 1U);
    EXPECT_EQ(receive(), 1) << "a later look meets it as an ordinary record";
    EXPECT_THAT(log.take(), ElementsAre(xasErrorLine("Expected 2488 bytes from queue, got 2360 bytes\n")));
}

TEST_F(Transport, FetchesTheUserListAndRefersToItsFirstRecord)
{
    queues.send(
        XasMessageBuilder{XMSG_LOCALUSERS}.set("num_users", 2).bytes(XAS_USER_REFERENCE_OFFSET, "no list"));
    queues.send(1, userEntry(2));
    EXPECT_EQ(receive(), 0);
    ASSERT_NE(users, nullptr);
    ASSERT_NE(userRecords(), nullptr);
    EXPECT_EQ((std::string{userRecords(), 448}), std::string(224, 'a') + std::string(224, 'b'));
}

TEST_F(Transport, WaitsForAUserListThatComesLater)
{
    queues.send(XasMessageBuilder{XMSG_LOCALUSERS}.set("num_users", 1));
    clock.at(5s, [] {});
    clock.at(2s, [this] { queues.send(1, userEntry(1)); });
    EXPECT_EQ(receive(), 0);
    EXPECT_EQ((std::string{userRecords(), 224}), std::string(224, 'a'));
}

TEST_F(Transport, ServesWhatIsPendingWhileTheQueueToTheServerIsFull)
{
    int alarms = 0;
    const XasSignalService service{.terminate = [] {},
                                   .alarm = [&] { ++alarms; },
                                   .childExited =
                                       [](pid_t, int) {
                                       }};
    ASSERT_EQ(xasInstallSignals(service), 0);
    struct {
        long mtype = 1;
        XasMessage record = XasMessageBuilder{XMSG_ETH};
    } entry;
    while (::msgsnd(queues.toXms, &entry, sizeof entry.record, IPC_NOWAIT) == 0) {
        // until it is full
    }
    msg.xH.msgtype = XMSG_ACKNAK;
    ::raise(SIGALRM); // before the send begins to wait
    clock.at(300ms, [this] { EXPECT_TRUE(queues.receive(0ms)); });
    EXPECT_EQ(xasSendMessage(&msg), 0);
    EXPECT_EQ(alarms, 1);
    EXPECT_EQ(clock.now(), 300ms);
    EXPECT_THAT(clock.waits(), testing::Each(10ms)) << "it looks again every 10 ms";
    EXPECT_THAT(log.lines(), IsEmpty());
}

namespace {

const XasLogLine RECEIVE_FAILED = xasErrorLine("Error receiving from XMS message queue\n");
const XasLogLine NOT_THERE{LOG_ERR, "auth/err-Error getting MSGQ_APP_TO_XMS message queue\n"};

} // namespace

TEST_F(Transport, LooksForVanishedQueuesOnceASecondAndDoesItsIdleWorkMeanwhile)
{
    ::msgctl(queues.toXms, IPC_RMID, nullptr);
    ::msgctl(queues.fromXms, IPC_RMID, nullptr);
    EXPECT_EQ(receive(), 1);
    EXPECT_THAT(log.take(), ElementsAre(RECEIVE_FAILED));
    std::optional<XasTestQueues> made;
    clock.at(2500ms, [&] {
        made.emplace();
        made->send(XasMessageBuilder{XMSG_SSH}.id(8));
    });
    EXPECT_EQ(receive(), 0);
    EXPECT_EQ(msg.xH.id, 8U);
    EXPECT_THAT(log.take(), ElementsAre(NOT_THERE, NOT_THERE, NOT_THERE)); // at 0.2, 1.2 and 2.2 s
    EXPECT_EQ(clock.now(), 3200ms);
    EXPECT_EQ(idleCalls, 30);
    EXPECT_EQ(xasSendMessage(&msg), 0);
    EXPECT_TRUE(made->receive(1s)) << "both queues are the new ones";
}

TEST_F(Transport, LooksForTheQueueToTheServerAgainWhenOnlyThatVanished)
{
    ::msgctl(queues.toXms, IPC_RMID, nullptr);
    msg.xH.msgtype = XMSG_ACKNAK;
    EXPECT_EQ(xasSendMessage(&msg), 1);
    EXPECT_THAT(log.take(), ElementsAre(xasErrorLine("Error sending to XMS message queue\n")));
    const int again = ::msgget(MSGQ_APP_TO_XMS, IPC_CREAT | 0600);
    queues.send(XasMessageBuilder{XMSG_SSH});
    EXPECT_EQ(receive(), 0);
    EXPECT_EQ(xasSendMessage(&msg), 0);
    EXPECT_THAT(log.lines(), IsEmpty());
    ::msgctl(again, IPC_RMID, nullptr);
}

TEST_F(Transport, CutsARecordShortThatIsLargerThanAnyMayBeByNow)
{
    const auto setLimits = [](const char *bytes) {
        for (const char *limit : {"/proc/sys/kernel/msgmax", "/proc/sys/kernel/msgmnb"})
            std::ofstream{limit} << bytes;
    };
    setLimits("100000"); // for queues that are made from now on
    ::msgctl(queues.toXms, IPC_RMID, nullptr);
    ::msgctl(queues.fromXms, IPC_RMID, nullptr);
    const XasTestQueues larger;
    larger.send(1, std::string(60000, 'x'));
    larger.send(XasMessageBuilder{XMSG_SSH}.id(8));
    setLimits("8192");
    EXPECT_EQ(xasInitMsgQueues(), 0);
    EXPECT_EQ(receive(), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Expected 2488 bytes from queue, got 8192 bytes\n")));
    EXPECT_EQ(receive(), 0) << "it does not stand in the way of the next one";
    EXPECT_EQ(msg.xH.id, 8U);
}

TEST_F(Transport, WaitsTenSecondsForAUserListAndDoesItsIdleWorkMeanwhile)
{
    queues.send(XasMessageBuilder{XMSG_LOCALUSERS}.set("num_users", 1));
    EXPECT_EQ(receive(), 1);
    EXPECT_EQ(clock.now(), 100ms + 10s);
    EXPECT_EQ(idleCalls, 100);
    EXPECT_THAT(log.lines(), ElementsAre(RECEIVE_FAILED));
    queues.send(XasMessageBuilder{XMSG_SSH}.id(8));
    EXPECT_EQ(receive(), 0) << "the next message is not lost";
    EXPECT_EQ(msg.xH.id, 8U);
}

TEST_F(Transport, KeepsAMessageThatTheIdleWorkMadeWhileAUserListWasAwaited)
{
    queues.send(XasMessageBuilder{XMSG_LOCALUSERS}.set("num_users", 1));
    idleWork = [](XasMessage &buffer) {
        buffer = XasMessageBuilder{XMSG_NOTIFY}.id(70);
        return XasIdleResult::message;
    };
    clock.at(2s, [this] { queues.send(1, userEntry(1)); });
    EXPECT_EQ(receive(), 0);
    EXPECT_EQ(msg.xH.msgtype, std::uint32_t{XMSG_LOCALUSERS});
    EXPECT_EQ((std::string{userRecords(), 224}), std::string(224, 'a'));
    EXPECT_EQ(idleCalls, 1) << "it makes no second one before the first is taken";
    EXPECT_EQ(receive(), 0);
    EXPECT_EQ(msg.xH.id, 70U);
}
