/** The commands that talk to a running server. Each prints to standard output; complaints are thrown as
 * XmsError. */
#ifndef XAS_XMS_COMMANDS_H
#define XAS_XMS_COMMANDS_H

#include "xms/error.h"
#include "xms/logs.h"
#include "xms/outcome.h"
#include "xms/setting.h"
#include "xms/show.h"
#include "xms/socket.h"

#include <string>
#include <vector>

/** What every command knows. */
struct XmsOptions {
    std::string socket;
    bool json = false;
    bool secrets = false; /**< they are shown, or recorded, too */
    XmsPaint paint = XmsPaint::plain;
    std::vector<std::string> logs{XMS_DEFAULT_LOGS.begin(),
                                  XMS_DEFAULT_LOGS.end()}; /**< files that are followed */
};

/** Sends a setting, prints what became of it and returns it; a wait that takes long is told on the standard
 * error. */
XmsOutcome xmsSendSetting(const XmsOptions &options, const XmsDescriptor &server, const XmsSetting &setting,
                          double timeoutSeconds);

/** Sends a setting and waits for its acknowledgement. */
XmsExit xmsSetCommand(const XmsOptions &options, const XmsSetOptions &set);

/** What is asked for of the stored records. */
struct XmsGetOptions {
    std::string type;
    std::vector<std::string> keys; /**< "id=3": one of the records of a type that has several */
    bool all = false;              /**< of all types */
    bool yaml = false;             /**< as a file for `xms apply` */
};

/** Shows stored records. */
XmsExit xmsGetCommand(const XmsOptions &options, const XmsGetOptions &get);

#endif
