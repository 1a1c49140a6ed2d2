/**
 * The IP filter's test timer: a filter that is enabled with a test time is switched off again when the time
 * runs out without a confirmation, and XMS is told. The timer lives in memory only (this unit owns it); the
 * file "/tmp/.save/ipfilter-timer.txt" tells others while it runs: minutes and start, seconds since the
 * epoch.
 */
#ifndef XAS_DISPATCH_IPFILTER_TIMER_H
#define XAS_DISPATCH_IPFILTER_TIMER_H

#include "core/reply.h"
#include "wire/message.h"

/** Applies an XMSG_FIREWALL: switches the filter and starts or stops the timer. Returns 0 or 1. */
[[nodiscard]] int xasIPFilterTestTimer(const XasMessage *msg, XasReplyStatus *reply);

/** The timer's share of the idle work. When the time has run out it disables the filter, tells XMS and waits
 * for the answer, serving signals. Returns 0; 1 when disabling failed or XMS did not accept. */
[[nodiscard]] int xasIPFilterTimerTick();

#endif
