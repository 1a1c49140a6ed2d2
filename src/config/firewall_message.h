/**
 * The payload of XMSG_FIREWALL: the switch of the IP filter, and which services are open to everybody. The
 * filter reads the first two words, the firewall settings the rest.
 */
#ifndef XAS_CONFIG_FIREWALL_MESSAGE_H
#define XAS_CONFIG_FIREWALL_MESSAGE_H

#include "wire/field.h"

/** How a refused packet is answered (`XasFirewallPayload::reject_method`); other values are refused. */
enum XasRejectMethod : std::uint32_t { XAS_METHOD_REJECT = 0, XAS_METHOD_DROP = 1 };

struct XasFirewallPayload {
    std::uint32_t enabled;       /**< non-zero: the IP filter is on */
    std::int32_t test_time;      /**< minutes after which it is switched off again; 0 or below: never */
    std::uint32_t reject_method; /**< XasRejectMethod */
    std::uint32_t invisible;     /**< non-zero: pings are not answered */
    std::uint32_t ssh;           /**< non-zero: open, as for all below */
    std::uint32_t telnet;
    std::uint32_t www;
    std::uint32_t https;
    std::uint32_t smb;
};

namespace xasFirewallFields {

inline constexpr XasValueName REJECT_METHODS[] = {{XAS_METHOD_REJECT, "reject"}, {XAS_METHOD_DROP, "drop"}};

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD(XasFirewallPayload, enabled, flag, "the IP filter is on").byDefault("yes"),
    XAS_FIELD(XasFirewallPayload, test_time, integer,
              "minutes after which it goes off again by itself; 0 or less: never"),
    XAS_FIELD(XasFirewallPayload, reject_method, choice, "how a refused packet is answered")
        .of(REJECT_METHODS),
    XAS_FIELD(XasFirewallPayload, invisible, flag, "pings are not answered"),
    XAS_FIELD(XasFirewallPayload, ssh, flag, "SSH is open"),
    XAS_FIELD(XasFirewallPayload, telnet, flag, "telnet is open"),
    XAS_FIELD(XasFirewallPayload, www, flag, "HTTP is open"),
    XAS_FIELD(XasFirewallPayload, https, flag, "HTTPS is open"),
    XAS_FIELD(XasFirewallPayload, smb, flag, "SMB networking is open"),
};
static_assert(xasFieldsAreSound<XasFirewallPayload>(FIELDS));

} // namespace xasFirewallFields

inline constexpr XasMsgFields XAS_FIREWALL_MESSAGE = {.msgtype = XMSG_FIREWALL,
                                                      .meaning = "IP filter switch and open services",
                                                      .fields = xasFirewallFields::FIELDS};

#endif
