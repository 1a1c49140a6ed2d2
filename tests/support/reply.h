/** What handlers and editors answer, as tests compare it. */
#ifndef XAS_TEST_SUPPORT_REPLY_H
#define XAS_TEST_SUPPORT_REPLY_H

#include "core/reply.h"

/** "2 Error opening ..."; "0 " when nothing was answered. */
inline std::string xasReplyText(const XasReplyStatus &reply)
{
    return std::to_string(reply.rcode) + " " + reply.rstr;
}

inline constexpr const char *XAS_NO_REPLY = "0 ";

#endif
