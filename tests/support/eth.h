/** Ethernet settings as tests build them. */
#ifndef XAS_TEST_SUPPORT_ETH_H
#define XAS_TEST_SUPPORT_ETH_H

#include "wire/eth_message.h"

#include <arpa/inet.h>
#include <array>
#include <random>
#include <stdexcept>

/** The address of a dotted text. */
inline XasIPv4 xasTestIPv4(const char *text)
{
    in_addr address{};
    if (::inet_pton(AF_INET, text, &address) != 1)
        throw std::invalid_argument{text};
    return {address.s_addr};
}

/** Fills 16 bytes with the address of a text. */
inline void xasTestIPv6(const char *text, void *address)
{
    if (::inet_pton(AF_INET6, text, address) != 1)
        throw std::invalid_argument{text};
}

/** Two filled and enabled ports with static addresses, no bonding, IPv6 on, an IPv4 gateway and none for
 * IPv6.
 */
inline XasEthPayload xasTestEth()
{
    XasEthPayload eth{};
    eth.ports[0] = {.marker = 1,
                    .enabled = 1,
                    .source = XAS_SOURCE_STATIC,
                    .ip = xasTestIPv4("192.168.1.10"),
                    .mask = xasTestIPv4("255.255.255.0"),
                    .ipv6 = {},
                    .maskv6 = 0,
                    .mode = 0,
                    .mtu = 1500};
    eth.ports[1] = eth.ports[0];
    eth.ports[1].ip = xasTestIPv4("172.16.37.5");
    eth.ports[1].mask = xasTestIPv4("255.255.240.0");
    eth.ports[1].mode = 4;
    eth.ports[1].mtu = 9000;
    eth.ipv6_enabled = 1;
    eth.gateway = xasTestIPv4("192.168.1.1");
    eth.gw_precedence = 2;
    eth.alt_gateway = xasTestIPv4("192.168.1.2");
    eth.ping_ip = xasTestIPv4("192.168.1.3");
    eth.ping_ifc = 1;
    eth.ping_delay = 10;
    eth.ping_failed = 255;
    eth.timer = 7200;
    eth.probes = 9;
    eth.interval = 75;
    eth.ip_forwarding = 1;
    return eth;
}

/** A port record of random bytes; three of four have a valid address source, so that they come further. */
inline XasEthPort xasTestRandomPort(std::mt19937 &random)
{
    std::array<unsigned char, sizeof(XasEthPort)> bytes{};
    for (unsigned char &byte : bytes)
        byte = static_cast<unsigned char>(random());
    XasEthPort port{};
    std::memcpy(&port, bytes.data(), sizeof port);
    if (random() % 4 != 0)
        port.source %= 3;
    return port;
}

#endif
