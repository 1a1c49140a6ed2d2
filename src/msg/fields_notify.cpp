/** The two events that the daemon never answers: XMSG_NOTIFY (link changes) and XMSG_NAT_NOTIFY. */
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasValueName LINK_CHANGES[] = {{XAS_LINK_UP, "link-up"}, {XAS_LINK_DOWN, "link-down"}};

constexpr XasMsgField NOTIFY_FIELDS[] = {
    {.name = "code",
     .place = XAS_PLACE(XasNotifyPayload, code),
     .kind = choice,
     .meaning = "what happened",
     .names = LINK_CHANGES,
     .initial = "link-up"},
    {.name = "text",
     .place = XAS_PLACE(XasNotifyPayload, text),
     .kind = text,
     .meaning = "begins with the port's display name, Eth1 or Eth2: \"Eth1 Link Up\""},
};
static_assert(xasMsgFieldsAreSound(NOTIFY_FIELDS));

/** The payload of XMSG_NAT_NOTIFY: address translation for one address is wanted or no longer wanted. */
struct XasNatNotifyPayload {
    std::uint32_t add;
    std::uint32_t address;
};
static_assert(offsetof(XasNatNotifyPayload, address) + XAS_PAYLOAD_OFFSET == 124);

constexpr XasMsgField NAT_NOTIFY_FIELDS[] = {
    {.name = "add",
     .place = XAS_PLACE(XasNatNotifyPayload, add),
     .kind = flag,
     .meaning = "yes: add the address, no: delete it",
     .initial = "yes"},
    {.name = "address",
     .place = XAS_PLACE(XasNatNotifyPayload, address),
     .kind = ipv4,
     .meaning = "the address to translate"},
};
static_assert(xasMsgFieldsAreSound(NAT_NOTIFY_FIELDS));

} // namespace

const XasMsgFields XAS_NOTIFY_FIELDS = {.msgtype = XMSG_NOTIFY,
                                        .meaning = "an Ethernet link went up or down (never answered)",
                                        .fields = NOTIFY_FIELDS,
                                        .stored = false,
                                        .answered = false};

const XasMsgFields XAS_NAT_NOTIFY_FIELDS = {.msgtype = XMSG_NAT_NOTIFY,
                                            .meaning = "address translation changes (never answered)",
                                            .fields = NAT_NOTIFY_FIELDS,
                                            .stored = false,
                                            .answered = false};
