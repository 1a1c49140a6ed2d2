/**
 * Programs that stand in for others: they note how they were called and exit as told. The notes of all of
 * them are in one file, in the order of the calls.
 */
#ifndef XAS_TEST_SUPPORT_STUB_H
#define XAS_TEST_SUPPORT_STUB_H

#include "support/files.h"

class XasStubs {
  public:
    /** Puts a program at `path`, replacing what is there. `body`: shell lines before it exits. */
    void put(const std::string &path, int exitStatus = 0, std::string_view body = {});

    /** As `put`, inside this object's own directory; returns its path. */
    std::string make(std::string_view name, int exitStatus = 0, std::string_view body = {});

    /** A path inside this object's own directory. */
    [[nodiscard]] std::string path(std::string_view name) const { return dir.path(name); }

    /** The calls so far, each as its words: the path as called, then the arguments. */
    [[nodiscard]] std::vector<std::vector<std::string>> calls() const;

    /** The calls so far, each as one line, its words separated by single blanks. */
    [[nodiscard]] std::vector<std::string> lines() const;

    /** Waits until there have been `count` calls; false when time is up. */
    [[nodiscard]] bool await(std::size_t count,
                             std::chrono::milliseconds atMost = std::chrono::seconds{10}) const;

    /** Forgets the calls so far. */
    void forget();

  private:
    XasTestDir dir;
};

/** Polls `condition` until it holds; false when time is up. */
template <class Condition>
bool xasEventually(Condition condition, std::chrono::milliseconds atMost = std::chrono::seconds{10});

void xasPause(std::chrono::milliseconds duration);

template <class Condition>
bool xasEventually(Condition condition, std::chrono::milliseconds atMost)
{
    const auto end = std::chrono::steady_clock::now() + atMost;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        xasPause(std::chrono::milliseconds{2});
    }
    return true;
}

#endif
