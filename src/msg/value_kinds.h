/** What the kinds of field values share, inside msg_values: copying bytes, and the address kinds. */
#ifndef XAS_MSG_VALUE_KINDS_H
#define XAS_MSG_VALUE_KINDS_H

#include "msg/values.h"

#include <algorithm>
#include <cstring>

/** What a setter works on; it returns false, and changes nothing, when `text` is not a value of the field. */
struct XasValueTarget {
    std::span<std::byte> bytes; /**< the field's own bytes */
    const XasMsgField &field;
    std::string_view text;
    XasValueCheck check;
};

/** The bytes of a field as T, copied out; bytes that the field does not have are zero. */
template <class T>
T msgValueOf(std::span<const std::byte> bytes)
{
    T value{};
    std::memcpy(&value, bytes.data(), std::min(bytes.size(), sizeof value));
    return value;
}

/** Copies `value` into the field, as much of it as the field holds. */
template <class T>
void msgStoreValue(std::span<std::byte> bytes, const T &value)
{
    std::memcpy(bytes.data(), &value, std::min(bytes.size(), sizeof value));
}

[[nodiscard]] bool xasSetIpv4(const XasValueTarget &to);
std::string xasReadIpv4(std::span<const std::byte> bytes, const XasMsgField &field);

[[nodiscard]] bool xasSetIpv6(const XasValueTarget &to);
std::string xasReadIpv6(std::span<const std::byte> bytes, const XasMsgField &field);

[[nodiscard]] bool xasSetSockaddr6(const XasValueTarget &to);
std::string xasReadSockaddr6(std::span<const std::byte> bytes, const XasMsgField &field);

[[nodiscard]] bool xasSetIpAddr(const XasValueTarget &to);
std::string xasReadIpAddr(std::span<const std::byte> bytes, const XasMsgField &field);

[[nodiscard]] bool xasSetHostAddr(const XasValueTarget &to);
std::string xasReadHostAddr(std::span<const std::byte> bytes, const XasMsgField &field);

#endif
