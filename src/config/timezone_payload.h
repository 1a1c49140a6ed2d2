/** The payload of XMSG_TIMEZONE: the zone's name, as in "Europe/Berlin". */
#ifndef XAS_CONFIG_TIMEZONE_PAYLOAD_H
#define XAS_CONFIG_TIMEZONE_PAYLOAD_H

#include "wire/message.h"

struct XasTimezonePayload {
    char zone[XAS_PAYLOAD_SIZE];
};

static_assert(offsetof(XasTimezonePayload, zone) + XAS_PAYLOAD_OFFSET == 120);

#endif
