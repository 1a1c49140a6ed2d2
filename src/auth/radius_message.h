/** The payload of XMSG_RADIUS: two servers with their secrets. */
#ifndef XAS_AUTH_RADIUS_MESSAGE_H
#define XAS_AUTH_RADIUS_MESSAGE_H

#include "wire/address.h"
#include "wire/field.h"

struct XasRadiusServer {
    XasHostAddr host;
    char secret[130]; /**< shared with the server */
    std::uint16_t port;
};

struct XasRadiusPayload {
    std::uint32_t enabled; /**< zero: no server is written */
    std::uint8_t order;    /**< for others; the order on disk counts */
    XasRadiusServer server1;
    XasRadiusServer server2; /**< an empty name: none */
    std::uint8_t timeout;    /**< seconds, of both */
};

namespace xasRadiusFields {

/** The second server has a line when it is given; an address always is. */
inline bool isSecondWritten(const XasMessage &msg, std::size_t /*element*/)
{
    const auto radius = xasReadPayload<XasRadiusPayload>(msg);
    return radius.enabled != 0 && (radius.server2.host.is_name == 0 || radius.server2.host.value[0] != '\0');
}

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD(XasRadiusPayload, enabled, flag, "RADIUS is used").byDefault("yes"),
    XAS_FIELD(XasRadiusPayload, order, number,
              "position among the login methods, for others: the order on disk counts"),
    XAS_FIELD_AS("server1", XasRadiusPayload, server1.host, hostAddr, "first server")
        .byDefault("none")
        .readIf(xasIsSet<&XasRadiusPayload::enabled>),
    XAS_FIELD_AS("secret1", XasRadiusPayload, server1.secret, text, "its shared secret")
        .secret()
        .holding(XasTextRule::secret)
        .readIf(xasIsSet<&XasRadiusPayload::enabled>),
    XAS_FIELD_AS("port1", XasRadiusPayload, server1.port, number, "its port").byDefault("1812"),
    XAS_FIELD_AS("server2", XasRadiusPayload, server2.host, hostAddr, "second server")
        .byDefault("none")
        .readIf(xasIsSet<&XasRadiusPayload::enabled>),
    XAS_FIELD_AS("secret2", XasRadiusPayload, server2.secret, text, "its shared secret")
        .secret()
        .holding(XasTextRule::secret)
        .readIf(isSecondWritten),
    XAS_FIELD_AS("port2", XasRadiusPayload, server2.port, number, "its port").byDefault("1812"),
    XAS_FIELD(XasRadiusPayload, timeout, number, "seconds, of both").byDefault("3"),
};
static_assert(xasFieldsAreSound<XasRadiusPayload>(FIELDS));

} // namespace xasRadiusFields

inline constexpr XasMsgFields XAS_RADIUS_MESSAGE = {
    .msgtype = XMSG_RADIUS, .meaning = "RADIUS", .fields = xasRadiusFields::FIELDS};

#endif
