/** The payload of XMSG_CIFS: the share that the appliance offers to others. */
#ifndef XAS_AUTH_CIFS_PAYLOAD_H
#define XAS_AUTH_CIFS_PAYLOAD_H

#include "wire/message.h"

struct XasCifsPayload {
    std::uint32_t enabled;
    std::uint32_t eth1; /**< non-zero: serve on the first interface, "eth0" */
    std::uint32_t eth2; /**< non-zero: serve on the second interface, "eth1" */
    char lanman_pwd[33];
    char nt_pwd[33];
    char lct_field[17]; /**< time of the password's last change */
    char workgroup[XAS_PAYLOAD_SIZE - 95];
};

static_assert(offsetof(XasCifsPayload, eth1) + XAS_PAYLOAD_OFFSET == 124);
static_assert(offsetof(XasCifsPayload, eth2) + XAS_PAYLOAD_OFFSET == 128);
static_assert(offsetof(XasCifsPayload, lanman_pwd) + XAS_PAYLOAD_OFFSET == 132);
static_assert(offsetof(XasCifsPayload, nt_pwd) + XAS_PAYLOAD_OFFSET == 165);
static_assert(offsetof(XasCifsPayload, lct_field) + XAS_PAYLOAD_OFFSET == 198);
static_assert(offsetof(XasCifsPayload, workgroup) + XAS_PAYLOAD_OFFSET == 215);
static_assert(sizeof(XasCifsPayload) <= XAS_PAYLOAD_SIZE);

#endif
