/** `xms serve`: the configuration server's stand-in, from start to SIGINT or SIGTERM. */
#ifndef XAS_XMS_SERVE_H
#define XAS_XMS_SERVE_H

#include "xms/show.h"

#include <string>

struct XmsServeOptions {
    std::string socket;
    bool keepQueues = false; /**< leave the queues at the end, for a daemon that runs on */
    bool quiet = false;      /**< do not show the traffic */
    bool json = false;       /**< show it as objects */
    bool secrets = false;    /**< show secrets, too */
    XmsPaint paint = XmsPaint::plain;
};

/** Serves until it is told to end. Throws XmsError when it cannot start or loses its queues. */
void xmsServe(const XmsServeOptions &options);

#endif
