/** The names of message types, actions and senders, as traces and the stored configuration show them. */
#ifndef XAS_WIRE_MESSAGE_NAMES_H
#define XAS_WIRE_MESSAGE_NAMES_H

#include <cstdint>
#include <string_view>

/** The name of a message type ("XMSG_ETH" for 1); empty for type 66 and for values outside 1 to 68. */
std::string_view xasMsgTypeName(std::uint32_t msgtype);

/** The type whose name is `name` exactly; 0 when there is none. */
std::uint32_t xasMsgTypeByName(std::string_view name);

/** "Set", "Get" or "Return"; empty for values above 2. */
std::string_view xasActionName(std::uint32_t action);

/** The sender's name ("APP" for 4); empty for values above 10. */
std::string_view xasSenderName(std::uint32_t sender);

#endif
