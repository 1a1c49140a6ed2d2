/** The payload of XMSG_AUTH: which login methods are used, and in which order. */
#ifndef XAS_AUTH_AUTH_MESSAGE_H
#define XAS_AUTH_AUTH_MESSAGE_H

#include "wire/field.h"

/** A method's position: 1 is tried first, 0 means that the method is not used. A larger one counts as 0. */
inline constexpr std::uint8_t XAS_AUTH_POSITIONS = 7;

struct XasAuthPayload {
    std::uint8_t local;
    std::uint8_t nis;
    std::uint8_t ldap;
    std::uint8_t radius;
    std::uint8_t securid;
    std::uint8_t kerberos;
    std::uint8_t tacacs;
    std::uint8_t unused;
    std::uint32_t first_responding; /**< non-zero: the first method that answers decides */
    std::uint32_t start_nis;        /**< non-zero: the NIS client is started when NIS has a position */
};

namespace xasAuthFields {

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD(XasAuthPayload, local, number, "position of local accounts; 0, here and below: not used")
        .within(0, 7)
        .byDefault("1"),
    XAS_FIELD(XasAuthPayload, nis, number, "position of NIS").within(0, 7),
    XAS_FIELD(XasAuthPayload, ldap, number, "position of LDAP").within(0, 7),
    XAS_FIELD(XasAuthPayload, radius, number, "position of RADIUS").within(0, 7),
    XAS_FIELD(XasAuthPayload, securid, number, "position of SecurID").within(0, 7),
    XAS_FIELD(XasAuthPayload, kerberos, number, "position of Kerberos").within(0, 7),
    XAS_FIELD(XasAuthPayload, tacacs, number, "position of TACACS+").within(0, 7),
    XAS_FIELD(XasAuthPayload, first_responding, flag, "the first method that answers decides"),
    XAS_FIELD(XasAuthPayload, start_nis, flag, "the NIS client is started when NIS has a position"),
};
static_assert(xasFieldsAreSound<XasAuthPayload>(FIELDS));

} // namespace xasAuthFields

inline constexpr XasMsgFields XAS_AUTH_MESSAGE = {
    .msgtype = XMSG_AUTH, .meaning = "order of the login methods", .fields = xasAuthFields::FIELDS};

#endif
