/** What one message's handling reports back: failure code and reason, cleared before each message. */
#ifndef XAS_CORE_REPLY_H
#define XAS_CORE_REPLY_H

#include <cstddef>
#include <cstdint>
#include <new>
#include <string>
#include <string_view>

/** Values of `rcode`. */
enum XasReplyCode : std::uint32_t {
    XAS_RCODE_NONE = 0,
    XAS_RCODE_MISSING = 1,  /**< a needed configuration file is not in the list, or another handler failure */
    XAS_RCODE_OPEN = 2,     /**< cannot open */
    XAS_RCODE_SAVE = 3,     /**< cannot save or write */
    XAS_RCODE_TOO_LONG = 4, /**< a share's line is too long */
    XAS_RCODE_TEXT = 5      /**< a text holds what would break a file or a command */
};

/** The longest reason text that travels. */
inline constexpr std::size_t XAS_REASON_MAX = 499;

inline std::string xasRoomForReason()
{
    std::string text;
    try {
        text.reserve(XAS_REASON_MAX);
    } catch (const std::bad_alloc &) {
        text.clear(); // the reason will be cut to what there is room for
    }
    return text;
}

struct XasReplyStatus {
    std::uint32_t rcode = XAS_RCODE_NONE;
    std::string rstr = xasRoomForReason(); /**< a failure can be told when memory has run out */
};

/** A code and the reason that goes with it. */
struct XasReason {
    std::uint32_t rcode;
    const char *text;
};

/** Fills the reply; the reason is cut to XAS_REASON_MAX characters, and to what fits when memory has run out.
 */
inline void xasSetReply(XasReplyStatus &reply, std::uint32_t rcode, std::string_view reason) noexcept
{
    reply.rcode = rcode;
    try {
        reply.rstr = reason.substr(0, XAS_REASON_MAX);
    } catch (const std::bad_alloc &) {
        reply.rstr = reason.substr(0, reply.rstr.capacity());
    }
}

inline void xasSetReply(XasReplyStatus &reply, const XasReason &reason)
{
    xasSetReply(reply, reason.rcode, reason.text);
}

#endif
