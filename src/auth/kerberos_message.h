/** The payload of XMSG_KERBEROS: the realm and its key distribution centre. */
#ifndef XAS_AUTH_KERBEROS_MESSAGE_H
#define XAS_AUTH_KERBEROS_MESSAGE_H

#include "wire/address.h"
#include "wire/field.h"

struct XasKerberosPayload {
    std::uint32_t enabled; /**< zero: the client's file is removed */
    std::uint8_t order;    /**< for others; the order on disk counts */
    char realm[257];
    char kdc[258];    /**< the centre's full host name; empty: it gets no line in the hosts file */
    XasIpAddr kdc_ip; /**< all zero: the same */
    std::uint16_t kdc_port;
    std::uint32_t use_ldap; /**< who a user is, is asked of the directory */
};

namespace xasKerberosFields {

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD(XasKerberosPayload, enabled, flag, "Kerberos is used").byDefault("yes"),
    XAS_FIELD(XasKerberosPayload, order, number,
              "position among the login methods, for others: the order on disk counts"),
    XAS_FIELD(XasKerberosPayload, realm, text, "realm").readIf(xasIsSet<&XasKerberosPayload::enabled>),
    XAS_FIELD(XasKerberosPayload, kdc, text, "full host name of the key distribution centre")
        .holding(XasTextRule::host),
    XAS_FIELD(XasKerberosPayload, kdc_ip, ipAddr, "its address"),
    XAS_FIELD(XasKerberosPayload, kdc_port, number, "its port").byDefault("88"),
    XAS_FIELD(XasKerberosPayload, use_ldap, flag, "who a user is, is asked of the directory"),
};
static_assert(xasFieldsAreSound<XasKerberosPayload>(FIELDS));

} // namespace xasKerberosFields

inline constexpr XasMsgFields XAS_KERBEROS_MESSAGE = {
    .msgtype = XMSG_KERBEROS, .meaning = "Kerberos", .fields = xasKerberosFields::FIELDS};

#endif
