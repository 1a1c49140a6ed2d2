/** XMSG_ETH: both Ethernet ports, gateways, bonding and kernel parameters. */
#include "msg/fields_subjects.h"
#include "wire/eth_payload.h"

namespace {

using enum XasFieldKind;

constexpr XasMsgGroup PORTS = {.name = "eth",
                               .place = XAS_PLACE(XasEthPayload, ports),
                               .stride = sizeof(XasEthPort),
                               .fixed = true,
                               .meaning = "the ports as people see them; their devices are eth0 and eth1"};

constexpr XasValueName SOURCES[] = {
    {XAS_SOURCE_BOOTP, "bootp"}, {XAS_SOURCE_DHCP, "dhcp"}, {XAS_SOURCE_STATIC, "static"}};

constexpr XasValueName LINK_MODES[] = {
    {0, "auto"}, {1, "10mbit-half"}, {2, "100mbit-half"}, {3, "10mbit-full"}, {4, "100mbit-full"}};
constexpr XasRange LINK_MODE_NUMBERS = {0, 6};

constexpr XasValueName BONDING_MODES[] = {
    {0, "none"}, {1, "active-backup"}, {2, "802.3ad"}, {3, "balance-tlb"}};

constexpr XasValueName GATEWAY_PRECEDENCES[] = {{0, "none"}, {1, "eth1"}, {2, "eth2"}};

constexpr XasValueName PING_PORTS[] = {{1, "eth1"}, {2, "eth2"}};

constexpr XasMsgField FIELDS[] = {
    {.name = "marker",
     .place = XAS_PLACE(XasEthPayload, ports[0].marker),
     .kind = flag,
     .meaning = "the port's record is filled: the port is in use",
     .initial = "yes",
     .group = &PORTS},
    {.name = "enabled",
     .place = XAS_PLACE(XasEthPayload, ports[0].enabled),
     .kind = flag,
     .meaning = "the interface comes up at boot",
     .initial = "yes",
     .group = &PORTS},
    {.name = "source",
     .place = XAS_PLACE(XasEthPayload, ports[0].source),
     .kind = choice,
     .meaning = "where its address comes from",
     .names = SOURCES,
     .initial = "dhcp",
     .group = &PORTS},
    {.name = "ip",
     .place = XAS_PLACE(XasEthPayload, ports[0].ip),
     .kind = ipv4,
     .meaning = "static address",
     .group = &PORTS},
    {.name = "mask",
     .place = XAS_PLACE(XasEthPayload, ports[0].mask),
     .kind = ipv4,
     .meaning = "netmask",
     .group = &PORTS},
    {.name = "ipv6",
     .place = XAS_PLACE(XasEthPayload, ports[0].ipv6),
     .kind = ipv6,
     .meaning = "static IPv6 address",
     .group = &PORTS},
    {.name = "maskv6",
     .place = XAS_PLACE(XasEthPayload, ports[0].maskv6),
     .kind = number,
     .meaning = "IPv6 prefix length",
     .range = XasRange{0, 128},
     .group = &PORTS},
    {.name = "mode",
     .place = XAS_PLACE(XasEthPayload, ports[0].mode),
     .kind = choice,
     .meaning = "speed and duplex of the link",
     .names = LINK_MODES,
     .range = LINK_MODE_NUMBERS,
     .group = &PORTS},
    {.name = "mtu",
     .place = XAS_PLACE(XasEthPayload, ports[0].mtu),
     .kind = number,
     .meaning = "largest packet in bytes",
     .initial = "1500",
     .group = &PORTS},
    {.name = "ipv6_enabled",
     .place = XAS_PLACE(XasEthPayload, ipv6_enabled),
     .kind = flag,
     .meaning = "IPv6 is on"},
    {.name = "gateway",
     .place = XAS_PLACE(XasEthPayload, gateway),
     .kind = ipv4,
     .meaning = "IPv4 default gateway",
     .none = true,
     .initial = "none"},
    {.name = "gateway_ipv6",
     .place = XAS_PLACE(XasEthPayload, gateway_ipv6),
     .kind = sockaddr6,
     .meaning = "IPv6 default gateway"},
    {.name = "bonding",
     .place = XAS_PLACE(XasEthPayload, bonding),
     .kind = choice,
     .meaning = "how the two ports are bonded into one",
     .names = BONDING_MODES},
    {.name = "gw_precedence",
     .place = XAS_PLACE(XasEthPayload, gw_precedence),
     .kind = choice,
     .meaning = "the port whose DHCP gateway wins",
     .names = GATEWAY_PRECEDENCES},
    {.name = "alt_gateway",
     .place = XAS_PLACE(XasEthPayload, alt_gateway),
     .kind = ipv4,
     .meaning = "gateway to use when the default one is dead"},
    {.name = "ping_ip",
     .place = XAS_PLACE(XasEthPayload, ping_ip),
     .kind = ipv4,
     .meaning = "address that is pinged to find out whether the gateway lives"},
    {.name = "ping_ifc",
     .place = XAS_PLACE(XasEthPayload, ping_ifc),
     .kind = choice,
     .meaning = "port that the ping leaves by",
     .names = PING_PORTS,
     .initial = "eth1"},
    {.name = "ping_delay",
     .place = XAS_PLACE(XasEthPayload, ping_delay),
     .kind = number,
     .meaning = "delay between pings"},
    {.name = "ping_failed",
     .place = XAS_PLACE(XasEthPayload, ping_failed),
     .kind = number,
     .meaning = "failed pings after which the gateway counts as dead"},
    {.name = "timer",
     .place = XAS_PLACE(XasEthPayload, timer),
     .kind = number,
     .meaning = "TCP keepalive time in seconds",
     .initial = "7200"},
    {.name = "probes",
     .place = XAS_PLACE(XasEthPayload, probes),
     .kind = number,
     .meaning = "TCP keepalive probes",
     .initial = "9"},
    {.name = "interval",
     .place = XAS_PLACE(XasEthPayload, interval),
     .kind = number,
     .meaning = "TCP keepalive interval in seconds",
     .initial = "75"},
    {.name = "ip_forwarding",
     .place = XAS_PLACE(XasEthPayload, ip_forwarding),
     .kind = flag,
     .meaning = "packets are forwarded between the ports"},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_ETH_FIELDS = {
    .msgtype = XMSG_ETH, .meaning = "Ethernet ports, gateways, bonding, kernel parameters", .fields = FIELDS};
