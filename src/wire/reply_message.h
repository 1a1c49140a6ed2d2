/** XMSG_ACKNAK: the answer to a message. */
#ifndef XAS_WIRE_REPLY_MESSAGE_H
#define XAS_WIRE_REPLY_MESSAGE_H

#include "wire/field.h"

struct XasReplyPayload {
    std::uint32_t success;  /**< non-zero: the settings were applied */
    std::uint32_t complete; /**< the daemon always sends 1 */
    std::uint32_t rcode;    /**< result code, 0 = none */
    char rstr[500];         /**< reason text */
};

namespace xasReplyFields {

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD(XasReplyPayload, success, flag, "the settings were applied"),
    XAS_FIELD(XasReplyPayload, complete, flag, "the work is done; always yes from the daemon")
        .byDefault("yes"),
    XAS_FIELD(XasReplyPayload, rcode, number, "result code, 0 = none"),
    XAS_FIELD(XasReplyPayload, rstr, text, "reason of a refusal"),
};
static_assert(xasFieldsAreSound<XasReplyPayload>(FIELDS));

} // namespace xasReplyFields

inline constexpr XasMsgFields XAS_ACKNAK_MESSAGE = {.msgtype = XMSG_ACKNAK,
                                                    .meaning = "answer to a message",
                                                    .fields = xasReplyFields::FIELDS,
                                                    .stored = false,
                                                    .answered = false};

#endif
