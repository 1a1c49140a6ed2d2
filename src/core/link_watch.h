/**
 * The link watch: turns link changes of the two Ethernet ports into XMSG_NOTIFY messages.
 *
 * It sleeps until the first XMSG_ETH message arrived and while bonding is on, and looks at most about once a
 * second. A change is looked at again after 1.5 s before it is reported, so that a flap reports nothing; a
 * change on a port that is disabled in the stored configuration is remembered silently. Its state (known link
 * states, socket, time of the last look) is one instance, owned by this unit.
 */
#ifndef XAS_CORE_LINK_WATCH_H
#define XAS_CORE_LINK_WATCH_H

#include "core/msgqueue.h"

/** Creates the link-state socket, kept for the life of the process. Returns 0, or 1 after logging. */
[[nodiscard]] int xasOpenLinkSocket();

/** The link state of port 0 or 1: `up` is 1 or 0; a port that cannot be asked counts as down. Returns 0. */
[[nodiscard]] int xasGetLinkState(unsigned port, std::uint32_t &up);

/** Wakes the watch for good: the Ethernet configuration has been received. */
void xasNoteEthConfigured();

/** Takes the link of port 0 or 1 as up from now on. Returns 0; 1 after logging for another port. */
[[nodiscard]] int xasEnableNetPort(unsigned port);

/** The watch's share of the idle work: looks when it is time to, and may make a notification in `msg`. */
XasIdleResult xasPollLinks(XasMessage &msg, bool bondingOn);

#endif
