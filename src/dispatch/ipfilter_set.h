/** Filter sets: named lists of rules, each an iptables chain, created, replaced or removed by the script. */
#ifndef XAS_DISPATCH_IPFILTER_SET_H
#define XAS_DISPATCH_IPFILTER_SET_H

#include "core/reply.h"
#include "wire/message.h"

/** The script cannot be copied, opened, run. */
inline constexpr XasReason XAS_FILTER_SET_REASONS[] = {{1, "Error copying IP Filter script"},
                                                       {2, "Error openning IP Filter script"},
                                                       {1, "Error running IP Filter script"}};

/** Applies an XMSG_IPFILTER_SET. Returns 0, or 1 with code and reason in `reply`. */
[[nodiscard]] int xasIPFilterSet(const XasMessage *msg, XasReplyStatus *reply);

/** Rebuilds the whole filter: asks XMS for every set, writes them and the jump rules of all interfaces, and
 * switches the filter as stored. A set that cannot be had is logged and left out. Returns 0, or 1 after
 * logging. */
[[nodiscard]] int xasIPFilterInit();

#endif
