/** XMSG_DNS: the name servers. */
#include "config/dns_payload.h"
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasMsgField FIELDS[] = {
    {.name = "dns1", .place = XAS_PLACE(XasDnsPayload, dns1), .kind = ipAddr, .meaning = "first name server"},
    {.name = "dns2",
     .place = XAS_PLACE(XasDnsPayload, dns2),
     .kind = ipAddr,
     .meaning = "second name server"},
    {.name = "dns3", .place = XAS_PLACE(XasDnsPayload, dns3), .kind = ipAddr, .meaning = "third name server"},
    {.name = "prefer_ipv4",
     .place = XAS_PLACE(XasDnsPayload, prefer_ipv4),
     .kind = flag,
     .meaning = "ask for IPv4 records first"},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_DNS_FIELDS = {.msgtype = XMSG_DNS, .meaning = "name servers", .fields = FIELDS};
