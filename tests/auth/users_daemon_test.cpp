// Local users through the built daemon: the list in its second queue record, whole, failed and missing.
#include "auth/user_message.h"
#include "support/daemon.h"
#include "support/users.h"

#include <sys/msg.h>

namespace {

std::string loginOf(unsigned number)
{
    return "user" + std::to_string(number);
}

/** The second record for `count` users, numbered from 1. */
std::string listOf(unsigned count)
{
    std::string bytes(120, 'x');
    for (unsigned number = 1; number <= count; ++number) {
        XasUserRecord user{};
        xasSetFieldText(user.login, loginOf(number));
        user.uid = 1000 + number;
        user.listen = number;
        bytes.append(reinterpret_cast<const char *>(&user), sizeof user);
    }
    return bytes;
}

XasMessageBuilder messageFor(unsigned count)
{
    return XasMessageBuilder{XMSG_LOCALUSERS}
        .id(77)
        .set("enabled", 1)
        .set("users_included", 1)
        .set("num_users", static_cast<std::uint16_t>(count))
        .bytes(XAS_USER_REFERENCE_OFFSET, "no list");
}

/** Lets queues made from now on hold one record of this many bytes. */
void raiseQueueLimits(std::size_t bytes)
{
    for (const char *limit : {"/proc/sys/kernel/msgmax", "/proc/sys/kernel/msgmnb"}) {
        FILE *file = std::fopen(limit, "w");
        ASSERT_NE(file, nullptr) << limit;
        std::fprintf(file, "%zu", bytes);
        ASSERT_EQ(std::fclose(file), 0) << limit;
    }
}

class DaemonUsers : public testing::Test {
  protected:
    void start()
    {
        xasWriteFile(XAS_USER_LIST, "");
        daemon.emplace();
        daemon->start({{.name = "localuser"}});
        daemon->stubs.forget();
    }

    /** Sends the list behind its message. */
    void sendList(std::string_view bytes)
    {
        std::string entry(sizeof(long), '\0');
        const long mtype = XMSG_LOCALUSERS;
        std::memcpy(entry.data(), &mtype, sizeof mtype);
        entry += bytes;
        ASSERT_TRUE(xasEventually(
            [&] { return ::msgsnd(daemon->queues->fromXms, entry.data(), bytes.size(), IPC_NOWAIT) == 0; }));
    }

    /** The message with its list; true when it was applied. */
    bool rebuild(unsigned count)
    {
        daemon->queues->send(messageFor(count));
        sendList(listOf(count));
        const auto answer = daemon->queues->receive(60s);
        EXPECT_TRUE(answer);
        return answer && answer->xH.orig_id == 77 && xasOutcomeIn(*answer) == XAS_APPLIED;
    }

    /** The daemon answers the next message, and answered nothing before it. */
    void expectNextAnswered()
    {
        const XasMessage answer = daemon->ask(XasMessageBuilder{XMSG_SSH}.id(4711));
        EXPECT_EQ(answer.xH.orig_id, 4711U);
    }

    /** Commands and list of a rebuild of `count` users. */
    void expectUsers(unsigned count)
    {
        std::vector<std::string> commands;
        std::string list;
        for (unsigned number = 1; number <= count; ++number) {
            commands.push_back("/bin/adduser -D -H -u " + std::to_string(1000 + number) +
                               " -s /bin/cli -h / " + loginOf(number));
            list += loginOf(number) + "\n";
        }
        EXPECT_EQ(daemon->stubs.lines(), commands);
        EXPECT_EQ(xasReadFile(XAS_USER_LIST), list);
        EXPECT_THAT(xasReadFile("/etc/zel/" + loginOf(count) + ".conf"), StartsWith("ALLOW_LISTEN=0x"));
    }

    std::optional<XasTestDaemon> daemon;
};

} // namespace

TEST_F(DaemonUsers, AreNotTouchedWhenAnotherMessageComesInThePlaceOfTheirRecord)
{
    start();
    daemon->queues->send(messageFor(1));
    daemon->queues->send(XasMessageBuilder{XMSG_SSH}.id(1));
    ASSERT_TRUE(daemon->log.await("Expected 344 bytes from queue, got 2488 bytes\n"));
    expectNextAnswered();
    EXPECT_THAT(daemon->stubs.calls(), IsEmpty());
}

TEST_F(DaemonUsers, DoNotKeepTheDaemonFromEndingWhileTheirRecordIsMissing)
{
    start();
    daemon->queues->send(messageFor(1));
    ASSERT_TRUE(xasEventually([this] { return daemon->queues->waiting() == 0; }));
    daemon->signal(SIGTERM);
    EXPECT_TRUE(daemon->awaitEnd());
}

TEST_F(DaemonUsers, AreReadThoughTheMessageDoesNotIncludeThem)
{
    start();
    daemon->queues->send(messageFor(1).set("users_included", 0));
    sendList(listOf(1));
    const auto answer = daemon->queues->receive(10s);
    ASSERT_TRUE(answer);
    EXPECT_EQ(xasOutcomeIn(*answer), XAS_APPLIED);
    EXPECT_THAT(daemon->stubs.calls(), IsEmpty());
    expectNextAnswered();
}

TEST_F(DaemonUsers, AreMadeFromTheLargestRecordOfAnOrdinaryQueue)
{
    start();
    EXPECT_TRUE(rebuild(36));
    expectUsers(36);
}

TEST_F(DaemonUsers, AreMadeByTheThousandWhereQueuesAreLargeEnough)
{
    raiseQueueLimits(120 + 224 * 1000);
    start();
    const auto before = std::chrono::steady_clock::now();
    EXPECT_TRUE(rebuild(1000));
    const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - before;
    RecordProperty("milliseconds_per_user", std::to_string(taken.count() / 1000));
    std::printf("%.2f ms a user, its account command included\n", taken.count() / 1000);
    expectUsers(1000);
}
