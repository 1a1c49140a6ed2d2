/** Tests of the message tool's server through the real queues: the test plays the daemon. */
#ifndef XAS_TEST_ROOT_XMS_SERVE_FIXTURE_H
#define XAS_TEST_ROOT_XMS_SERVE_FIXTURE_H

#include "support/files.h"
#include "support/message.h"
#include "support/stub.h"
#include "xms/cli.h"

#include <fcntl.h>
#include <sys/msg.h>

inline constexpr key_t XMS_KEY_FROM_DAEMON = 1005;
inline constexpr key_t XMS_KEY_TO_DAEMON = 1006;

struct XmsEntry {
    long mtype;
    char bytes[8192];
};

class XmsServeTest : public XasFilesTest {
  protected:
    XmsServeTest()
    {
        setenv("XMS_SOCKET", dir.path("xms.sock").c_str(), 1);
        setenv("XMS_STORE", dir.path("store").c_str(), 1);
    }

    ~XmsServeTest() override
    {
        if (server > 0)
            stop();
        for (const key_t key : {XMS_KEY_FROM_DAEMON, XMS_KEY_TO_DAEMON})
            msgctl(msgget(key, 0), IPC_RMID, nullptr);
    }

    /** Starts a process that runs the program; its output goes to `out` and its complaints to `out`.err. */
    pid_t startProgram(std::vector<std::string> words, const std::string &out)
    {
        const pid_t child = fork();
        if (child != 0)
            return child;
        dup2(open(dir.path(out).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644), STDOUT_FILENO);
        dup2(open(dir.path(out + ".err").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644), STDERR_FILENO);
        words.insert(words.begin(), "xms");
        std::vector<char *> arguments;
        for (std::string &word : words)
            arguments.push_back(word.data());
        const int status = xmsMain(static_cast<int>(arguments.size()), arguments.data());
        std::fflush(stdout);
        _exit(status);
    }

    static int statusOf(pid_t child)
    {
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    int run(const std::vector<std::string> &words) { return statusOf(startProgram(words, "out")); }

    void serve(std::vector<std::string> words = {})
    {
        words.insert(words.begin(), "serve");
        unlink(dir.path("traffic.err").c_str()); // an earlier server's
        server = startProgram(words, "traffic");
        ASSERT_TRUE(
            xasEventually([&] { return errorsOf("traffic").find("serving at") != std::string::npos; }));
    }

    int stop()
    {
        kill(server, SIGTERM);
        return statusOf(std::exchange(server, -1));
    }

    std::string errorsOf(const std::string &out) const
    {
        return dir.has(out + ".err") ? dir.read(out + ".err") : std::string{};
    }

    // the daemon's side

    /** The next entry of the daemon's queue, of whatever size, as its type and its bytes. */
    static std::optional<std::pair<long, std::string>> receiveEntry(std::chrono::milliseconds atMost)
    {
        const auto end = std::chrono::steady_clock::now() + atMost;
        XmsEntry entry{};
        while (std::chrono::steady_clock::now() < end) {
            const ssize_t size =
                msgrcv(msgget(XMS_KEY_TO_DAEMON, 0), &entry, sizeof entry.bytes, 0, IPC_NOWAIT);
            if (size >= 0)
                return std::pair{entry.mtype, std::string{entry.bytes, static_cast<std::size_t>(size)}};
            xasPause(std::chrono::milliseconds{2});
        }
        return std::nullopt;
    }

    static std::optional<XasMessage> receive(std::chrono::milliseconds atMost = std::chrono::seconds{10})
    {
        const auto entry = receiveEntry(atMost);
        if (!entry)
            return std::nullopt;
        EXPECT_EQ(entry->second.size(), 2488U);
        XasMessage record;
        std::memcpy(&record, entry->second.data(), sizeof record);
        EXPECT_EQ(entry->first, static_cast<long>(record.xH.msgtype));
        return record;
    }

    static void send(std::string_view bytes, long mtype = 1)
    {
        XmsEntry entry{};
        entry.mtype = mtype;
        bytes.copy(entry.bytes, bytes.size());
        ASSERT_EQ(msgsnd(msgget(XMS_KEY_FROM_DAEMON, 0), &entry, bytes.size(), 0), 0);
    }

    static void send(const XasMessage &record) { send(xasMessageBytes(record), record.xH.msgtype); }

    static void acknowledge(std::uint32_t id, bool success, std::string_view reason = "")
    {
        send(XasMessageBuilder{XMSG_ACKNAK}
                 .sender(4)
                 .id(10)
                 .answering(id)
                 .set("success", success)
                 .set("complete", "yes")
                 .set("rcode", success ? 0 : 1)
                 .set("rstr", reason));
    }

    /** Runs a `set` and answers it; `received` is what reached the daemon. */
    int setAndAnswer(const std::vector<std::string> &words, bool success, std::string_view reason = "")
    {
        const pid_t client = startProgram(words, "out");
        const auto record = receive();
        EXPECT_TRUE(record);
        received = record.value_or(XasMessage{});
        acknowledge(received.xH.id, success, reason);
        return statusOf(client);
    }

    pid_t server = -1;
    XasMessage received{};
};

#endif
