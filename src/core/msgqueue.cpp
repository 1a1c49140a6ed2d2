#include "core/msgqueue.h"

#include "core/assert.h"
#include "core/log.h"
#include "core/wait.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <optional>
#include <span>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <utility>
#include <vector>

using namespace std::chrono_literals;

namespace {

constexpr auto POLL_INTERVAL = 100ms;
/** How often a waiting read looks, and a send to a full queue. */
constexpr auto READ_INTERVAL = 10ms;
/** How often the queues are looked for again after they vanished. */
constexpr auto ATTACH_INTERVAL = 1000ms;
/** How long a record is waited for that belongs to an earlier one. */
constexpr auto SECOND_HALF_LIMIT = 10000ms;

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
    bool lost = false;                        /**< the queues have been removed */
    std::chrono::milliseconds untilAttach{0}; /**< when they are looked for again */
    const XasIdleWork *idle = nullptr;        /**< what is done while no record comes */
    std::optional<XasMessage> made;           /**< by the idle work while another record was waited for */
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

/** One msgrcv without waiting; an entry of any size is taken off the queue. One that is larger than the
 * system lets into a queue by now is cut short: it would stand in the way of all others. */
ssize_t receiveEntry(Transport &state)
{
    int flags = IPC_NOWAIT;
    for (;;) {
        const std::size_t capacity = state.entry.size() - sizeof(long);
        const ssize_t size = ::msgrcv(state.fromXms, state.entry.data(), capacity, 0, flags);
        if (size >= 0 || (errno != EINTR && errno != E2BIG))
            return size;
        if (errno == E2BIG && !growEntry(state))
            flags |= MSG_NOERROR;
    }
}

/** True for the error of a queue that is not there any more. */
bool isQueueGone(int error)
{
    return error == EIDRM || error == EINVAL;
}

/** Has the queues looked for again at once. */
void noteLoss(Transport &state, int error)
{
    if (!isQueueGone(error))
        return;
    state.lost = true;
    state.untilAttach = 0ms;
}

/** True when the queues are there. Looks for lost ones; to be called once in POLL_INTERVAL. */
bool areQueuesThere(Transport &state)
{
    if (!state.lost)
        return true;
    if (state.untilAttach > 0ms) {
        state.untilAttach -= POLL_INTERVAL;
        return false;
    }
    state.untilAttach = ATTACH_INTERVAL - POLL_INTERVAL;
    return xasInitMsgQueues() == 0;
}

/** Reads one entry into `record`, whose size it must have. */
ReadResult readQueue(std::span<std::byte> record)
{
    Transport &state = transport();
    const ssize_t size = receiveEntry(state);
    if (size < 0) {
        if (errno == ENOMSG)
            return ReadResult::empty;
        noteLoss(state, errno);
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

/** Does the idle work while a record is waited for. A message that it makes is kept for afterwards; until
 * then it could make no other. */
void idleMeanwhile(Transport &state)
{
    if (state.idle == nullptr || state.made)
        return;
    XasMessage msg{};
    if ((*state.idle)(msg) == XasIdleResult::message)
        state.made = msg;
}

/** Waits for an entry that belongs to an earlier one. One that does not come counts as an error of receiving.
 */
ReadResult awaitEntry(std::span<std::byte> record)
{
    Transport &state = transport();
    for (auto waited = 0ms; waited < SECOND_HALF_LIMIT; waited += READ_INTERVAL) {
        const ReadResult result = readQueue(record);
        if (result != ReadResult::empty)
            return result;
        xasWait(READ_INTERVAL);
        if ((waited + READ_INTERVAL) % POLL_INTERVAL == 0ms)
            idleMeanwhile(state);
    }
    xasLogError("Error receiving from XMS message queue\n");
    return ReadResult::failed;
}

/** Has the idle work done in every wait while this object lives. */
class Meanwhile {
  public:
    explicit Meanwhile(const XasIdleWork &idle) { transport().idle = &idle; }
    ~Meanwhile() { transport().idle = nullptr; }
    Meanwhile(const Meanwhile &) = delete;
    Meanwhile &operator=(const Meanwhile &) = delete;
};

std::span<std::byte> bytesOf(XasMessage &msg)
{
    return std::as_writable_bytes(std::span{&msg, 1});
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
    if (awaitEntry({users.get(), size}) != ReadResult::got)
        return 1;
    setUserReference(msg, users.get() + USER_LIST_HEADER);
    return 0;
}

/** Takes the message that the idle work made while another record was waited for. */
bool takeMade(Transport &state, XasMessage &msg)
{
    if (!state.made)
        return false;
    msg = *std::exchange(state.made, std::nullopt);
    return true;
}

/** Polls until there is a message or the idle work makes one. Returns 0, or 1 on error. */
int pollForMessage(XasMessage &msg, const XasIdleWork &idle, bool &fromQueue)
{
    Transport &state = transport();
    if (takeMade(state, msg))
        return 0;
    for (;;) {
        xasWait(POLL_INTERVAL);
        const ReadResult result = areQueuesThere(state) ? readQueue(bytesOf(msg)) : ReadResult::empty;
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
    state.lost = false;
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
    Transport &state = transport();
    while (::msgsnd(state.toXms, &entry, sizeof entry.record, IPC_NOWAIT) != 0) {
        if (errno != EAGAIN) {
            noteLoss(state, errno);
            return xasLogFailure("Error sending to XMS message queue\n");
        }
        xasWait(READ_INTERVAL);
    }
    return 0;
}

int xasGetMessage(XasMessage *msg, bool wait)
{
    xasAssertGiven(msg, "msg");
    const ReadResult result = wait ? awaitEntry(bytesOf(*msg)) : readQueue(bytesOf(*msg));
    return result == ReadResult::got ? 0 : 1;
}

int xasReceiveMessage(XasMessage *msg, XasUserList &users, const XasIdleWork &idle)
{
    xasAssertGiven(msg, "msg");
    const Meanwhile meanwhile{idle};
    bool fromQueue = false;
    if (pollForMessage(*msg, idle, fromQueue) != 0)
        return 1;
    if (fromQueue && msg->xH.msgtype == XMSG_LOCALUSERS)
        return receiveUserList(*msg, users);
    return 0;
}
