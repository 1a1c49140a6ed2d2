#include "msg/values.h"

#include "msg/value_kinds.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

namespace {

constexpr std::string_view IPV4_FORM = "an IPv4 address such as 192.168.1.10";
constexpr std::string_view IPV6_FORM = "an IPv6 address such as fd00::1, or none";
constexpr std::string_view IP_FORM = "an IPv4 or IPv6 address such as 192.168.1.10 or fd00::1, or none";
constexpr std::string_view HOST_FORM =
    "a host name of at most 67 characters, an IPv4 or IPv6 address, or none";

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

// text

bool setText(const XasValueTarget &to)
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

bool storeUnsigned(const XasValueTarget &to, std::uint64_t number, const XasRange &range)
{
    const bool inRange =
        number <= range.highest && (range.lowest <= 0 || number >= static_cast<std::uint64_t>(range.lowest));
    const bool fits = to.check == XasValueCheck::anyThatFits && number <= largest(to.bytes.size());
    if (inRange || fits)
        msgStoreValue(to.bytes, number);
    return inRange || fits;
}

bool setNumber(const XasValueTarget &to)
{
    const auto number = parseNumber<std::uint64_t>(to.text);
    return number && storeUnsigned(to, *number, msgRange(to.field));
}

std::string readNumber(std::span<const std::byte> bytes, const XasMsgField &)
{
    return std::to_string(msgValueOf<std::uint64_t>(bytes));
}

bool setInteger(const XasValueTarget &to)
{
    const auto number = parseNumber<std::int32_t>(to.text);
    const XasRange range = msgRange(to.field);
    const bool inRange =
        number && *number >= range.lowest && *number <= static_cast<std::int64_t>(range.highest);
    if (!inRange && !(number && to.check == XasValueCheck::anyThatFits))
        return false;
    msgStoreValue(to.bytes, *number);
    return true;
}

std::string readInteger(std::span<const std::byte> bytes, const XasMsgField &)
{
    return std::to_string(msgValueOf<std::int32_t>(bytes));
}

bool setFlag(const XasValueTarget &to)
{
    static constexpr std::array<std::string_view, 4> YES = {"yes", "on", "true", "1"};
    static constexpr std::array<std::string_view, 4> NO = {"no", "off", "false", "0"};
    const bool isYes = std::ranges::find(YES, to.text) != YES.end();
    if (!isYes && std::ranges::find(NO, to.text) == NO.end())
        return to.check == XasValueCheck::anyThatFits && setNumber(to);
    msgStoreValue(to.bytes, std::uint64_t{isYes});
    return true;
}

std::string readFlag(std::span<const std::byte> bytes, const XasMsgField &)
{
    return msgValueOf<std::uint64_t>(bytes) == 0 ? "no" : "yes";
}

bool setChoice(const XasValueTarget &to)
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
    const auto value = msgValueOf<std::uint64_t>(bytes);
    const auto named = std::ranges::find(field.names, value, &XasValueName::value);
    return named == field.names.end() ? std::to_string(value) : std::string{named->name};
}

std::string readMask(std::span<const std::byte> bytes, const XasMsgField &)
{
    std::array<char, 16> digits{};
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), msgValueOf<std::uint64_t>(bytes), 16).ptr;
    return "0x" + std::string{digits.data(), end};
}

