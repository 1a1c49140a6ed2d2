/**
 * The global network file: host name, default gateways and the IPv6 switch, as KEY=value lines that the
 * network scripts source. Shared by the host-name and the Ethernet settings.
 */
#ifndef XAS_CONFIG_NETWORK_FILE_H
#define XAS_CONFIG_NETWORK_FILE_H

#include "files/editor.h"
#include "wire/address.h"

#include <cstdint>
#include <netinet/in.h>
#include <string>
#include <string_view>

/** The longest host name that this file takes. */
inline constexpr std::size_t XAS_NETWORK_HOSTNAME_MAX = 65;

/** What to write. */
struct XasNetInfo {
    bool setHostname = false;
    bool setGateway = false; /**< gateways and the IPv6 switch */
    std::string hostname;
    XasIPv4 gateway{};          /**< may be none */
    sockaddr_in6 gatewayIPv6{}; /**< address all zero = none */
    std::uint32_t ipv6Enabled = 0;
};

/**
 * The new text of the file. Lines of the keys to set are replaced, a gateway that is none loses its line; the
 * gateways alone are appended where no line had them.
 */
std::string xasNetCfgText(std::string_view oldText, const XasNetInfo &netInfo);

/** Edits the file, which must exist. (The NIS domain's line in it has an editor of its own,
 * xasEditNetworkCfgFile in auth/nis.h.) */
extern const XasEditor<XasNetInfo> xasEditNetCfgFile;

#endif
