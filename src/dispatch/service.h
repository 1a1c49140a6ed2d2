/** Starting and stopping an application: its script, then its daemons in list order. */
#ifndef XAS_DISPATCH_SERVICE_H
#define XAS_DISPATCH_SERVICE_H

#include "core/appmgr.h"
#include "core/reply.h"

/** The reason text for a script's result: its exit status, or -1 when it could not be run. */
const char *xasScriptErrorText(int code);

/** Stops an application: runs its stop script and stops its daemons. Returns 0; or 1 with code and reason. */
[[nodiscard]] int xasStopApp(XasApp &app, XasReplyStatus *reply);

/** Starts an application: runs its start script, starts its daemons. Returns 0; or 1 with code and reason. */
[[nodiscard]] int xasStartApp(XasApp &app, XasReplyStatus *reply);

#endif
