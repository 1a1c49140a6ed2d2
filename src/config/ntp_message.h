/** The payload of XMSG_NTP: whether and from whom the appliance takes its time. */
#ifndef XAS_CONFIG_NTP_MESSAGE_H
#define XAS_CONFIG_NTP_MESSAGE_H

#include "wire/address.h"
#include "wire/field.h"

/** How the time is kept (`XasNtpPayload::sync`); any other value is neither of the two. */
enum XasNtpSync : std::uint32_t { XAS_NTP_BROADCAST = 0, XAS_NTP_POLL = 1 };

/** Which servers are polled (`XasNtpPayload::poll`). */
enum XasNtpPolling : std::uint32_t { XAS_NTP_THREE_SERVERS = 0, XAS_NTP_ONE_SERVER = 1 };

inline constexpr std::size_t XAS_NTP_SERVERS = 3;

struct XasNtpPayload {
    std::uint32_t enabled;                /**< non-zero: the NTP daemon runs */
    std::uint32_t sync;                   /**< XasNtpSync */
    std::uint32_t poll;                   /**< XasNtpPolling */
    XasHostAddr servers[XAS_NTP_SERVERS]; /**< of XAS_NTP_THREE_SERVERS */
    XasHostAddr single;                   /**< of XAS_NTP_ONE_SERVER */
};

namespace xasNtpFields {

inline constexpr XasMsgGroup SERVERS =
    XAS_GROUP("server", XasNtpPayload, servers, "the servers of three-servers").alwaysUsed();

inline constexpr XasValueName SYNCS[] = {
    {XAS_NTP_BROADCAST, "broadcast"}, {XAS_NTP_POLL, "poll"}, {2, "neither"}};

inline constexpr XasValueName POLLINGS[] = {{XAS_NTP_THREE_SERVERS, "three-servers"},
                                            {XAS_NTP_ONE_SERVER, "one-server"}};

template <std::uint32_t Polling>
bool polls(const XasMessage &msg, std::size_t /*element*/)
{
    const auto ntp = xasReadPayload<XasNtpPayload>(msg);
    return ntp.sync == XAS_NTP_POLL && ntp.poll == Polling;
}

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD(XasNtpPayload, enabled, flag, "the NTP daemon runs").byDefault("yes"),
    XAS_FIELD(XasNtpPayload, sync, choice, "how the time comes: from broadcasts or by polling servers")
        .of(SYNCS)
        .byDefault("poll"),
    XAS_FIELD(XasNtpPayload, poll, choice, "which servers are polled").of(POLLINGS),
    XAS_FIELD_AS("", XasNtpPayload, servers[0], hostAddr, "a server of three-servers")
        .byDefault("none")
        .readIf(polls<XAS_NTP_THREE_SERVERS>)
        .in(SERVERS),
    XAS_FIELD(XasNtpPayload, single, hostAddr, "the server of one-server")
        .byDefault("none")
        .readIf(polls<XAS_NTP_ONE_SERVER>),
};
static_assert(xasFieldsAreSound<XasNtpPayload>(FIELDS));

} // namespace xasNtpFields

inline constexpr XasMsgFields XAS_NTP_MESSAGE = {
    .msgtype = XMSG_NTP, .meaning = "network time", .fields = xasNtpFields::FIELDS};

#endif
