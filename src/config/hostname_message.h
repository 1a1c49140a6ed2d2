/** The payload of XMSG_HOSTNAME: the appliance's name and domain. */
#ifndef XAS_CONFIG_HOSTNAME_MESSAGE_H
#define XAS_CONFIG_HOSTNAME_MESSAGE_H

#include "wire/field.h"

struct XasHostnamePayload {
    char hostname[65];
    char domain[XAS_PAYLOAD_SIZE - 65]; /**< empty: none */
};

namespace xasHostnameFields {

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD(XasHostnamePayload, hostname, text, "the appliance's host name").holding(XasTextRule::word),
    XAS_FIELD(XasHostnamePayload, domain, text,
              "its domain; empty: none. The full name is hostname.domain, at most 255 characters")
        .holding(XasTextRule::word),
};
static_assert(xasFieldsAreSound<XasHostnamePayload>(FIELDS));

} // namespace xasHostnameFields

inline constexpr XasMsgFields XAS_HOSTNAME_MESSAGE = {
    .msgtype = XMSG_HOSTNAME, .meaning = "host name and domain", .fields = xasHostnameFields::FIELDS};

#endif
