#include "xms/queues.h"

#include "xms/error.h"

#include <algorithm>
#include <cerrno>
#include <sys/ipc.h>
#include <sys/msg.h>

namespace {

constexpr key_t KEY_FROM_DAEMON = 1005;
constexpr key_t KEY_TO_DAEMON = 1006;

/** More than a queue holds with the system's ordinary limits; a longer record is cut, and shown as odd
 * anyway. */
constexpr std::size_t LARGEST_RECORD = 65536;

struct QueueEntry {
    long mtype;
    XasMessage record;
};
static_assert(offsetof(QueueEntry, record) == sizeof(long));

[[noreturn]] void fail(const std::string &what)
{
    throw XmsError{XmsExit::noServer, what + ": " + std::strerror(errno)};
}

int openQueue(key_t key, bool &found)
{
    int queue = msgget(key, IPC_CREAT | IPC_EXCL | 0600);
    if (queue < 0 && errno == EEXIST) {
        found = true;
        queue = msgget(key, 0600);
    }
    if (queue < 0)
        fail("cannot make the message queue with key " + std::to_string(key));
    return queue;
}

std::optional<std::vector<std::byte>> takeOne(int queue)
{
    static std::vector<std::byte> entry(sizeof(long) + LARGEST_RECORD);
    const ssize_t size = msgrcv(queue, entry.data(), LARGEST_RECORD, 0, IPC_NOWAIT | MSG_NOERROR);
    if (size < 0 && (errno == ENOMSG || errno == EINTR))
        return std::nullopt;
    if (size < 0)
        fail("cannot read from a message queue");
    const auto begin = entry.begin() + sizeof(long);
    return std::vector<std::byte>{begin, begin + size};
}

/** Puts an entry of `size` bytes behind its type into a queue; false when the queue is full. */
bool putOne(int queue, const void *entry, std::size_t size)
{
    if (msgsnd(queue, entry, size, IPC_NOWAIT) == 0)
        return true;
    if (errno == EAGAIN || errno == EINTR)
        return false;
    fail("cannot write to the message queue");
}

} // namespace

XmsQueues xmsOpenQueues()
{
    XmsQueues queues;
    queues.fromDaemon = openQueue(KEY_FROM_DAEMON, queues.found);
    queues.toDaemon = openQueue(KEY_TO_DAEMON, queues.found);
    for (const int queue : {queues.fromDaemon, queues.toDaemon}) {
        while (takeOne(queue))
            continue;
    }
    return queues;
}

void xmsRemoveQueues(const XmsQueues &queues)
{
    msgctl(queues.fromDaemon, IPC_RMID, nullptr);
    msgctl(queues.toDaemon, IPC_RMID, nullptr);
}

bool xmsSend(const XmsQueues &queues, const XasMessage &record)
{
    const long mtype = std::max<long>(record.xH.msgtype, 1); // zero is no type for the system
    const QueueEntry entry{mtype, record};
    return putOne(queues.toDaemon, &entry, sizeof entry.record);
}

bool xmsSendUsers(const XmsQueues &queues, const std::vector<std::byte> &users)
{
    const long mtype = XMSG_LOCALUSERS;
    std::vector<std::byte> entry(sizeof mtype + users.size());
    std::memcpy(entry.data(), &mtype, sizeof mtype);
    std::ranges::copy(users, entry.begin() + sizeof mtype);
    return putOne(queues.toDaemon, entry.data(), users.size());
}

std::size_t xmsLargestEntry(const XmsQueues &queues)
{
    msginfo limits{};
    msqid_ds state{};
    msgctl(0, IPC_INFO, reinterpret_cast<msqid_ds *>(&limits)); // the kernel fills a msginfo here
    msgctl(queues.toDaemon, IPC_STAT, &state);
    return std::min<std::size_t>(static_cast<std::size_t>(limits.msgmax), state.msg_qbytes);
}

std::optional<std::vector<std::byte>> xmsReceive(const XmsQueues &queues)
{
    return takeOne(queues.fromDaemon);
}

std::size_t xmsUnread(const XmsQueues &queues)
{
    msqid_ds state{};
    return msgctl(queues.toDaemon, IPC_STAT, &state) == 0 ? state.msg_qnum : 0;
}
