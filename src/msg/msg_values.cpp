#include "msg/msg_values.h"

#include "wire/xas_address.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <charconv>
#include <cstring>
#include <netinet/in.h>

namespace {

constexpr std::string_view NONE = "none";
constexpr std::string_view IPV4_FORM = "an IPv4 address such as 192.168.1.10";
constexpr std::string_view IPV6_FORM = "an IPv6 address such as fd00::1, or none";
constexpr std::string_view IP_FORM = "an IPv4 or IPv6 address such as 192.168.1.10 or fd00::1, or none";
constexpr std::string_view HOST_FORM =
    "a host name of at most 67 characters, an IPv4 or IPv6 address, or none";

/** What a setter works on; it returns false when `text` is not a value of the field. */
struct Target {
    std::span<std::byte> bytes; /**< the field's own bytes */
    const XasMsgField &field;
    std::string_view text;
    XasValueCheck check;
};

/** A view of a field's bytes as the record T, copied out. */
template <class T>
T bytesAs(std::span<const std::byte> bytes)
{
    T value{};
    std::memcpy(&value, bytes.data(), std::min(bytes.size(), sizeof value));
    return value;
}

template <class T>
void storeBytes(std::span<std::byte> bytes, const T &value)
{
    std::memcpy(bytes.data(), &value, std::min(bytes.size(), sizeof value));
}

bool meansNone(std::string_view text)
{
    return text.empty() || text == NONE;
}

template <class Number>
std::optional<Number> parseNumber(std::string_view text)
{
    const bool isHex = text.starts_with("0x") || text.starts_with("0X");
    if (isHex)
        text.remove_prefix(2);
    Number number = 0;
    const char *end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number, isHex ? 16 : 10);
    if (result.ec != std::errc{} || result.ptr != end)
        return std::nullopt;
    return number;
}

/** The largest unsigned value of `width` bytes. */
std::uint64_t largest(std::size_t width)
{
    return width >= 8 ? UINT64_MAX : (std::uint64_t{1} << (8 * width)) - 1;
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

// text

bool setText(const Target &to)
{
    const std::size_t capacity = to.bytes.size() - (to.check == XasValueCheck::allowed ? 1 : 0);
    if (to.text.size() > capacity || to.text.find('\0') != std::string_view::npos)
        return false;
    std::ranges::fill(to.bytes, std::byte{0});
    std::memcpy(to.bytes.data(), to.text.data(), to.text.size());
    return true;
}

std::string readText(std::span<const std::byte> bytes, const XasMsgField &)
{
    const char *text = reinterpret_cast<const char *>(bytes.data());
    return {text, ::strnlen(text, bytes.size())};
}

// numbers

bool storeUnsigned(const Target &to, std::uint64_t number, const XasRange &range)
{
    const bool inRange =
        number <= range.highest && (range.lowest <= 0 || number >= static_cast<std::uint64_t>(range.lowest));
    const bool fits = to.check == XasValueCheck::anyThatFits && number <= largest(to.bytes.size());
    if (inRange || fits)
        storeBytes(to.bytes, number);
    return inRange || fits;
}

bool setNumber(const Target &to)
{
    const auto number = parseNumber<std::uint64_t>(to.text);
    return number && storeUnsigned(to, *number, xasMsgRange(to.field));
}

std::string readNumber(std::span<const std::byte> bytes, const XasMsgField &)
{
    return std::to_string(bytesAs<std::uint64_t>(bytes));
}

bool setInteger(const Target &to)
{
    const auto number = parseNumber<std::int32_t>(to.text);
    const XasRange range = xasMsgRange(to.field);
    const bool inRange =
        number && *number >= range.lowest && *number <= static_cast<std::int64_t>(range.highest);
    if (!inRange && !(number && to.check == XasValueCheck::anyThatFits))
        return false;
    storeBytes(to.bytes, *number);
    return true;
}

std::string readInteger(std::span<const std::byte> bytes, const XasMsgField &)
{
    return std::to_string(bytesAs<std::int32_t>(bytes));
}

bool setFlag(const Target &to)
{
    static constexpr std::array<std::string_view, 4> YES = {"yes", "on", "true", "1"};
    static constexpr std::array<std::string_view, 4> NO = {"no", "off", "false", "0"};
    const bool isYes = std::ranges::find(YES, to.text) != YES.end();
    if (!isYes && std::ranges::find(NO, to.text) == NO.end())
        return to.check == XasValueCheck::anyThatFits && setNumber(to);
    storeBytes(to.bytes, std::uint64_t{isYes});
    return true;
}

std::string readFlag(std::span<const std::byte> bytes, const XasMsgField &)
{
    return isUnset(bytes) ? "no" : "yes";
}

bool setChoice(const Target &to)
{
    const auto named = std::ranges::find(to.field.names, to.text, &XasValueName::name);
    if (named != to.field.names.end())
        return storeUnsigned(to, named->value, XasRange{0, largest(to.bytes.size())});
    const auto number = parseNumber<std::uint64_t>(to.text);
    if (!number)
        return false;
    const auto isNumber = [&](const XasValueName &value) {
        return value.value == *number;
    };
    const bool isNamed = std::ranges::any_of(to.field.names, isNumber);
    const XasRange whole{0, largest(to.bytes.size())};
    const XasRange none{1, 0};
    return storeUnsigned(to, *number, isNamed ? whole : to.field.range.value_or(none));
}

std::string readChoice(std::span<const std::byte> bytes, const XasMsgField &field)
{
    const auto value = bytesAs<std::uint64_t>(bytes);
    const auto named = std::ranges::find(field.names, value, &XasValueName::value);
    return named == field.names.end() ? std::to_string(value) : std::string{named->name};
}

std::string readMask(std::span<const std::byte> bytes, const XasMsgField &)
{
    std::array<char, 16> digits{};
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), bytesAs<std::uint64_t>(bytes), 16).ptr;
    return "0x" + std::string{digits.data(), end};
}

