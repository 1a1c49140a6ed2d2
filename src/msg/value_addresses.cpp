#include "msg/value_kinds.h"
#include "wire/address.h"

#include <arpa/inet.h>
#include <array>
#include <netinet/in.h>

namespace {

constexpr std::string_view NONE = "none";

bool meansNone(std::string_view text)
{
    return text.empty() || text == NONE;
}

template <int Family, class Address>
bool parseAddress(std::string_view text, Address &address)
{
    return inet_pton(Family, std::string{text}.c_str(), &address) == 1;
}

std::string addressText(int family, const void *address)
{
    std::array<char, INET6_ADDRSTRLEN> buffer{};
    return inet_ntop(family, address, buffer.data(), buffer.size());
}

bool isUnset(std::span<const std::byte> bytes)
{
    return std::ranges::all_of(bytes, [](std::byte byte) { return byte == std::byte{0}; });
}

/** Puts an IPv4 or IPv6 address into one of the two address records. */
template <class Record>
bool parseEither(std::string_view text, Record &record, void *value)
{
    in_addr ipv4{};
    in6_addr ipv6{};
    if (parseAddress<AF_INET>(text, ipv4)) {
        std::memcpy(value, &ipv4, sizeof ipv4);
        return true;
    }
    if (!parseAddress<AF_INET6>(text, ipv6))
        return false;
    record.is_ipv6 = 1;
    std::memcpy(value, &ipv6, sizeof ipv6);
    return true;
}

/** A name is made of printable characters without blanks, and does not look like an address gone wrong. */
bool isHostName(std::string_view text)
{
    const auto isPlain = [](char character) {
        return character > ' ' && character < 0x7F;
    };
    const bool isDotted = text.find_first_not_of("0123456789.") == std::string_view::npos;
    return std::ranges::all_of(text, isPlain) && !isDotted && text.find(':') == std::string_view::npos;
}

} // namespace

bool xasSetIpv4(const XasValueTarget &to)
{
    XasIPv4 address{};
    if (to.field.none && meansNone(to.text))
        address = XAS_NO_IPV4;
    else if (!parseAddress<AF_INET>(to.text, address))
        return false;
    msgStoreValue(to.bytes, address);
    return true;
}

std::string xasReadIpv4(std::span<const std::byte> bytes, const XasMsgField &field)
{
    if (field.none && msgValueOf<XasIPv4>(bytes).isNone())
        return std::string{NONE};
    return addressText(AF_INET, bytes.data());
}

bool xasSetIpv6(const XasValueTarget &to)
{
    in6_addr address{};
    if (!meansNone(to.text) && !parseAddress<AF_INET6>(to.text, address))
        return false;
    msgStoreValue(to.bytes, address);
    return true;
}

std::string xasReadIpv6(std::span<const std::byte> bytes, const XasMsgField &)
{
    return isUnset(bytes) ? std::string{NONE} : addressText(AF_INET6, bytes.data());
}

bool xasSetSockaddr6(const XasValueTarget &to)
{
    sockaddr_in6 address{};
    if (!meansNone(to.text)) {
        if (!parseAddress<AF_INET6>(to.text, address.sin6_addr))
            return false;
        address.sin6_family = AF_INET6;
    }
    msgStoreValue(to.bytes, address);
    return true;
}

std::string xasReadSockaddr6(std::span<const std::byte> bytes, const XasMsgField &field)
{
    return xasReadIpv6(bytes.subspan(offsetof(sockaddr_in6, sin6_addr), sizeof(in6_addr)), field);
}

bool xasSetIpAddr(const XasValueTarget &to)
{
    XasIpAddr record{};
    if (!meansNone(to.text) && !parseEither(to.text, record, record.address))
        return false;
    msgStoreValue(to.bytes, record);
    return true;
}

std::string xasReadIpAddr(std::span<const std::byte> bytes, const XasMsgField &)
{
    const auto record = msgValueOf<XasIpAddr>(bytes);
    return isUnset(bytes) ? std::string{NONE}
                          : addressText(record.is_ipv6 != 0 ? AF_INET6 : AF_INET, record.address);
}

bool xasSetHostAddr(const XasValueTarget &to)
{
    XasHostAddr record{};
    if (meansNone(to.text) || !parseEither(to.text, record, record.value)) {
        const std::string_view name = meansNone(to.text) ? std::string_view{} : to.text;
        const bool isAllowed = to.check == XasValueCheck::anyThatFits || isHostName(name) || name.empty();
        if (name.size() >= sizeof record.value || !isAllowed)
            return false;
        record.is_name = 1;
        xasSetFieldText(record.value, name);
    }
    msgStoreValue(to.bytes, record);
    return true;
}

std::string xasReadHostAddr(std::span<const std::byte> bytes, const XasMsgField &)
{
    const auto record = msgValueOf<XasHostAddr>(bytes);
    if (record.is_name == 0)
        return addressText(record.is_ipv6 != 0 ? AF_INET6 : AF_INET, record.value);
    const std::string_view name = xasFieldText(record.value);
    return std::string{name.empty() ? NONE : name};
}
