/**
 * The record that the daemon and the configuration server XMS exchange: one fixed-size XasMessage per queue
 * entry. The header `xH` fills the first 120 bytes, the payload follows; every offset in this project counts
 * from the start of the record. Integers are little-endian.
 *
 * A payload is a trivially copyable struct. It is copied out of the record (never pointed into it), and its
 * layout is proved by static_assert beside its definition.
 */
#ifndef XAS_WIRE_MESSAGE_H
#define XAS_WIRE_MESSAGE_H

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

static_assert(std::endian::native == std::endian::little, "the record is little-endian");

/** Calls X with every message type and its number, in order. 66 has no name. */
// clang-format off
#define XAS_MSG_TYPES(X) \
    X(XMSG_ETH, 1) X(XMSG_HOSTNAME, 2) X(XMSG_DNS, 3) X(XMSG_SECURITY, 4) X(XMSG_FIREWALL, 5) \
    X(XMSG_IPFILTER_SET, 6) X(XMSG_IPFILTER_ASSIGN, 7) X(XMSG_ROUTING, 8) X(XMSG_VPN, 9) \
    X(XMSG_TIMEZONE, 10) X(XMSG_NTP, 11) X(XMSG_SYSLOG, 12) X(XMSG_AUDITLOG, 13) X(XMSG_SSH, 14) \
    X(XMSG_TELNET, 15) X(XMSG_SNMP, 16) X(XMSG_SMTP, 17) X(XMSG_PHONEHOME, 18) X(XMSG_NFS, 19) \
    X(XMSG_CIFS, 20) X(XMSG_AUTH, 21) X(XMSG_LOCALUSERS, 22) X(XMSG_PWDHISTORY, 23) X(XMSG_NIS, 24) \
    X(XMSG_LDAP, 25) X(XMSG_RADIUS, 26) X(XMSG_SECURID, 27) X(XMSG_KERBEROS, 28) X(XMSG_TACACS, 29) \
    X(XMSG_REMOTEUSERS, 30) X(XMSG_GROUPS, 31) X(XMSG_TERMPORT, 32) X(XMSG_DP_GLOBAL, 33) \
    X(XMSG_DP_DATA, 34) X(XMSG_DP_PPP, 35) X(XMSG_DP_LOGGING, 36) X(XMSG_DP_GENERAL, 37) \
    X(XMSG_CONNECT, 38) X(XMSG_PCCARD, 39) X(XMSG_XPB_PWR, 40) X(XMSG_XPB_485, 41) X(XMSG_RPM, 42) \
    X(XMSG_HOSTLIST, 43) X(XMSG_SITE, 44) X(XMSG_SERVER, 45) X(XMSG_EMAIL, 46) X(XMSG_KEYPAD, 47) \
    X(XMSG_BANNER, 48) X(XMSG_BANNER2, 49) X(XMSG_WEB, 50) X(XMSG_USERMENU, 51) X(XMSG_ZELNETWORK, 52) \
    X(XMSG_EVENTACTION, 53) X(XMSG_CONFIG, 54) X(XMSG_APPLICATION, 55) X(XMSG_GETUSER, 56) X(XMSG_USER, 57) \
    X(XMSG_USERLIST, 58) X(XMSG_REMUSERLIST, 59) X(XMSG_PORTTEST, 60) X(XMSG_CLIQINSTANCE, 61) \
    X(XMSG_PCCARD_NOTIFY, 62) X(XMSG_NAT_NOTIFY, 63) X(XMSG_NOTIFY, 64) X(XMSG_CMDDEVICE, 65) \
    X(XMSG_ACKNAK, 67) X(XMSG_ERROR, 68)
// clang-format on

/** Message types; values outside the list may arrive and are refused by the dispatcher. */
enum XasMsgType : std::uint32_t {
#define XAS_ENUMERATOR(type, number) type = (number),
    XAS_MSG_TYPES(XAS_ENUMERATOR)
#undef XAS_ENUMERATOR
};

/** What a message asks for (header field `action`). */
enum XasAction : std::uint32_t { XAS_ACTION_SET = 0, XAS_ACTION_GET = 1, XAS_ACTION_RETURN = 2 };

/** The daemon's own number in the header field `sender` ("APP"); the others are listed in
 * message_names.h. */
inline constexpr std::uint32_t XAS_SENDER_APP = 4;

struct XasMsgHeader {
    std::uint32_t msgtype;
    std::uint32_t action;
    std::uint32_t sender;
    std::uint32_t id;      /**< issued by the sender */
    std::uint32_t orig_id; /**< in a reply the `id` it answers, else 0 */
    std::array<std::byte, 100> reserved;
};

inline constexpr std::size_t XAS_MESSAGE_SIZE = 2488;
inline constexpr std::size_t XAS_PAYLOAD_OFFSET = 120;
inline constexpr std::size_t XAS_PAYLOAD_SIZE = XAS_MESSAGE_SIZE - XAS_PAYLOAD_OFFSET;

struct XasMessage {
    XasMsgHeader xH;
    std::array<std::byte, XAS_PAYLOAD_SIZE> payload;
};

static_assert(sizeof(XasMsgHeader) == XAS_PAYLOAD_OFFSET);
static_assert(offsetof(XasMsgHeader, orig_id) == 16);
static_assert(offsetof(XasMessage, payload) == XAS_PAYLOAD_OFFSET);
static_assert(sizeof(XasMessage) == XAS_MESSAGE_SIZE);
static_assert(std::is_trivially_copyable_v<XasMessage>);

/** The payload of `msg`, copied out. */
template <class Payload>
Payload xasReadPayload(const XasMessage &msg)
{
    static_assert(std::is_trivially_copyable_v<Payload> && sizeof(Payload) <= XAS_PAYLOAD_SIZE);
    Payload payload;
    std::memcpy(&payload, msg.payload.data(), sizeof payload);
    return payload;
}

/** Puts `payload` at the start of the payload of `msg`. */
template <class Payload>
void xasWritePayload(XasMessage &msg, const Payload &payload)
{
    static_assert(std::is_trivially_copyable_v<Payload> && sizeof(Payload) <= XAS_PAYLOAD_SIZE);
    std::memcpy(msg.payload.data(), &payload, sizeof payload);
}

/** The value of type T at `Offset` of the record; an offset outside the payload does not compile. */
template <class T, std::size_t Offset>
T xasPayloadValue(const XasMessage &msg)
{
    static_assert(Offset >= XAS_PAYLOAD_OFFSET && Offset + sizeof(T) <= XAS_MESSAGE_SIZE);
    T value;
    std::memcpy(&value, msg.payload.data() + (Offset - XAS_PAYLOAD_OFFSET), sizeof value);
    return value;
}

/** Payload word n: the 32-bit word at offset 120 + 4n. */
template <std::size_t N>
std::uint32_t xasPayloadWord(const XasMessage &msg)
{
    return xasPayloadValue<std::uint32_t, XAS_PAYLOAD_OFFSET + 4 * N>(msg);
}

/** The text of a character field: up to its first NUL or the end of the field, whichever comes first. */
template <std::size_t N>
std::string_view xasFieldText(const char (&field)[N])
{
    return {field, ::strnlen(field, N)};
}

/** The same as a text of its own. */
template <std::size_t N>
std::string xasFieldString(const char (&field)[N])
{
    return std::string{xasFieldText(field)};
}

/** Puts `text` into a zeroed character field, cut so that a terminating NUL remains. */
template <std::size_t N>
void xasSetFieldText(char (&field)[N], std::string_view text)
{
    std::memset(field, 0, N);
    text.copy(field, N - 1);
}

#endif
