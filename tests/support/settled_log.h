/** The log up to now: a reader's thread may lag behind what a daemon has sent. */
#ifndef XAS_TEST_SUPPORT_SETTLED_LOG_H
#define XAS_TEST_SUPPORT_SETTLED_LOG_H

#include "support/log_socket.h"

/** Every line that was sent before this call, oldest first, but not the mark that this function sends itself.
 */
std::vector<XasLogLine> xasSettledLines(const XasLogSocket &log);

#endif
