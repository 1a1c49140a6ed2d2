/**
 * /dev/log in a test's hands, for the private root: what a whole daemon sends to the system logger. A thread
 * reads it all the time, so that no sender ever waits; each question takes everything that was sent before it
 * into account, whether the thread has come to it or not.
 */
#ifndef XAS_TEST_SUPPORT_LOG_SOCKET_H
#define XAS_TEST_SUPPORT_LOG_SOCKET_H

#include "support/log_line.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

/** A line as it arrived. Its priority holds the facility too. */
struct XasSocketLine {
    XasLogLine line;
    std::string ident; /**< the program's name, as openlog or the C library gave it */
    std::chrono::steady_clock::time_point arrived;
};

class XasLogSocket {
  public:
    /** Binds `path`, replacing what stands there. */
    explicit XasLogSocket(const std::string &path = "/dev/log");
    ~XasLogSocket();
    XasLogSocket(const XasLogSocket &) = delete;
    XasLogSocket &operator=(const XasLogSocket &) = delete;

    /** Every line so far, oldest first, with the bare level as its priority. */
    [[nodiscard]] std::vector<XasLogLine> lines() const;

    /** The same with everything that is known of a line. */
    [[nodiscard]] std::vector<XasSocketLine> arrived() const;

    /** Waits until a text holds `part`, counting only lines from number `from` on; false when time is up. */
    bool await(std::string_view part, std::chrono::milliseconds atMost = std::chrono::seconds{10},
               std::size_t from = 0) const;

    /** Waits until `count` lines have a text that holds `part`. */
    bool awaitCount(std::string_view part, std::size_t count, std::chrono::milliseconds atMost) const;

    /** How many texts hold `part`. */
    [[nodiscard]] std::size_t count(std::string_view part) const;

    [[nodiscard]] std::size_t size() const;

    /** Forgets what has arrived. */
    void clear();

  private:
    void read();

    /** Takes in what waits in the socket; nothing changes what has arrived as long as the result is held. */
    std::unique_lock<std::mutex> hold() const;

    [[nodiscard]] std::size_t countFrom(std::string_view part, std::size_t from) const;

    std::string path;
    int fd;
    std::atomic<bool> ending{false};
    mutable std::mutex mutex;
    mutable std::condition_variable changed;
    mutable std::vector<XasSocketLine> received;
    std::thread reader;
};

/** Takes a datagram of the C library's syslog apart: "<priority>Mmm dd hh:mm:ss ident: text". */
XasSocketLine xasParseLogDatagram(std::string_view datagram);

#endif
