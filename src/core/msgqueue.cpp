#include "core/msgqueue.h"

#include "core/assert.h"
#include "core/log.h"
#include "core/wait.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <span>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <vector>

using namespace std::chrono_literals;

namespace {

constexpr auto POLL_INTERVAL = 100ms;
/** How often a waiting read looks. */
constexpr auto READ_INTERVAL = 10ms;

constexpr std::uint32_t FIRST_MSG_ID = 10;

/** The user records follow this many bytes of the second entry, which are skipped. */
constexpr std::size_t USER_LIST_HEADER = 120;

/** The largest record a queue holds unless the system's limit was raised. */
constexpr std::size_t USUAL_RECORD_MAX = 8192;

struct Transport {
    int toXms = -1;
    int fromXms = -1;
    std::uint32_t nextId = FIRST_MSG_ID;
    std::vector<std::byte> entry = std::vector<std::byte>(sizeof(long) + USUAL_RECORD_MAX);
};

Transport &transport()
{
    static Transport state;
    return state;
}

enum class ReadResult { got, empty, failed };

/** Makes the buffer as large as the largest record the system lets into a queue. */
bool growEntry(Transport &state)
{
    msginfo limits{};
    if (::msgctl(0, IPC_INFO, reinterpret_cast<msqid_ds *>(&limits)) < 0) // the kernel fills a msginfo here
        return false;
    const std::size_t size = sizeof(long) + static_cast<std::size_t>(std::max(limits.msgmax, 0));
    if (size <= state.entry.size())
        return false;
    state.entry.resize(size);
    return true;
}

/** One msgrcv without waiting; an entry of any size is taken off the queue. */
ssize_t receiveEntry(Transport &state)
{
    for (;;) {
        const std::size_t capacity = state.entry.size() - sizeof(long);
        const ssize_t size = ::msgrcv(state.fromXms, state.entry.data(), capacity, 0, IPC_NOWAIT);
        const bool again = size < 0 && (errno == EINTR || (errno == E2BIG && growEntry(state)));
        if (!again)
            return size;
    }
}

/** Reads one entry into `record`, whose size it must have. */
ReadResult readQueue(std::span<std::byte> record, bool wait)
{
    Transport &state = transport();
    ssize_t size = receiveEntry(state);
    while (size < 0 && errno == ENOMSG && wait) {
        xasWait(READ_INTERVAL);
        size = receiveEntry(state);
    }
    if (size < 0) {
        if (errno == ENOMSG)
            return ReadResult::empty;
        xasLogError("Error receiving from XMS message queue\n");
        return ReadResult::failed;
    }
    if (static_cast<std::size_t>(size) != record.size()) {
        xasLogError("Expected %d bytes from queue, got %d bytes\n", static_cast<int>(record.size()),
                    static_cast<int>(size));
        return ReadResult::failed;
    }
    std::ranges::copy(std::span{state.entry}.subspan(sizeof(long), record.size()), record.begin());
    return ReadResult::got;
}

ReadResult readMessage(XasMessage &msg, bool wait)
{
    return readQueue(std::as_writable_bytes(std::span{&msg, 1}), wait);
}

void setUserReference(XasMessage &msg, const std::byte *users)
{
    std::memcpy(msg.payload.data() + (XAS_USER_REFERENCE_OFFSET - XAS_PAYLOAD_OFFSET), &users, sizeof users);
}

int receiveUserList(XasMessage &msg, XasUserList &users)
{
    setUserReference(msg, nullptr);
    const auto count = xasPayloadValue<std::uint16_t, XAS_USER_COUNT_OFFSET>(msg);
    if (count == 0)
        return 0;
    const std::size_t size = USER_LIST_HEADER + XAS_USER_RECORD_SIZE * count;
    users.reset(new (std::nothrow) std::byte[size]);
    if (!users)
        return xasLogFailure("Error allocating memory for user list\n");
    if (readQueue({users.get(), size}, true) != ReadResult::got)
        return 1;
    setUserReference(msg, users.get() + USER_LIST_HEADER);
    return 0;
}

/** Polls until there is a message or the idle work makes one. Returns 0, or 1 on error. */
int pollForMessage(XasMessage &msg, const XasIdleWork &idle, bool &fromQueue)
{
    for (;;) {
        xasWait(POLL_INTERVAL);
        const ReadResult result = readMessage(msg, false);
        fromQueue = result == ReadResult::got;
        if (result != ReadResult::empty)
            return fromQueue ? 0 : 1;
        const XasIdleResult idled = idle(msg);
        if (idled != XasIdleResult::nothing)
            return idled == XasIdleResult::message ? 0 : 1;
    }
}

} // namespace

int xasInitMsgQueues()
{
    Transport &state = transport();
    state.toXms = ::msgget(MSGQ_APP_TO_XMS, 0);
    if (state.toXms < 0) {
        xasLogErrorTagged(LOG_AUTHPRIV, "Error getting MSGQ_APP_TO_XMS message queue\n");
        return 1;
    }
    state.fromXms = ::msgget(MSGQ_APP_FROM_XMS, 0);
    if (state.fromXms < 0)
        return xasLogFailure("Error getting MSGQ_APP_FROM_XMS message queue\n");
    return 0;
}

std::uint32_t xasNextMsgId()
{
    return transport().nextId++;
}

XasMessage xasNewMessage(XasMsgType msgtype, XasAction action)
{
    XasMessage msg{};
    msg.xH.msgtype = msgtype;
    msg.xH.action = action;
    msg.xH.sender = XAS_SENDER_APP;
    msg.xH.id = xasNextMsgId();
    return msg;
}

int xasSendMessage(const XasMessage *msg)
{
    xasAssertGiven(msg, "msg");
    struct {
        long mtype;
        XasMessage record;
    } entry{.mtype = static_cast<long>(msg->xH.msgtype), .record = *msg};
    if (::msgsnd(transport().toXms, &entry, sizeof entry.record, 0) != 0)
        return xasLogFailure("Error sending to XMS message queue\n");
    return 0;
}

int xasGetMessage(XasMessage *msg, bool wait)
{
    xasAssertGiven(msg, "msg");
    return readMessage(*msg, wait) == ReadResult::got ? 0 : 1;
}

int xasReceiveMessage(XasMessage *msg, XasUserList &users, const XasIdleWork &idle)
{
    xasAssertGiven(msg, "msg");
    bool fromQueue = false;
    if (pollForMessage(*msg, idle, fromQueue) != 0)
        return 1;
    if (fromQueue && msg->xH.msgtype == XMSG_LOCALUSERS)
        return receiveUserList(*msg, users);
    return 0;
}
