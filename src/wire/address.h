/** The addresses that appear inside payloads. */
#ifndef XAS_WIRE_ADDRESS_H
#define XAS_WIRE_ADDRESS_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

/** An IPv4 address. */
struct XasIPv4 {
    std::uint32_t bits; /**< in network byte order */

    [[nodiscard]] constexpr bool isNone() const { return bits == 0xFFFFFFFFU; } /**< 255.255.255.255 */
    [[nodiscard]] constexpr bool isUnset() const { return bits == 0; }          /**< 0.0.0.0 */
    friend constexpr bool operator==(const XasIPv4 &, const XasIPv4 &) = default;
};

static_assert(sizeof(XasIPv4) == sizeof(std::uint32_t) && std::is_trivially_copyable_v<XasIPv4>);

/** The address that stands for "none". */
inline constexpr XasIPv4 XAS_NO_IPV4{0xFFFFFFFFU};

/** The address whose four bytes stand at `bytes`. */
inline XasIPv4 xasIPv4At(const void *bytes)
{
    XasIPv4 address{};
    std::memcpy(&address, bytes, sizeof address);
    return address;
}

/** A host by name or address. */
struct XasHostAddr {
    std::uint32_t is_name; /**< non-zero: `value` holds a NUL-terminated host name */
    std::uint32_t is_ipv6; /**< for an address: `value` holds 16 IPv6 bytes, else 4 IPv4 bytes */
    char value[68];

    [[nodiscard]] constexpr bool isIPv6() const { return is_name == 0 && is_ipv6 != 0; }
};

static_assert(sizeof(XasHostAddr) == 76 && offsetof(XasHostAddr, value) == 8);

/** An IPv4 or IPv6 address; all zero means unset. */
struct XasIpAddr {
    std::uint32_t is_ipv6;
    unsigned char address[16]; /**< an IPv4 address stands in the first four bytes */
};

static_assert(sizeof(XasIpAddr) == 20);

#endif
