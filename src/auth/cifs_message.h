/** The payload of XMSG_CIFS: the share that the appliance offers to others. */
#ifndef XAS_AUTH_CIFS_MESSAGE_H
#define XAS_AUTH_CIFS_MESSAGE_H

#include "wire/field.h"

struct XasCifsPayload {
    std::uint32_t enabled;
    std::uint32_t eth1; /**< non-zero: serve on the first interface, "eth0" */
    std::uint32_t eth2; /**< non-zero: serve on the second interface, "eth1" */
    char lanman_pwd[33];
    char nt_pwd[33];
    char lct_field[17]; /**< time of the password's last change */
    char workgroup[XAS_PAYLOAD_SIZE - 95];
};

namespace xasCifsFields {

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD(XasCifsPayload, enabled, flag, "the share is offered").byDefault("yes"),
    XAS_FIELD(XasCifsPayload, eth1, flag, "on the first port").byDefault("yes"),
    XAS_FIELD(XasCifsPayload, eth2, flag, "on the second port"),
    XAS_FIELD(XasCifsPayload, lanman_pwd, text, "LAN Manager hash of the password, 32 hexadecimal digits")
        .secret()
        .holding(XasTextRule::column)
        .readIf(xasIsSet<&XasCifsPayload::enabled>),
    XAS_FIELD(XasCifsPayload, nt_pwd, text, "NT hash of the password, 32 hexadecimal digits")
        .secret()
        .holding(XasTextRule::column)
        .readIf(xasIsSet<&XasCifsPayload::enabled>),
    XAS_FIELD(XasCifsPayload, lct_field, text,
              "when the password was changed: LCT-, seconds since 1970 in hexadecimal")
        .readIf(xasIsSet<&XasCifsPayload::enabled>),
    XAS_FIELD(XasCifsPayload, workgroup, text, "workgroup that the appliance appears in")
        .byDefault("WORKGROUP")
        .readIf(xasIsSet<&XasCifsPayload::enabled>),
};
static_assert(xasFieldsAreSound<XasCifsPayload>(FIELDS));

} // namespace xasCifsFields

inline constexpr XasMsgFields XAS_CIFS_MESSAGE = {
    .msgtype = XMSG_CIFS, .meaning = "the share that is offered", .fields = xasCifsFields::FIELDS};

#endif