// addresses

bool setIpv4(const Target &to)
{
    std::uint32_t address = 0;
    if (to.field.none && meansNone(to.text))
        address = XAS_NO_IPV4;
    else if (!parseAddress<AF_INET>(to.text, address))
        return false;
    storeBytes(to.bytes, address);
    return true;
}

std::string readIpv4(std::span<const std::byte> bytes, const XasMsgField &field)
{
    if (field.none && bytesAs<std::uint32_t>(bytes) == XAS_NO_IPV4)
        return std::string{NONE};
    return addressText(AF_INET, bytes.data());
}

bool setIpv6(const Target &to)
{
    in6_addr address{};
    if (!meansNone(to.text) && !parseAddress<AF_INET6>(to.text, address))
        return false;
    storeBytes(to.bytes, address);
    return true;
}

std::string readIpv6(std::span<const std::byte> bytes, const XasMsgField &)
{
    return isUnset(bytes) ? std::string{NONE} : addressText(AF_INET6, bytes.data());
}

bool setSockaddr6(const Target &to)
{
    sockaddr_in6 address{};
    if (!meansNone(to.text)) {
        if (!parseAddress<AF_INET6>(to.text, address.sin6_addr))
            return false;
        address.sin6_family = AF_INET6;
    }
    storeBytes(to.bytes, address);
    return true;
}

std::string readSockaddr6(std::span<const std::byte> bytes, const XasMsgField &field)
{
    return readIpv6(bytes.subspan(offsetof(sockaddr_in6, sin6_addr), sizeof(in6_addr)), field);
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

bool setIpAddr(const Target &to)
{
    XasIpAddr record{};
    if (!meansNone(to.text) && !parseEither(to.text, record, record.address))
        return false;
    storeBytes(to.bytes, record);
    return true;
}

std::string readIpAddr(std::span<const std::byte> bytes, const XasMsgField &)
{
    const auto record = bytesAs<XasIpAddr>(bytes);
    return isUnset(bytes) ? std::string{NONE}
                          : addressText(record.is_ipv6 != 0 ? AF_INET6 : AF_INET, record.address);
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

bool setHostAddr(const Target &to)
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
    storeBytes(to.bytes, record);
    return true;
}

std::string readHostAddr(std::span<const std::byte> bytes, const XasMsgField &)
{
    const auto record = bytesAs<XasHostAddr>(bytes);
    if (record.is_name == 0)
        return addressText(record.is_ipv6 != 0 ? AF_INET6 : AF_INET, record.value);
    const std::string_view name = xasFieldText(record.value);
    return std::string{name.empty() ? NONE : name};
}

/** Everything that differs by kind; the order is that of XasFieldKind. */
struct KindRules {
    std::string_view name; /**< empty: the bits of the width, as "u16" */
    bool (*set)(const Target &to);
    std::string (*read)(std::span<const std::byte> bytes, const XasMsgField &field);
    std::string_view expects; /**< empty: worked out from the field */
};

constexpr std::array<KindRules, XAS_FIELD_KINDS> KINDS = {{
    {"text", setText, readText, ""},
    {"", setNumber, readNumber, ""},
    {"i32", setInteger, readInteger, ""},
    {"flag", setFlag, readFlag, "yes or no"},
    {"choice", setChoice, readChoice, ""},
    {"mask", setNumber, readMask, ""},
    {"IPv4", setIpv4, readIpv4, ""},
    {"IPv6", setIpv6, readIpv6, IPV6_FORM},
    {"IPv6 socket", setSockaddr6, readSockaddr6, IPV6_FORM},
    {"address", setIpAddr, readIpAddr, IP_FORM},
    {"host", setHostAddr, readHostAddr, HOST_FORM},
}};

const KindRules &rulesOf(const XasMsgField &field)
{
    return KINDS[static_cast<std::size_t>(field.kind)];
}

std::string rangeText(const XasRange &range)
{
    return std::to_string(range.lowest) + " to " + std::to_string(range.highest);
}

std::string choiceText(const XasMsgField &field)
{
    std::string list;
    for (std::size_t i = 0; i < field.names.size(); ++i) {
        if (i > 0)
            list += i + 1 == field.names.size() ? " or " : ", ";
        list += field.names[i].name;
    }
    return field.range ? list + ", or a number " + rangeText(*field.range) : list;
}

std::string hexText(std::uint64_t value)
{
    return readMask(std::as_bytes(std::span{&value, 1}), {});
}

} // namespace

