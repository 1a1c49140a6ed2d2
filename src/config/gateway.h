/**
 * Gateways beside the default one: which port's DHCP gateway wins, and the alternate gateway that takes over
 * when an address stops answering pings. Both files are KEY=value lines that the network scripts source.
 */
#ifndef XAS_CONFIG_GATEWAY_H
#define XAS_CONFIG_GATEWAY_H

#include "core/reply.h"

#include <cstdint>
#include <string>
#include <string_view>

/** The dead-gateway detection. IPv4 addresses in network byte order. */
struct XasAltGateway {
    std::uint32_t gateway;
    std::uint32_t pingAddress;
    std::uint8_t pingInterface; /**< 1 = eth0, else eth1 */
    std::uint8_t pingDelay;     /**< seconds */
    std::uint8_t pingFailures;  /**< this many unanswered pings in a row make the gateway dead */
};

/** The whole precedence file: port 1, port 2, or 0 for any other value. */
std::string xasGWPrecText(std::uint32_t precedence);

/** The new text of the alternate-gateway file: the lines of its keys replaced, missing ones not added. */
std::string xasAltGWText(std::string_view oldText, const XasAltGateway &altGateway);

/** The editors: each returns 0, or 1 with the failure in `reply`. The files must exist. */
int xasEditGWPrecFile(const char *cfgFileName, std::uint32_t precedence, XasReplyStatus *reply);
int xasEditAltGWFile(const char *cfgFileName, const XasAltGateway &altGateway, XasReplyStatus *reply);

#endif
