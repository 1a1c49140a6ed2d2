/**
 * The payload of XMSG_ETH: both Ethernet ports, IPv6, gateways, bonding and kernel parameters. It stands on
 * the ground floor because the link watch and the script parameters read it too.
 */
#ifndef XAS_WIRE_ETH_MESSAGE_H
#define XAS_WIRE_ETH_MESSAGE_H

#include "wire/address.h"
#include "wire/field.h"

#include <netinet/in.h>

/** Where a port takes its address from (`XasEthPort::source`). */
enum XasAddressSource : std::uint32_t { XAS_SOURCE_BOOTP = 0, XAS_SOURCE_DHCP = 1, XAS_SOURCE_STATIC = 2 };

/** One Ethernet port. */
struct XasEthPort {
    std::uint32_t marker;  /**< non-zero: the record is filled; the script parameters read it as "in use" */
    std::uint32_t enabled; /**< non-zero: the interface comes up at boot */
    std::uint32_t source;  /**< XasAddressSource */
    XasIPv4 ip;
    XasIPv4 mask;
    unsigned char ipv6[16]; /**< all zero: none */
    std::uint32_t maskv6;   /**< prefix length */
    std::uint32_t mode;     /**< link mode, 0 (auto) to 6 */
    std::uint32_t mtu;
};

inline constexpr unsigned XAS_ETH_PORTS = 2;

struct XasEthPayload {
    XasEthPort ports[XAS_ETH_PORTS]; /**< eth0, eth1 */
    std::uint32_t ipv6_enabled;
    XasIPv4 gateway;
    sockaddr_in6 gateway_ipv6;   /**< address all zero: none */
    std::uint32_t bonding;       /**< 0 none, 1 active-backup, 2 802.3ad, 3 balance-tlb */
    std::uint32_t gw_precedence; /**< which port's DHCP gateway wins: 1, 2, or neither */
    XasIPv4 alt_gateway;
    XasIPv4 ping_ip;
    std::uint8_t ping_ifc; /**< 1 = eth0, else eth1 */
    std::uint8_t ping_delay;
    std::uint8_t ping_failed;
    std::uint32_t timer;    /**< TCP keepalive time */
    std::uint16_t probes;   /**< TCP keepalive probes */
    std::uint16_t interval; /**< TCP keepalive interval */
    std::uint32_t ip_forwarding;
};

namespace xasEthFields {

inline constexpr XasMsgGroup PORTS =
    XAS_GROUP("eth", XasEthPayload, ports, "the ports as people see them; their devices are eth0 and eth1")
        .alwaysUsed();

inline constexpr XasValueName SOURCES[] = {
    {XAS_SOURCE_BOOTP, "bootp"}, {XAS_SOURCE_DHCP, "dhcp"}, {XAS_SOURCE_STATIC, "static"}};

inline constexpr XasValueName LINK_MODES[] = {
    {0, "auto"}, {1, "10mbit-half"}, {2, "100mbit-half"}, {3, "10mbit-full"}, {4, "100mbit-full"}};

inline constexpr XasValueName BONDING_MODES[] = {
    {0, "none"}, {1, "active-backup"}, {2, "802.3ad"}, {3, "balance-tlb"}};

inline constexpr XasValueName GATEWAY_PRECEDENCES[] = {{0, "none"}, {1, "eth1"}, {2, "eth2"}};

inline constexpr XasValueName PING_PORTS[] = {{1, "eth1"}, {2, "eth2"}};

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD_OF(XasEthPayload, ports[0], marker, flag, "the port's record is filled: the port is in use")
        .byDefault("yes")
        .in(PORTS),
    XAS_FIELD_OF(XasEthPayload, ports[0], enabled, flag, "the interface comes up at boot")
        .byDefault("yes")
        .in(PORTS),
    XAS_FIELD_OF(XasEthPayload, ports[0], source, choice, "where its address comes from")
        .of(SOURCES)
        .byDefault("dhcp")
        .in(PORTS),
    XAS_FIELD_OF(XasEthPayload, ports[0], ip, ipv4, "static address").in(PORTS),
    XAS_FIELD_OF(XasEthPayload, ports[0], mask, ipv4, "netmask").in(PORTS),
    XAS_FIELD_OF(XasEthPayload, ports[0], ipv6, ipv6, "static IPv6 address").in(PORTS),
    XAS_FIELD_OF(XasEthPayload, ports[0], maskv6, number, "IPv6 prefix length").within(0, 128).in(PORTS),
    XAS_FIELD_OF(XasEthPayload, ports[0], mode, choice, "speed and duplex of the link")
        .of(LINK_MODES)
        .within(0, 6)
        .in(PORTS),
    XAS_FIELD_OF(XasEthPayload, ports[0], mtu, number, "largest packet in bytes").byDefault("1500").in(PORTS),
    XAS_FIELD(XasEthPayload, ipv6_enabled, flag, "IPv6 is on"),
    XAS_FIELD(XasEthPayload, gateway, ipv4, "IPv4 default gateway").orNone().byDefault("none"),
    XAS_FIELD(XasEthPayload, gateway_ipv6, sockaddr6, "IPv6 default gateway"),
    XAS_FIELD(XasEthPayload, bonding, choice, "how the two ports are bonded into one").of(BONDING_MODES),
    XAS_FIELD(XasEthPayload, gw_precedence, choice, "the port whose DHCP gateway wins")
        .of(GATEWAY_PRECEDENCES),
    XAS_FIELD(XasEthPayload, alt_gateway, ipv4, "gateway to use when the default one is dead"),
    XAS_FIELD(XasEthPayload, ping_ip, ipv4, "address that is pinged to find out whether the gateway lives"),
    XAS_FIELD(XasEthPayload, ping_ifc, choice, "port that the ping leaves by")
        .of(PING_PORTS)
        .byDefault("eth1"),
    XAS_FIELD(XasEthPayload, ping_delay, number, "delay between pings"),
    XAS_FIELD(XasEthPayload, ping_failed, number, "failed pings after which the gateway counts as dead"),
    XAS_FIELD(XasEthPayload, timer, number, "TCP keepalive time in seconds").byDefault("7200"),
    XAS_FIELD(XasEthPayload, probes, number, "TCP keepalive probes").byDefault("9"),
    XAS_FIELD(XasEthPayload, interval, number, "TCP keepalive interval in seconds").byDefault("75"),
    XAS_FIELD(XasEthPayload, ip_forwarding, flag, "packets are forwarded between the ports"),
};
static_assert(xasFieldsAreSound<XasEthPayload>(FIELDS));

} // namespace xasEthFields

inline constexpr XasMsgFields XAS_ETH_MESSAGE = {.msgtype = XMSG_ETH,
                                                 .meaning =
                                                     "Ethernet ports, gateways, bonding, kernel parameters",
                                                 .fields = xasEthFields::FIELDS};

#endif
