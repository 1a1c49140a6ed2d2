/** XMSG_FIREWALL: the switch of the IP filter, and the services that are open to everybody. */
#include "config/firewall_payload.h"
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasValueName REJECT_METHODS[] = {{XAS_METHOD_REJECT, "reject"}, {XAS_METHOD_DROP, "drop"}};

constexpr XasMsgField FIELDS[] = {
    {.name = "enabled",
     .place = XAS_PLACE(XasFirewallPayload, enabled),
     .kind = flag,
     .meaning = "the IP filter is on",
     .initial = "yes"},
    {.name = "test_time",
     .place = XAS_PLACE(XasFirewallPayload, test_time),
     .kind = integer,
     .meaning = "minutes after which it goes off again by itself; 0 or less: never"},
    {.name = "reject_method",
     .place = XAS_PLACE(XasFirewallPayload, reject_method),
     .kind = choice,
     .meaning = "how a refused packet is answered",
     .names = REJECT_METHODS},
    {.name = "invisible",
     .place = XAS_PLACE(XasFirewallPayload, invisible),
     .kind = flag,
     .meaning = "pings are not answered"},
    {.name = "ssh", .place = XAS_PLACE(XasFirewallPayload, ssh), .kind = flag, .meaning = "SSH is open"},
    {.name = "telnet",
     .place = XAS_PLACE(XasFirewallPayload, telnet),
     .kind = flag,
     .meaning = "telnet is open"},
    {.name = "www", .place = XAS_PLACE(XasFirewallPayload, www), .kind = flag, .meaning = "HTTP is open"},
    {.name = "https",
     .place = XAS_PLACE(XasFirewallPayload, https),
     .kind = flag,
     .meaning = "HTTPS is open"},
    {.name = "smb",
     .place = XAS_PLACE(XasFirewallPayload, smb),
     .kind = flag,
     .meaning = "SMB networking is open"},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_FIREWALL_FIELDS = {
    .msgtype = XMSG_FIREWALL, .meaning = "IP filter switch and open services", .fields = FIELDS};