/** Everything that differs by kind; the order is that of XasFieldKind. */
struct KindRules {
    std::string_view name; /**< empty: the bits of the width, as "u16" */
    bool (*set)(const XasValueTarget &to);
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
    {"IPv4", xasSetIpv4, xasReadIpv4, ""},
    {"IPv6", xasSetIpv6, xasReadIpv6, IPV6_FORM},
    {"IPv6 socket", xasSetSockaddr6, xasReadSockaddr6, IPV6_FORM},
    {"address", xasSetIpAddr, xasReadIpAddr, IP_FORM},
    {"host", xasSetHostAddr, xasReadHostAddr, HOST_FORM},
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

/** What a rule adds to a text's length. */
std::string_view ruleText(XasTextRule rule)
{
    switch (rule) {
    case XasTextRule::line:
        break;
    case XasTextRule::word:
        return ": letters, digits and _-.,:/@%+=, not beginning with -";
    case XasTextRule::host:
        return ": letters, digits and _-.,:/@%+=, not beginning with -, at least one letter or digit";
    case XasTextRule::option:
        return ", not beginning with -";
    case XasTextRule::secret:
        return ", no blank and no #";
    case XasTextRule::pamValue:
        return ", no blank and none of # [ ]";
    case XasTextRule::quoted:
        return ", no double quote";
    case XasTextRule::column:
        return ", no colon";
    case XasTextRule::path:
        return ", no .. between slashes";
    case XasTextRule::sequence:
        return ", control characters too but for line feed and carriage return";
    }
    return ", no control characters";
}

std::string hexText(std::uint64_t value)
{
    return readMask(std::as_bytes(std::span{&value, 1}), {});
}

void setDefault(std::span<std::byte> record, const XasMsgField &field, std::size_t element)
{
    if (!field.initial.empty())
        msgSetValue(record, xasFieldAt(field, element), field.initial);
}

} // namespace

std::string msgSetValue(std::span<std::byte> record, const XasMsgFieldAt &where, std::string_view text,
                        XasValueCheck check)
{
    const std::span<std::byte> bytes = record.subspan(where.place.offset, where.place.width);
    if (rulesOf(*where.field).set({bytes, *where.field, text, check}))
        return {};
    return "\"" + std::string{text} + "\" will not do, expected: " + msgAllowedText(*where.field);
}

std::string msgValueText(std::span<const std::byte> record, const XasMsgFieldAt &where)
{
    return rulesOf(*where.field).read(record.subspan(where.place.offset, where.place.width), *where.field);
}

std::uint64_t msgValueNumber(std::span<const std::byte> record, XasPlace place)
{
    return msgValueOf<std::uint64_t>(record.subspan(place.offset, place.width));
}

void msgStoreNumber(std::span<std::byte> record, XasPlace place, std::uint64_t value)
{
    msgStoreValue(record.subspan(place.offset, place.width), value);
}

std::string msgAllowedText(const XasMsgField &field)
{
    const KindRules &rules = rulesOf(field);
    if (!rules.expects.empty())
        return std::string{rules.expects};
    switch (field.kind) {
    case XasFieldKind::text:
        return "at most " + std::to_string(field.place.width - 1) + " characters" +
               std::string{ruleText(field.rule)};
    case XasFieldKind::choice:
        return choiceText(field);
    case XasFieldKind::mask:
        return "0x0 to " + hexText(msgRange(field).highest);
    case XasFieldKind::ipv4:
        return std::string{IPV4_FORM} + (field.none ? ", or none" : "");
    default:
        return rangeText(msgRange(field));
    }
}

std::string msgKindName(const XasMsgField &field)
{
    const std::string_view name = rulesOf(field).name;
    return name.empty() ? "u" + std::to_string(8 * field.place.width) : std::string{name};
}

XasRange msgRange(const XasMsgField &field)
{
    if (field.range)
        return *field.range;
    if (field.kind == XasFieldKind::integer)
        return {INT32_MIN, INT32_MAX};
    return {0, largest(field.place.width)};
}

void msgSetDefaults(std::span<std::byte> record, const XasMsgFields &fields)
{
    for (const XasMsgField &field : fields.fields) {
        for (std::size_t element = 0; field.group->fixed && element < field.group->count(); ++element)
            setDefault(record, field, element);
    }
}

void msgSetElementDefaults(std::span<std::byte> record, const XasMsgFields &fields, const XasMsgGroup &group,
                           std::size_t element)
{
    for (const XasMsgField &field : fields.fields) {
        if (field.group == &group)
            setDefault(record, field, element);
    }
}
