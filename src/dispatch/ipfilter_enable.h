/**
 * The IP filter as a whole: while it is disabled, the INPUT chain begins with a rule that accepts every
 * packet. Enabling it deletes that rule. The state that the daemon believes the filter is in (enabled at
 * start, when the shipped script has reset everything) is this unit's own.
 */
#ifndef XAS_DISPATCH_IPFILTER_ENABLE_H
#define XAS_DISPATCH_IPFILTER_ENABLE_H

#include "core/reply.h"

inline constexpr XasReason XAS_FILTER_SWITCHING_FAILED{1, "Error disabling IP Filter"};

/** Switches the filter on or off; nothing is done when it is so already. Returns 0; 1 with the reply set when
 * disabling failed. A failed enabling is not noticed. */
[[nodiscard]] int xasIPFilterEnable(bool enabled, XasReplyStatus *reply);

/** The state that the daemon believes the filter is in. */
[[nodiscard]] bool xasIPFilterIsEnabled();

/** The INPUT chain has been cleared, and with it the accept-all rule. */
void xasIPFilterNoteReset();

/** Switches the filter as the stored settings say. Returns 0, or 1 when there are none or it failed. */
[[nodiscard]] int xasIPFilterApplySettings();

/** Inserts the accept-all rule and takes the filter as disabled. Returns 0, or 1 after logging. */
[[nodiscard]] int xasIPFilterDisable();

#endif
