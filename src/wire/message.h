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

/** Message types; values outside the list may arrive and are refused by the dispatcher. 66 has no name. */
enum XasMsgType : std::uint32_t {
    XMSG_ETH = 1,
    XMSG_HOSTNAME,
    XMSG_DNS,
    XMSG_SECURITY,
    XMSG_FIREWALL,
    XMSG_IPFILTER_SET,
    XMSG_IPFILTER_ASSIGN,
    XMSG_ROUTING,
    XMSG_VPN,
    XMSG_TIMEZONE,
    XMSG_NTP,
    XMSG_SYSLOG,
    XMSG_AUDITLOG,
    XMSG_SSH,
    XMSG_TELNET,
    XMSG_SNMP,
    XMSG_SMTP,
    XMSG_PHONEHOME,
    XMSG_NFS,
    XMSG_CIFS,
    XMSG_AUTH,
    XMSG_LOCALUSERS,
    XMSG_PWDHISTORY,
    XMSG_NIS,
    XMSG_LDAP,
    XMSG_RADIUS,
    XMSG_SECURID,
    XMSG_KERBEROS,
    XMSG_TACACS,
    XMSG_REMOTEUSERS,
    XMSG_GROUPS,
    XMSG_TERMPORT,
    XMSG_DP_GLOBAL,
    XMSG_DP_DATA,
    XMSG_DP_PPP,
    XMSG_DP_LOGGING,
    XMSG_DP_GENERAL,
    XMSG_CONNECT,
    XMSG_PCCARD,
    XMSG_XPB_PWR,
    XMSG_XPB_485,
    XMSG_RPM,
    XMSG_HOSTLIST,
    XMSG_SITE,
    XMSG_SERVER,
    XMSG_EMAIL,
    XMSG_KEYPAD,
    XMSG_BANNER,
    XMSG_BANNER2,
    XMSG_WEB,
    XMSG_USERMENU,
    XMSG_ZELNETWORK,
    XMSG_EVENTACTION,
    XMSG_CONFIG,
    XMSG_APPLICATION,
    XMSG_GETUSER,
    XMSG_USER,
    XMSG_USERLIST,
    XMSG_REMUSERLIST,
    XMSG_PORTTEST,
    XMSG_CLIQINSTANCE,
    XMSG_PCCARD_NOTIFY,
    XMSG_NAT_NOTIFY,
    XMSG_NOTIFY,
    XMSG_CMDDEVICE,
    XMSG_ACKNAK = 67,
    XMSG_ERROR = 68,
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
