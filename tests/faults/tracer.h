/** The daemon under ptrace, and its children up to the programs that they execute. */
#ifndef XAS_TEST_FAULTS_TRACER_H
#define XAS_TEST_FAULTS_TRACER_H

#include "faults/run.h"
#include "faults/tracee.h"

#include <chrono>

/** Whoever talks to the daemon meanwhile. */
class XasTracedConversation {
  public:
    virtual ~XasTracedConversation() = default;
    [[nodiscard]] virtual int queueToRead() const = 0; /**< the daemon's */
    virtual void send() = 0;                           /**< puts the next message on it */
    virtual bool finish() = 0;                     /**< the daemon is done with it; true: there is another */
    [[nodiscard]] virtual bool isLast() const = 0; /**< the message whose calls count */
    [[nodiscard]] virtual bool isAnswered() const = 0;
    /** Does what is to be done at a call. An error: it is to fail so; 0: its process has been killed. */
    virtual std::optional<int> call(pid_t daemon, pid_t pid, XasCall call) = 0;
    virtual void result(std::size_t callNumber, std::int64_t value) = 0;
    [[nodiscard]] virtual std::size_t callCount() const = 0;
};

/** Another daemon than the built one, from below the build directory: the private root shows nothing else. */
void xasSetFaultsDaemon(const std::string &path);

class XasTracer {
  public:
    /** Starts the daemon with these further variables in its environment. */
    XasTracer(XasTracedConversation &conversation, XasFaultsLog &log, std::vector<std::string> environment);

    /** Follows the daemon until the conversation is over, or until it ends or hangs. */
    void follow();

    [[nodiscard]] bool hasHung() const { return hung; }
    [[nodiscard]] std::optional<int> ended() const { return status; }
    [[nodiscard]] pid_t daemon() const { return pid; }

  private:
    /** What is to be done behind a call. */
    enum class Behind { nothing, fail, death, time, wait, link };

    struct Process {
        bool isKnown = false; /**< to be the daemon's child */
        bool isStopped = false;
        bool hasBegun = false;
        unsigned number = 0; /**< 0: the daemon, or a child that does not count */
        unsigned calls = 0;
        long call = 0;
        std::array<std::uint64_t, 6> words{};
        Behind behind = Behind::nothing;
        std::int64_t result = 0;
        std::optional<std::size_t> noted; /**< which of the calls it is */
        std::chrono::nanoseconds wait{0};
    };

    void onStop(pid_t stopped, int waitStatus);
    void onStopOrDeath(pid_t stopped, int waitStatus);
    void onFork(pid_t child);
    void letChildrenBegin();
    void forget(pid_t child);
    void onCall(pid_t stopped, Process &process);
    void onEntry(pid_t stopped, Process &process);
    void onExit(pid_t stopped, Process &process, std::int64_t result);
    void noteEntry(pid_t stopped, Process &process);
    void beginWait(Process &process);
    void tellTime(const Process &process);
    void onQueue(const Process &process, std::int64_t result);
    void fail(pid_t stopped, Process &process, int error);
    void finish();

    XasTracedConversation &conversation;
    XasFaultsLog &log;
    std::map<pid_t, Process> processes;
    pid_t pid = -1;
    std::chrono::nanoseconds now{std::chrono::seconds{1'800'000'000}};
    unsigned children = 0;
    bool executed = false;
    bool isWaitPut = false; /**< off, at its beginning */
    bool arrived = false;   /**< the message that was sent */
    bool counting = false;  /**< the calls */
    bool over = false;
    bool hung = false;
    std::optional<int> status;
};

#endif
