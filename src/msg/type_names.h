/** Message types as people write them: "dns", "DNS", "XMSG_DNS" or "3". */
#ifndef XAS_MSG_TYPE_NAMES_H
#define XAS_MSG_TYPE_NAMES_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/** The short name: the type's name in lower case without "XMSG_" ("dns"); its number when it has no name. */
std::string msgShortName(std::uint32_t msgtype);

/** The name as it is ("XMSG_DNS"); "type 66" when it has none. */
std::string msgLongName(std::uint32_t msgtype);

/** The type that `text` names, short or long, in any case, or by number; none when it names no type. */
std::optional<std::uint32_t> msgTypeFromText(std::string_view text);

#endif
