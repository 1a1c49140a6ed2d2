/** The payload of XMSG_TACACS: up to three servers that share a secret. */
#ifndef XAS_AUTH_TACACS_MESSAGE_H
#define XAS_AUTH_TACACS_MESSAGE_H

#include "wire/address.h"
#include "wire/field.h"

inline constexpr std::size_t XAS_TACACS_SERVERS = 3;

/** How the user's password travels (`XasTacacsPayload::service`); any other value means PAP. */
enum XasTacacsService : std::uint32_t { XAS_TACACS_PAP = 0, XAS_TACACS_CHAP = 1, XAS_TACACS_LOGIN = 2 };

struct XasTacacsPayload {
    std::uint32_t enabled; /**< non-zero: the application is started; the file is written anyway */
    std::uint8_t order;    /**< for others; the order on disk counts */
    XasHostAddr servers[XAS_TACACS_SERVERS]; /**< an empty name: none */
    char server1_secret[128];
    std::uint32_t encrypt; /**< 1: the traffic is encrypted */
    std::uint32_t service; /**< XasTacacsService */
};

namespace xasTacacsFields {

inline constexpr XasMsgGroup SERVERS =
    XAS_GROUP("server", XasTacacsPayload, servers, "the servers, tried in order").alwaysUsed();

inline constexpr XasValueName SERVICES[] = {
    {XAS_TACACS_PAP, "pap"}, {XAS_TACACS_CHAP, "chap"}, {XAS_TACACS_LOGIN, "login"}};

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD(XasTacacsPayload, enabled, flag, "TACACS+ is used").byDefault("yes"),
    XAS_FIELD(XasTacacsPayload, order, number,
              "position among the login methods, for others: the order on disk counts"),
    XAS_FIELD_AS("", XasTacacsPayload, servers[0], hostAddr, "a server").byDefault("none").in(SERVERS),
    XAS_FIELD(XasTacacsPayload, server1_secret, text, "the secret shared with all of them")
        .secret()
        .holding(XasTextRule::pamValue),
    XAS_FIELD(XasTacacsPayload, encrypt, flag, "the traffic is encrypted").byDefault("yes"),
    XAS_FIELD(XasTacacsPayload, service, choice, "how the password travels").of(SERVICES),
};
static_assert(xasFieldsAreSound<XasTacacsPayload>(FIELDS));

} // namespace xasTacacsFields

inline constexpr XasMsgFields XAS_TACACS_MESSAGE = {
    .msgtype = XMSG_TACACS, .meaning = "TACACS+", .fields = xasTacacsFields::FIELDS};

#endif
