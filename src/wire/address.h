/** The two address records that appear inside payloads. IPv4 values are in network byte order. */
#ifndef XAS_WIRE_ADDRESS_H
#define XAS_WIRE_ADDRESS_H

#include <cstddef>
#include <cstdint>

/** A host by name or address. */
struct XasHostAddr {
    std::uint32_t is_name; /**< non-zero: `value` holds a NUL-terminated host name */
    std::uint32_t is_ipv6; /**< for an address: `value` holds 16 IPv6 bytes, else 4 IPv4 bytes */
    char value[68];
};

static_assert(sizeof(XasHostAddr) == 76 && offsetof(XasHostAddr, value) == 8);

/** An IPv4 or IPv6 address; all zero means unset. */
struct XasIpAddr {
    std::uint32_t is_ipv6;
    unsigned char address[16]; /**< an IPv4 address stands in the first four bytes */
};

static_assert(sizeof(XasIpAddr) == 20);

/** The IPv4 address that stands for "none". */
inline constexpr std::uint32_t XAS_NO_IPV4 = 0xFFFFFFFFU;

#endif
