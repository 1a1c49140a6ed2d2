#include "xms/reference.h"

#include "msg/type_names.h"
#include "wire/message.h"
#include "wire/message_names.h"

#include <string_view>

namespace {

/** "0 Set, 1 Get, 2 Return": the names from 0 up to the first number without one. */
std::string numbered(std::string_view (*nameOf)(std::uint32_t))
{
    std::string text;
    for (std::uint32_t number = 0; !nameOf(number).empty(); ++number)
        text += (number == 0 ? "" : ", ") + std::to_string(number) + " " + std::string{nameOf(number)};
    return text;
}

} // namespace

const char *const XMS_WIRE_TEXT =
    "The daemon and the configuration server exchange records of 2488 bytes through two System V message queues:\n"
    "key 1005 from the daemon to the server, key 1006 to the daemon. The queue's own message type is that of the\n"
    "record. Numbers are little-endian, IPv4 addresses in network byte order. A text ends at its first NUL byte\n"
    "or with its field. All offsets count from the start of the record.\n";

const char *const XMS_USERS_TEXT =
    "When num_users is not 0, a second entry of 120 + 224 × num_users bytes follows the message in the queue: 120\n"
    "bytes that nobody reads, then the users. The place in the message behind num_users (offset 164) is the\n"
    "daemon's own. The offsets below are those of the first user in that entry; each further one stands 224 bytes\n"
    "behind.\n";

XmsRows xmsHeaderRows()
{
    return {{"msgtype", "0", "4", "type of the message, see below"},
            {"action", "4", "4", numbered(xasActionName)},
            {"sender", "8", "4", numbered(xasSenderName)},
            {"id", "12", "4", "number of the message, given by its sender"},
            {"orig_id", "16", "4", "in an answer the id of what it answers, else 0"},
            {"", "20", "100", "not used, zero"},
            {"", "120", "2368", "payload, by type"}};
}

XmsRows xmsKindRows()
{
    return {{"text", "characters up to a NUL byte or the end of the field"},
            {"u8, u16, u32, u64", "unsigned number"},
            {"i32", "signed number"},
            {"flag", "0 no, anything else yes"},
            {"choice", "number, whose values are named in brackets"},
            {"mask", "one bit for each port or right, from the lowest on"},
            {"IPv4", "4 bytes in network order; where \"none\" is possible, that is 255.255.255.255"},
            {"IPv6", "16 bytes; all zero is none"},
            {"IPv6 socket", "sockaddr_in6, 28 bytes; an address that is all zero is none"},
            {"address", "u32, not 0 for IPv6; then 16 bytes: the IPv6 address, or the IPv4 address in the "
                        "first four; all zero is none"},
            {"host", "u32, not 0 for a name; u32, not 0 for IPv6; then 68 bytes: the name, or the address as "
                     "above without its u32; an empty name is none"}};
}

std::vector<std::uint32_t> xmsNamedTypes()
{
    std::vector<std::uint32_t> types;
    for (std::uint32_t msgtype = XMSG_ETH; msgtype <= XMSG_ERROR; ++msgtype) {
        if (!xasMsgTypeName(msgtype).empty())
            types.push_back(msgtype);
    }
    return types;
}
