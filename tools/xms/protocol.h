/**
 * The configuration server's half of the protocol, without queues, sockets, files or a clock of its own.
 *
 * A setting goes out as "Set" from XMS with a fresh id and waits for the XMSG_ACKNAK whose orig_id is that
 * id. Of what the daemon starts itself, a "Get" is answered with the stored record, a "Set" is stored and
 * acknowledged, and events (XMSG_NOTIFY) are only shown.
 */
#ifndef XAS_XMS_PROTOCOL_H
#define XAS_XMS_PROTOCOL_H

#include "wire/message.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using XmsClock = std::chrono::steady_clock;

/** The sender number of the configuration server. */
inline constexpr std::uint32_t XMS_SENDER = 1;

/** A setting on its way. */
struct XmsPending {
    XasMessage setting;                       /**< as sent, with its id */
    int client = 0;                           /**< who asked for it; 0 when nobody waits any more */
    XmsClock::time_point deadline;            /**< until when the client waits */
    std::optional<XmsClock::time_point> sent; /**< when it went into the queue */
};

/** The server's memory of the protocol. */
struct XmsProtocol {
    std::uint32_t nextId = 1;
    std::vector<XmsPending> pending;
};

/** What a record from the daemon is to the server. */
enum class XmsArrival : std::uint8_t {
    acknowledgement, /**< XMSG_ACKNAK: the answer to a setting */
    request,         /**< "Get": wants the stored record */
    report,          /**< "Set": tells a setting that the daemon changed itself */
    event,           /**< is only shown */
};

XmsArrival xmsArrivalOf(const XasMessage &record);

/** True when the daemon acknowledges messages of this type. */
bool xmsIsAnswered(std::uint32_t msgtype);

/** True when the server keeps settings of this type in its store. */
bool xmsIsKept(std::uint32_t msgtype);

/**
 * Enters a setting that `client` asked for: fills in its header and, when it is answered at all, remembers it
 * until `deadline`. Returns it as it is to be sent.
 */
XasMessage xmsEnterSetting(XmsProtocol &protocol, XasMessage setting, int client,
                           XmsClock::time_point deadline);

/** Notes when the setting with this id went into the queue. */
void xmsMarkSent(XmsProtocol &protocol, std::uint32_t id, XmsClock::time_point now);

/** Takes out the setting that `acknowledgement` answers, or none. */
std::optional<XmsPending> xmsTakeAnswered(XmsProtocol &protocol, const XasMessage &acknowledgement);

/**
 * The settings whose time is up and that somebody waits for or that were never sent. One that was sent stays
 * pending with nobody waiting, so that a late acknowledgement still counts; one that was not is taken out,
 * and its sender must withdraw it.
 */
std::vector<XmsPending> xmsExpire(XmsProtocol &protocol, XmsClock::time_point now);

/** Nobody waits any more for the settings of a client that has gone. */
void xmsForgetClient(XmsProtocol &protocol, int client);

/** The answer to a "Get": the stored record, or a zero payload when nothing is stored. */
XasMessage xmsAnswerRequest(XmsProtocol &protocol, const XasMessage &request,
                            const std::optional<XasMessage> &stored);

/**
 * What a "Set" from the daemon leaves in the store, `stored` being there so far: the report, but of the
 * firewall the daemon tells the filter's switch and test time alone, and all else stays as it is stored.
 */
XasMessage xmsCompleteReport(const XasMessage &report, const std::optional<XasMessage> &stored);

/** The answer to a "Set" from the daemon: positive when `problem` is empty, else it is the reason. */
XasMessage xmsAnswerReport(XmsProtocol &protocol, const XasMessage &report, std::string_view problem);

#endif
