/** What became of a setting that was sent: for people, for programs and as an exit status. */
#ifndef XAS_XMS_OUTCOME_H
#define XAS_XMS_OUTCOME_H

#include "wire/message.h"
#include "wire/reply_message.h"
#include "xms/error.h"
#include "xms/show.h"

#include <string>

/** What became of a setting. */
struct XmsOutcome {
    std::string type;
    std::string result; /**< "applied", "refused", "sent" or "timeout" */
    std::uint32_t id = 0;
    XasReplyPayload reply{}; /**< of the acknowledgement */
    double ms = 0;           /**< from the queue to the acknowledgement */
    bool stored = false;
    std::string problem;          /**< why it was not stored, or not answered */
    std::vector<std::string> log; /**< what was logged meanwhile, of a setting that was refused */
};

/** The outcome from the server's answer line. Throws XmsError when the answer is no outcome. */
XmsOutcome xmsOutcomeFrom(std::uint32_t msgtype, const XmsJson &answer);

/** What an acknowledgement says: "refused, rcode 1, "Error determining hosts file"". */
std::string xmsReplyText(const XasReplyPayload &reply, XmsPaint paint);

/** One line for people, without line end, and one for each line of the log. */
std::string xmsOutcomeText(const XmsOutcome &outcome, XmsPaint paint);
XmsJson xmsOutcomeJson(const XmsOutcome &outcome);
XmsExit xmsOutcomeExit(const XmsOutcome &outcome);

#endif
