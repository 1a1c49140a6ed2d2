/** The payload of XMSG_HOSTNAME: the appliance's name and domain. */
#ifndef XAS_CONFIG_HOSTNAME_PAYLOAD_H
#define XAS_CONFIG_HOSTNAME_PAYLOAD_H

#include "wire/message.h"

struct XasHostnamePayload {
    char hostname[65];
    char domain[XAS_PAYLOAD_SIZE - 65]; /**< empty: none */
};

static_assert(offsetof(XasHostnamePayload, hostname) + XAS_PAYLOAD_OFFSET == 120);
static_assert(offsetof(XasHostnamePayload, domain) + XAS_PAYLOAD_OFFSET == 185);
static_assert(sizeof(XasHostnamePayload) == XAS_PAYLOAD_SIZE);

#endif
