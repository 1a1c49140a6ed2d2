/** The commands that talk to a running server. Each prints to standard output; complaints are thrown as
 * XmsError. */
#ifndef XMS_XMS_COMMANDS_H
#define XMS_XMS_COMMANDS_H

#include "xms/xms_error.h"
#include "xms/xms_show.h"

#include <string>
#include <vector>

/** What every command knows. */
struct XmsOptions {
    std::string socket;
    bool json = false;
    XmsPaint paint = XmsPaint::plain;
};

struct XmsSetOptions {
    std::string type;
    std::vector<std::string> assignments; /**< "field=value" */
    bool fresh = false;                   /**< start from defaults, not from the stored record */
    bool force = false;                   /**< take values that the field tables do not allow */
    double timeoutSeconds = 30;
    std::string rawFile; /**< hexadecimal payload; "-" is standard input, empty is none */
};

/** What became of a setting. */
struct XmsOutcome {
    std::string type;
    std::string result; /**< "applied", "refused", "sent" or "timeout" */
    std::uint32_t id = 0;
    XasReplyPayload reply{}; /**< of the acknowledgement */
    double ms = 0;           /**< from the queue to the acknowledgement */
    bool stored = false;
    std::string problem; /**< why it was not stored, or not answered */
};

/** The outcome from the server's answer line. Throws XmsError when the answer is no outcome. */
XmsOutcome xmsOutcomeFrom(std::uint32_t msgtype, const XmsJson &answer);

/** One line for people, without line end. */
std::string xmsOutcomeText(const XmsOutcome &outcome, XmsPaint paint);
XmsJson xmsOutcomeJson(const XmsOutcome &outcome);
XmsExit xmsOutcomeExit(const XmsOutcome &outcome);

/** Sends a setting and waits for its acknowledgement. */
XmsExit xmsSetCommand(const XmsOptions &options, const XmsSetOptions &set);

/** Shows the stored record; `keys` ("id=3") pick one of the records of a type that has several. */
XmsExit xmsGetCommand(const XmsOptions &options, const std::string &type,
                      const std::vector<std::string> &keys);

/** Shows what passes between server and daemon until the server ends. */
XmsExit xmsWatchCommand(const XmsOptions &options);

#endif
