/**
 * One run of the built daemon under ptrace: messages are sent to it, and at one chosen system call between
 * the arrival of the last one and its acknowledgement something is done to it. Nothing waits: the time that
 * the daemon sees passes in its waits alone, when everybody else has come to rest.
 */
#ifndef XAS_TEST_FAULTS_RUN_H
#define XAS_TEST_FAULTS_RUN_H

#include "faults/machine.h"
#include "wire/message.h"

#include <optional>

struct XasSent {
    XasMessage message;
    std::string users = {}; /**< the second record */
    bool answered = true;
};

enum class XasCutKind {
    none,
    kill,   /**< SIGKILL */
    error,  /**< the call fails with `value` */
    signal, /**< the signal `value` arrives */
    death,  /**< a daemon that is watched over dies */
    block   /**< not a call, but the block of memory number `call` is refused */
};

struct XasCut {
    XasCutKind kind = XasCutKind::none;
    unsigned process =
        0;             /**< 0: the daemon; else the how many-th child, up to the program that it executes */
    unsigned call = 0; /**< from the arrival on, counted by process */
    int value = 0;
};

/** A system call between arrival and acknowledgement, calls for the time left out. */
struct XasCall {
    unsigned process;
    unsigned index;
    long number;
    std::string path;        /**< that it is about, if any */
    std::string to;          /**< the second one */
    std::int64_t result = 0; /**< negative: failed */
};

struct XasRun {
    bool wasCut = false;
    bool hung = false;
    std::optional<int> ended;         /**< the daemon's wait status; none: it still served */
    std::optional<XasMessage> answer; /**< to the last message */
    bool servedAfterwards = false;    /**< a further message was answered */
    std::vector<std::string> log;
    std::vector<std::string> commands; /**< calls of the stand-ins from the last message on */
    std::vector<std::string> running;  /**< in the end, sorted */
    std::size_t descriptors = 0;       /**< of the daemon, in the end */
    bool leftChildren = false;         /**< that nobody collected */
    std::vector<XasCall> calls;
    XasFileStates files;
    unsigned blocks =
        0; /**< of memory, asked for between arrival and acknowledgement; where they are counted */
};

/** What is sent: all but the last undisturbed. */
using XasSession = std::vector<XasSent>;

/** Runs the daemon on the files that are there. */
XasRun xasRunDaemon(const XasSession &session, const XasCut &cut);

#endif
