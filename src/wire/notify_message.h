/** The two events that the daemon never answers: XMSG_NOTIFY (link changes) and XMSG_NAT_NOTIFY. */
#ifndef XAS_WIRE_NOTIFY_MESSAGE_H
#define XAS_WIRE_NOTIFY_MESSAGE_H

#include "wire/address.h"
#include "wire/field.h"

inline constexpr std::uint32_t XAS_LINK_UP = 2;
inline constexpr std::uint32_t XAS_LINK_DOWN = 3;

/** The payload of XMSG_NOTIFY: a link of the appliance went up or down. */
struct XasNotifyPayload {
    std::uint32_t code; /**< XAS_LINK_UP or XAS_LINK_DOWN */
    std::uint32_t reserved[3];
    char text[XAS_PAYLOAD_SIZE - 16]; /**< begins with the port's display name, "Eth1" or "Eth2" */
};

/** The payload of XMSG_NAT_NOTIFY: address translation for one address is wanted or no longer wanted. */
struct XasNatNotifyPayload {
    std::uint32_t add;
    XasIPv4 address;
};

namespace xasNotifyFields {

inline constexpr XasValueName LINK_CHANGES[] = {{XAS_LINK_UP, "link-up"}, {XAS_LINK_DOWN, "link-down"}};

inline constexpr XasMsgField NOTIFY_FIELDS[] = {
    XAS_FIELD(XasNotifyPayload, code, choice, "what happened").of(LINK_CHANGES).byDefault("link-up"),
    XAS_FIELD(XasNotifyPayload, text, text,
              "begins with the port's display name, Eth1 or Eth2: \"Eth1 Link Up\""),
};
static_assert(xasFieldsAreSound<XasNotifyPayload>(NOTIFY_FIELDS, {XAS_PLACE(XasNotifyPayload, reserved)}));

inline constexpr XasMsgField NAT_NOTIFY_FIELDS[] = {
    XAS_FIELD(XasNatNotifyPayload, add, flag, "yes: add the address, no: delete it").byDefault("yes"),
    XAS_FIELD(XasNatNotifyPayload, address, ipv4, "the address to translate"),
};
static_assert(xasFieldsAreSound<XasNatNotifyPayload>(NAT_NOTIFY_FIELDS));

} // namespace xasNotifyFields

inline constexpr XasMsgFields XAS_NOTIFY_MESSAGE = {.msgtype = XMSG_NOTIFY,
                                                    .meaning =
                                                        "an Ethernet link went up or down (never answered)",
                                                    .fields = xasNotifyFields::NOTIFY_FIELDS,
                                                    .stored = false,
                                                    .answered = false};

inline constexpr XasMsgFields XAS_NAT_NOTIFY_MESSAGE = {.msgtype = XMSG_NAT_NOTIFY,
                                                        .meaning =
                                                            "address translation changes (never answered)",
                                                        .fields = xasNotifyFields::NAT_NOTIFY_FIELDS,
                                                        .stored = false,
                                                        .answered = false};

#endif
