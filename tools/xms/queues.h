/** The two message queues between the configuration server, who makes and removes them, and the daemon. */
#ifndef XAS_XMS_QUEUES_H
#define XAS_XMS_QUEUES_H

#include "wire/message.h"

#include <optional>
#include <vector>

struct XmsQueues {
    int fromDaemon = -1; /**< key 1005 */
    int toDaemon = -1;   /**< key 1006 */
    bool found = false;  /**< one of them existed already: a daemon may be attached to it */
};

/**
 * Makes both queues, mode 0600. Queues that exist are used on, so that a running daemon stays attached, but
 * what was left in them is thrown away. Throws XmsError when the system refuses.
 */
XmsQueues xmsOpenQueues();

/** Removes both queues; a daemon that is attached must then be started again. */
void xmsRemoveQueues(const XmsQueues &queues);

/** Puts a record into the daemon's queue without waiting; false when the queue is full. Throws XmsError. */
bool xmsSend(const XmsQueues &queues, const XasMessage &record);

/** The same for a list of users, which goes out behind the message that announces it. */
bool xmsSendUsers(const XmsQueues &queues, const std::vector<std::byte> &users);

/** The largest entry that the daemon's queue takes, in bytes. */
std::size_t xmsLargestEntry(const XmsQueues &queues);

/** The next record from the daemon, of whatever size, without waiting; none when there is none. Throws
 * XmsError. */
std::optional<std::vector<std::byte>> xmsReceive(const XmsQueues &queues);

/** How many records the daemon has not taken yet. */
std::size_t xmsUnread(const XmsQueues &queues);

#endif
