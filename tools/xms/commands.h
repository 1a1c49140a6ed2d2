/** The commands that talk to a running server. Each prints to standard output; complaints are thrown as
 * XmsError. */
#ifndef XAS_XMS_COMMANDS_H
#define XAS_XMS_COMMANDS_H

#include "xms/error.h"
#include "xms/setting.h"
#include "xms/show.h"

#include <string>
#include <vector>

/** What every command knows. */
struct XmsOptions {
    std::string socket;
    bool json = false;
    XmsPaint paint = XmsPaint::plain;
};

/** Sends a setting and waits for its acknowledgement. */
XmsExit xmsSetCommand(const XmsOptions &options, const XmsSetOptions &set);

/** Shows the stored record; `keys` ("id=3") pick one of the records of a type that has several. */
XmsExit xmsGetCommand(const XmsOptions &options, const std::string &type,
                      const std::vector<std::string> &keys);

#endif
