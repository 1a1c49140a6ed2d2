/** Recording what happens at a running server. */
#ifndef XAS_XMS_RECORDER_H
#define XAS_XMS_RECORDER_H

#include "xms/commands.h"

#include <string>

struct XmsRecordOptions {
    std::string path;   /**< "-" is standard output */
    bool files = false; /**< what changes in the files of the application list, too */
    std::string list = "/r58/sysapp.xml";
};

/**
 * Writes the traffic and what is logged to a new file until SIGINT, SIGTERM or the server's end. The file is
 * there once the recording has begun. Throws XmsError when it cannot be written.
 */
XmsExit xmsRecordCommand(const XmsOptions &options, const XmsRecordOptions &record);

#endif
