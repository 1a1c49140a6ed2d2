/**
 * The built daemon, driven from outside as the configuration server drives it: this object owns the two
 * queues, starts the program in a session of its own and sees what it does. For the private root only.
 */
#ifndef XAS_TEST_SUPPORT_DAEMON_H
#define XAS_TEST_SUPPORT_DAEMON_H

#include "support/apps.h"
#include "support/log_socket.h"
#include "support/message.h"
#include "support/stub.h"

#include <sys/types.h>

/** The two queues, as their owner makes them. */
class XasTestQueues {
  public:
    XasTestQueues();
    ~XasTestQueues();
    XasTestQueues(const XasTestQueues &) = delete;
    XasTestQueues &operator=(const XasTestQueues &) = delete;

    /** Puts a record of any size on the daemon's queue; fails the test when the queue stays full. */
    void send(long mtype, std::string_view bytes) const;
    void send(const XasMessage &msg) const;

    /** The next record from the daemon; none when time is up. */
    [[nodiscard]] std::optional<XasMessage> receive(std::chrono::milliseconds atMost) const;

    /** How many records wait for the daemon. */
    [[nodiscard]] std::size_t waiting() const;

    int toXms;   /**< key 1005 */
    int fromXms; /**< key 1006 */
};

/** What a program that was run to its end did. */
struct XasRunResult {
    int exitStatus; /**< -1 when a signal ended it */
    std::string output;
    std::string errors;
};

/** The path of the built daemon. */
const char *xasDaemonPath();

/** Starts the daemon's program in a session of its own, its output going to two files. */
pid_t xasStartDaemonProgram(std::vector<std::string> words, const std::string &output,
                            const std::string &errors);

/** Runs the daemon's program with these arguments to its end. */
XasRunResult xasRunDaemonProgram(const std::vector<std::string> &arguments);

class XasTestDaemon {
  public:
    /** Puts harmless programs where the daemon's own commands are, and /dev/log into the test's hands. */
    XasTestDaemon();
    ~XasTestDaemon();
    XasTestDaemon(const XasTestDaemon &) = delete;
    XasTestDaemon &operator=(const XasTestDaemon &) = delete;

    /** Writes the application list and starts the daemon in the foreground; waits until it serves signals. */
    void start(const std::vector<XasTestApp> &apps);
    void startWithList(const std::string &sysapp);

    /** Sends a message and awaits the acknowledgement; the test fails when none comes. */
    XasMessage ask(const XasMessage &msg, std::chrono::milliseconds atMost = std::chrono::seconds{15});

    /** The acknowledgement of a message in short: success, rcode and reason. */
    std::string outcome(const XasMessage &msg) { return xasOutcomeIn(ask(msg)); }

    void signal(int number) const;

    /** True while the daemon's process lives. */
    [[nodiscard]] bool isAlive();

    /** The wait status once the daemon has ended; none when time is up. */
    std::optional<int> awaitEnd(std::chrono::milliseconds atMost = std::chrono::seconds{10});

    /** The processes of the daemon's process group, the daemon included. */
    [[nodiscard]] std::vector<pid_t> group() const;

    /** What the daemon wrote to its standard error, the reports of a sanitizer included. */
    [[nodiscard]] std::string errors() const { return dir.read("errors"); }

    [[nodiscard]] pid_t pid() const { return process; }

    XasLogSocket log;
    std::optional<XasTestQueues> queues; /**< reset it to start a daemon without queues */
    XasStubs stubs;                      /**< notes every command that the daemon runs by itself */

  private:
    XasTestDir dir;
    pid_t process = -1;
    std::optional<int> ended;
};

#endif
