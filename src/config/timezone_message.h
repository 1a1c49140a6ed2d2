/** The payload of XMSG_TIMEZONE: the zone's name, as in "Europe/Berlin". */
#ifndef XAS_CONFIG_TIMEZONE_MESSAGE_H
#define XAS_CONFIG_TIMEZONE_MESSAGE_H

#include "wire/field.h"

struct XasTimezonePayload {
    char zone[XAS_PAYLOAD_SIZE];
};

namespace xasTimezoneFields {

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD(XasTimezonePayload, zone, text, "the zone's name: Europe/Berlin")
        .holding(XasTextRule::path)
        .byDefault("UTC"),
};
static_assert(xasFieldsAreSound<XasTimezonePayload>(FIELDS));

} // namespace xasTimezoneFields

inline constexpr XasMsgFields XAS_TIMEZONE_MESSAGE = {
    .msgtype = XMSG_TIMEZONE, .meaning = "time zone", .fields = xasTimezoneFields::FIELDS};

#endif
