/** The assignment of filter sets: an interface uses a set through a jump rule in the INPUT chain. */
#ifndef XAS_DISPATCH_IPFILTER_ASSIGN_H
#define XAS_DISPATCH_IPFILTER_ASSIGN_H

#include "core/reply.h"
#include "wire/message.h"

inline constexpr XasReason XAS_FILTER_LISTING_FAILED{2, "Error openning IP Filter temp file"};

/**
 * Applies an XMSG_IPFILTER_ASSIGN: removes every jump rule of the interface, then adds the one to its set, if
 * it is to have one. Returns 0; 1 with the reply set when the rules cannot be listed; 1 with the reply left
 * alone when the rule cannot be added. A rule that cannot be removed is only logged.
 */
[[nodiscard]] int xasIPFilterAssign(const XasMessage *msg, XasReplyStatus *reply);

#endif
