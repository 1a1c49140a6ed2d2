/** Playing recorded settings again. */
#ifndef XAS_XMS_REPLAY_H
#define XAS_XMS_REPLAY_H

#include "xms/commands.h"

#include <string>

/**
 * Sends the settings of a recording one after the other and compares what becomes of each with what became of
 * it then. Refused: one of them ended differently. Ends at the first one that is not acknowledged in time.
 */
XmsExit xmsReplayCommand(const XmsOptions &options, const std::string &path, double timeoutSeconds);

#endif
