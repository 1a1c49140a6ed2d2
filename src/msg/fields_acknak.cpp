/** XMSG_ACKNAK: the answer to a message. */
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasMsgField FIELDS[] = {
    {.name = "success",
     .place = XAS_PLACE(XasReplyPayload, success),
     .kind = flag,
     .meaning = "the settings were applied"},
    {.name = "complete",
     .place = XAS_PLACE(XasReplyPayload, complete),
     .kind = flag,
     .meaning = "the work is done; always yes from the daemon",
     .initial = "yes"},
    {.name = "rcode",
     .place = XAS_PLACE(XasReplyPayload, rcode),
     .kind = number,
     .meaning = "result code, 0 = none"},
    {.name = "rstr",
     .place = XAS_PLACE(XasReplyPayload, rstr),
     .kind = text,
     .meaning = "reason of a refusal"},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_ACKNAK_FIELDS = {.msgtype = XMSG_ACKNAK,
                                        .meaning = "answer to a message",
                                        .fields = FIELDS,
                                        .stored = false,
                                        .answered = false};
