/** The payload of XMSG_NIS: the NIS domain and its servers. */
#ifndef XAS_AUTH_NIS_MESSAGE_H
#define XAS_AUTH_NIS_MESSAGE_H

#include "wire/address.h"
#include "wire/field.h"

inline constexpr std::size_t XAS_NIS_SLAVES = 5;

struct XasNisPayload {
    std::uint32_t enabled; /**< non-zero: the NIS client is started */
    std::uint8_t order;    /**< for others; the order on disk counts */
    char domain[103];
    std::uint32_t broadcast; /**< non-zero: servers are also found by broadcast */
    XasHostAddr master;
    XasHostAddr slaves[XAS_NIS_SLAVES]; /**< an empty name: none */
};

namespace xasNisFields {

inline constexpr XasMsgGroup SLAVES =
    XAS_GROUP("slave", XasNisPayload, slaves, "the slave servers").alwaysUsed();

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD(XasNisPayload, enabled, flag, "the NIS client runs").byDefault("yes"),
    XAS_FIELD(XasNisPayload, order, number,
              "position among the login methods, for others: the order on disk counts"),
    XAS_FIELD(XasNisPayload, domain, text, "NIS domain").holding(XasTextRule::word),
    XAS_FIELD(XasNisPayload, broadcast, flag, "servers are also found by broadcast"),
    XAS_FIELD(XasNisPayload, master, hostAddr, "master server").byDefault("none"),
    XAS_FIELD_AS("", XasNisPayload, slaves[0], hostAddr, "a slave server").byDefault("none").in(SLAVES),
};
static_assert(xasFieldsAreSound<XasNisPayload>(FIELDS));

} // namespace xasNisFields

inline constexpr XasMsgFields XAS_NIS_MESSAGE = {
    .msgtype = XMSG_NIS, .meaning = "NIS", .fields = xasNisFields::FIELDS};

#endif