std::string xasMsgSetValue(std::span<std::byte> record, const XasMsgFieldAt &where, std::string_view text,
                           XasValueCheck check)
{
    const std::span<std::byte> bytes = record.subspan(where.place.offset, where.place.width);
    if (rulesOf(*where.field).set({bytes, *where.field, text, check}))
        return {};
    return "\"" + std::string{text} + "\" will not do, expected: " + xasMsgAllowedText(*where.field);
}

std::string xasMsgValueText(std::span<const std::byte> record, const XasMsgFieldAt &where)
{
    return rulesOf(*where.field).read(record.subspan(where.place.offset, where.place.width), *where.field);
}

std::uint64_t xasMsgValueNumber(std::span<const std::byte> record, XasPlace place)
{
    return bytesAs<std::uint64_t>(record.subspan(place.offset, place.width));
}

void xasMsgStoreNumber(std::span<std::byte> record, XasPlace place, std::uint64_t value)
{
    storeBytes(record.subspan(place.offset, place.width), value);
}

std::string xasMsgAllowedText(const XasMsgField &field)
{
    const KindRules &rules = rulesOf(field);
    if (!rules.expects.empty())
        return std::string{rules.expects};
    switch (field.kind) {
    case XasFieldKind::text:
        return "at most " + std::to_string(field.place.width - 1) + " characters";
    case XasFieldKind::choice:
        return choiceText(field);
    case XasFieldKind::mask:
        return "0x0 to " + hexText(xasMsgRange(field).highest);
    case XasFieldKind::ipv4:
        return std::string{IPV4_FORM} + (field.none ? ", or none" : "");
    default:
        return rangeText(xasMsgRange(field));
    }
}

std::string xasMsgKindName(const XasMsgField &field)
{
    const std::string_view name = rulesOf(field).name;
    return name.empty() ? "u" + std::to_string(8 * field.place.width) : std::string{name};
}

XasRange xasMsgRange(const XasMsgField &field)
{
    if (field.range)
        return *field.range;
    if (field.kind == XasFieldKind::integer)
        return {INT32_MIN, INT32_MAX};
    return {0, largest(field.place.width)};
}

void xasMsgSetDefaults(std::span<std::byte> record, const XasMsgFields &fields)
{
    for (const XasMsgFieldAt &where : xasMsgListFields(fields)) {
        const XasMsgGroup *group = where.field->group;
        if ((group == nullptr || group->fixed) && !where.field->initial.empty())
            xasMsgSetValue(record, where, where.field->initial);
    }
}

void xasMsgSetElementDefaults(std::span<std::byte> record, const XasMsgFields &fields,
                              const XasMsgGroup &group, std::size_t element)
{
    for (const XasMsgFieldAt &where : xasMsgListFields(fields)) {
        const bool isMember = where.field->group == &group && where.element == element;
        if (isMember && !where.field->initial.empty())
            xasMsgSetValue(record, where, where.field->initial);
    }
}
