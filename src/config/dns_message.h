/** The payload of XMSG_DNS: up to three name servers and the address family to prefer. */
#ifndef XAS_CONFIG_DNS_MESSAGE_H
#define XAS_CONFIG_DNS_MESSAGE_H

#include "wire/address.h"
#include "wire/field.h"

struct XasDnsPayload {
    XasIpAddr dns1; /**< all zero: unset, as for the other two */
    XasIpAddr dns2;
    XasIpAddr dns3;
    std::uint32_t prefer_ipv4; /**< non-zero: prefer IPv4 records */
};

namespace xasDnsFields {

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD(XasDnsPayload, dns1, ipAddr, "first name server"),
    XAS_FIELD(XasDnsPayload, dns2, ipAddr, "second name server"),
    XAS_FIELD(XasDnsPayload, dns3, ipAddr, "third name server"),
    XAS_FIELD(XasDnsPayload, prefer_ipv4, flag, "ask for IPv4 records first"),
};
static_assert(xasFieldsAreSound<XasDnsPayload>(FIELDS));

} // namespace xasDnsFields

inline constexpr XasMsgFields XAS_DNS_MESSAGE = {
    .msgtype = XMSG_DNS, .meaning = "name servers", .fields = xasDnsFields::FIELDS};

#endif
