/** Small functions that everybody uses: addresses, file tests, directories, the stored Ethernet settings. */
#ifndef XAS_CORE_UTILS_H
#define XAS_CORE_UTILS_H

#include "wire/address.h"
#include "wire/message.h"

#include <cstdint>
#include <string>
#include <string_view>

/** `address` AND `mask`. */
XasIPv4 xasNetworkAddr(XasIPv4 address, XasIPv4 mask);

/** (`address` AND `mask`) OR NOT `mask`. */
XasIPv4 xasBroadcastAddr(XasIPv4 address, XasIPv4 mask);

/** Dotted text of an IPv4 address. */
std::string xasIPv4ToStr(XasIPv4 address);

/** Text of a 16-byte IPv6 address. "<invalid>", logged, when there is none. */
std::string xasIPv6ToStr(const unsigned char *address);

/** "<address>/<prefix>", at most 49 characters. "<invalid>", logged, when there is no text. */
std::string xasIPv6PrefixToStr(const unsigned char *address, std::uint32_t prefix);

/** The first IPv4 address of a host name; none when it does not resolve. Signals are served meanwhile. */
XasIPv4 xasHostByName(const std::string &name);

/** False when there is no account of this login; true when there is, or when nobody could ask. Signals are
 * served meanwhile. */
[[nodiscard]] bool xasHasAccount(const std::string &login);

/** The name, the IPv4 text or the IPv6 text of a host record. */
std::string xasHostToStr(const XasHostAddr &host);

/** True when a host record holds an address (0.0.0.0 is one) or a name that is not empty. */
[[nodiscard]] bool xasIsHostGiven(const XasHostAddr &host);

/** 1 when `path` is a regular file, links followed. */
[[nodiscard]] int xasIsRegularFile(const char *path);

/** 1 when `path` is a directory, links followed. */
[[nodiscard]] int xasIsDirectory(const char *path);

/** Creates every missing directory along an absolute path, mode 0755. Returns 0; 1 after logging the one that
 * cannot be made. A relative path is logged, creates nothing and counts as done. */
[[nodiscard]] int xasMakeDirPath(const char *path);

/** `str` without the blanks and tabs at both ends; what is left begins where it did in `str`. */
std::string_view xasTrimString(std::string_view str);

/** 1 when the first word of a command line is a file that is no directory and its owner may execute it. */
[[nodiscard]] int xasIsExecutable(std::string_view commandLine);

/** Fetches the stored XMSG_ETH record. Returns 0, or 1 after logging. */
[[nodiscard]] int xasGetEthCfg(XasMessage &record);

/** `enabled` and `source` of a port (0 = eth0, 1 = eth1) as stored. Returns 0, or 1 when it cannot be had. */
[[nodiscard]] int xasGetEthPortState(unsigned port, std::uint32_t &enabled, std::uint32_t &source);

/** The link mode of a port as stored. Returns 0, or 1 when it cannot be had. */
[[nodiscard]] int xasGetEthPortMode(unsigned port, std::uint32_t &mode);

/** The bonding driver's options for a bonding mode. Returns 0; 1 for a mode without, `options` then empty. */
[[nodiscard]] int xasGetBondingOptions(std::uint32_t mode, std::string &options);

#endif
