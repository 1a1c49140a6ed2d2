/**
 * The two SysV message queues shared with XMS, which creates them. An entry is a long `mtype` and one record
 * of exactly 2488 bytes; only the list of local users travels as a second, longer entry. The queues' ids and
 * the message-id counter live here, as long as the process.
 */
#ifndef XAS_CORE_MSGQUEUE_H
#define XAS_CORE_MSGQUEUE_H

#include "wire/message.h"

#include <cstddef>
#include <functional>
#include <memory>

inline constexpr int MSGQ_APP_TO_XMS = 1005;
inline constexpr int MSGQ_APP_FROM_XMS = 1006;

/** The block that carries a message's user records; it must outlive the message's reference to them. */
using XasUserList = std::unique_ptr<std::byte[]>;

/** Where the local-users message keeps its record count and the reference to the records. */
inline constexpr std::size_t XAS_USER_COUNT_OFFSET = 160;
inline constexpr std::size_t XAS_USER_REFERENCE_OFFSET = 164;
inline constexpr std::size_t XAS_USER_RECORD_SIZE = 224;

/** What is done while no message waits. */
enum class XasIdleResult {
    nothing, /**< go on waiting */
    message, /**< it made a message of its own in the buffer that it was given */
    failed   /**< receiving fails */
};
using XasIdleWork = std::function<XasIdleResult(XasMessage &msg)>;

/** Attaches to both queues. Returns 0, or 1 after logging which one is not there. */
[[nodiscard]] int xasInitMsgQueues();

/** Issues a message id: a process-wide counter, 10 first. */
std::uint32_t xasNextMsgId();

/** A message of the daemon's own with the next id and an empty payload. */
XasMessage xasNewMessage(XasMsgType msgtype, XasAction action);

/** Sends a record; while the queue is full waits, serving signals. Returns 0, or 1 after logging. */
[[nodiscard]] int xasSendMessage(const XasMessage *msg);

/**
 * Takes one record off the queue, whatever it is; with `wait` waits up to ten seconds for one, serving
 * signals and doing the idle work. Returns 0, or 1 when there is none or it had another size (logged).
 */
[[nodiscard]] int xasGetMessage(XasMessage *msg, bool wait);

/** Waits for the next message, looking every 100 ms and calling `idle` each time there is none. A list of
 * local users is fetched into `users` and the message made to refer to it. Returns 0 with a message, 1 on
 * error. Queues that vanish are logged once, then looked for once a second; the idle work goes on. */
[[nodiscard]] int xasReceiveMessage(XasMessage *msg, XasUserList &users, const XasIdleWork &idle);

#endif
