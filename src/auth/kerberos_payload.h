/** The payload of XMSG_KERBEROS: the realm and its key distribution centre. */
#ifndef XAS_AUTH_KERBEROS_PAYLOAD_H
#define XAS_AUTH_KERBEROS_PAYLOAD_H

#include "wire/address.h"
#include "wire/message.h"

struct XasKerberosPayload {
    std::uint32_t enabled; /**< zero: the client's file is removed */
    std::uint8_t order;    /**< for others; the order on disk counts */
    char realm[257];
    char kdc[258];    /**< the centre's full host name; empty: it gets no line in the hosts file */
    XasIpAddr kdc_ip; /**< all zero: the same */
    std::uint16_t kdc_port;
    std::uint32_t use_ldap; /**< who a user is, is asked of the directory */
};

static_assert(offsetof(XasKerberosPayload, enabled) + XAS_PAYLOAD_OFFSET == 120);
static_assert(offsetof(XasKerberosPayload, order) + XAS_PAYLOAD_OFFSET == 124);
static_assert(offsetof(XasKerberosPayload, realm) + XAS_PAYLOAD_OFFSET == 125);
static_assert(offsetof(XasKerberosPayload, kdc) + XAS_PAYLOAD_OFFSET == 382);
static_assert(offsetof(XasKerberosPayload, kdc_ip) + XAS_PAYLOAD_OFFSET == 640);
static_assert(offsetof(XasKerberosPayload, kdc_port) + XAS_PAYLOAD_OFFSET == 660);
static_assert(offsetof(XasKerberosPayload, use_ldap) + XAS_PAYLOAD_OFFSET == 664);

#endif
