/**
 * The dispatcher: one message from its receipt to its acknowledgement.
 *
 * The application concerned is stopped if it runs, its configuration files are rewritten by the type's
 * handler, it is started again by the type's rule (also when the handler failed), and the type's side effects
 * follow. A failure before the handler leaves the configuration untouched. Every message but those
 * whose row says otherwise is answered exactly once.
 */
#ifndef XAS_DISPATCH_PROCESS_MSG_H
#define XAS_DISPATCH_PROCESS_MSG_H

#include "core/appmgr.h"
#include "core/msgqueue.h"

/** Receives one message and handles it; `idle` is done while none waits. Returns the result of receiving when
 * that failed, 0 for a notification, else the result of sending the acknowledgement. */
[[nodiscard]] int xasProcessMsg(XasAppList &apps, const XasIdleWork &idle);

#endif
