/**
 * How a message is described: beside each payload struct stands one constexpr table of its fields, with the
 * name, place, width and kind of each, what it means, the values that make sense, the default, and what a
 * text may hold. Everything that knows a field's name or place has it from there: the message tool, the
 * reference of all messages, the dumps and the tests' messages.
 *
 * Places and widths come from the struct itself through XAS_FIELD and XAS_PLACE; the table is proved against
 * the struct at compile time (xasFieldsAreSound): it describes every byte of it, in order, but for padding
 * and for what is named as unused. Offsets count from the start of a record; a block that accompanies a
 * message in a second queue entry can be described in the same way.
 */
#ifndef XAS_WIRE_FIELD_H
#define XAS_WIRE_FIELD_H

#include "wire/message.h"
#include "wire/text_rule.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

/** How the bytes of a field are to be read; msg/values.h gives the text form of each. */
enum class XasFieldKind : std::uint8_t {
    text,      /**< characters up to a NUL or the end of the field */
    number,    /**< unsigned, 1, 2, 4 or 8 bytes */
    integer,   /**< signed, 4 bytes */
    flag,      /**< 0 = no, anything else = yes; 1, 2 or 4 bytes */
    choice,    /**< unsigned, 1, 2 or 4 bytes, whose values have names */
    mask,      /**< unsigned bits, shown in hexadecimal; 1, 2, 4 or 8 bytes */
    ipv4,      /**< 4 bytes in network order */
    ipv6,      /**< 16 bytes; all zero = none */
    sockaddr6, /**< sockaddr_in6, 28 bytes; address all zero = none */
    ipAddr,    /**< XasIpAddr; all zero = none */
    hostAddr,  /**< XasHostAddr; an empty name = none */
};
inline constexpr std::size_t XAS_FIELD_KINDS = 11;

/** Where a field or a group stands: bytes from the start of the record, and how many of them. */
struct XasPlace {
    std::size_t offset = 0;
    std::size_t width = 0;
};

/** The place of a payload struct's member, as in XAS_PLACE(XasEthPayload, ports[0].ip). */
#define XAS_PLACE(Payload, member)                                                                           \
    XasPlace                                                                                                 \
    {                                                                                                        \
        XAS_PAYLOAD_OFFSET + offsetof(Payload, member), sizeof(Payload::member)                              \
    }

/** One value of a choice and its name. */
struct XasValueName {
    std::uint32_t value;
    std::string_view name;
};

/** The numbers that make sense, both ends included. */
struct XasRange {
    std::int64_t lowest;
    std::uint64_t highest;
};

/** A sub-record that is repeated: "eth" with two elements gives eth1 and eth2. */
struct XasMsgGroup {
    std::string_view name = {};
    XasPlace place = {}; /**< the whole array */
    std::size_t stride;  /**< bytes from one element to the next */
    bool fixed = false; /**< every element is always in use; otherwise an all-zero element is an unused one */
    std::string_view meaning = {};
    constexpr std::size_t count() const { return stride != 0 ? place.width / stride : 1; }
    constexpr std::size_t end() const { return place.offset + place.width; }
    constexpr XasMsgGroup alwaysUsed() const { return {name, place, stride, true, meaning}; }
};

/** The group of a payload struct's array: XAS_GROUP("eth", XasEthPayload, ports, "..."). */
#define XAS_GROUP(groupName, Payload, array, what)                                                           \
    XasMsgGroup                                                                                              \
    {                                                                                                        \
        .name = (groupName), .place = XAS_PLACE(Payload, array), .stride = sizeof(Payload::array[0]),        \
        .meaning = (what)                                                                                    \
    }

/** Of a field that is not repeated. (Not a null pointer: g++ does not take a comparison with one for a
 * constant expression when it builds with UndefinedBehaviorSanitizer.) */
inline constexpr XasMsgGroup XAS_NO_GROUP = {.stride = 0, .fixed = true};

/** One field. A member of a group is described at its place in the group's first element. The functions give
 * the same field with one thing more said about it. */
struct XasMsgField {
    std::string_view name = {}; /**< empty for a group whose elements are single values: "slave1" */
    XasPlace place = {};
    XasFieldKind kind = XasFieldKind::number;
    std::string_view meaning = {};
    std::span<const XasValueName> names = {}; /**< of a choice */
    std::optional<XasRange> range = {};   /**< narrower than the width; of a choice: numbers without name */
    bool none = false;                    /**< of an IPv4 address: 255.255.255.255 means none */
    bool isSecret = false;                /**< of a text: shown to people only when they ask for it */
    XasTextRule rule = XasTextRule::line; /**< of a text; the name in a host record is a word */
    XasReadCondition isRead = nullptr;    /**< of a text that the daemon does not always read: when it does */
    std::string_view initial = {};        /**< the default as text; empty: all zero */
    const XasMsgGroup *group = &XAS_NO_GROUP; /**< the group that it is repeated in */
    const XasMsgGroup *counts = nullptr;      /**< it holds the number of used elements of that group */

    constexpr bool isRepeated() const { return group->stride != 0; }

    /** The same field with another value of `member`. */
    template <class T>
    constexpr XasMsgField with(T XasMsgField::*member, const std::type_identity_t<T> &value) const
    {
        XasMsgField field = *this;
        field.*member = value;
        return field;
    }

    constexpr XasMsgField of(std::span<const XasValueName> values) const
    {
        return with(&XasMsgField::names, values);
    }
    constexpr XasMsgField within(std::int64_t lowest, std::uint64_t highest) const
    {
        return with(&XasMsgField::range, XasRange{lowest, highest});
    }
    constexpr XasMsgField orNone() const { return with(&XasMsgField::none, true); }
    constexpr XasMsgField holding(XasTextRule text) const { return with(&XasMsgField::rule, text); }
    constexpr XasMsgField readIf(XasReadCondition condition) const
    {
        return with(&XasMsgField::isRead, condition);
    }
    constexpr XasMsgField secret() const { return with(&XasMsgField::isSecret, true); }
    constexpr XasMsgField byDefault(std::string_view text) const { return with(&XasMsgField::initial, text); }
    constexpr XasMsgField in(const XasMsgGroup &all) const { return with(&XasMsgField::group, &all); }
    constexpr XasMsgField counting(const XasMsgGroup &all) const { return with(&XasMsgField::counts, &all); }
};

/** For `readIf`: the daemon reads the text while the payload's member is not zero, as in
 * xasIsSet<&XasCifsPayload::enabled>. */
template <auto Member>
inline constexpr XasReadCondition xasIsSet = []<class Payload, class T>(T Payload::*) -> XasReadCondition {
    return [](const XasMessage &msg, std::size_t /*element*/) {
        return xasReadPayload<Payload>(msg).*Member != 0;
    };
}(Member);

/** A field called `name`. */
constexpr XasMsgField xasField(std::string_view name, XasPlace place, XasFieldKind kind,
                               std::string_view meaning)
{
    return {.name = name, .place = place, .kind = kind, .meaning = meaning};
}

/** A field called `name` at a member of the payload struct: XAS_FIELD_AS("port1", XasRadiusPayload,
 * server1.port, number, "..."). */
#define XAS_FIELD_AS(name, Payload, member, kind, meaning)                                                   \
    xasField(name, XAS_PLACE(Payload, member), XasFieldKind::kind, meaning)

/** A field called as the member: XAS_FIELD(XasDnsPayload, dns1, ipAddr, "..."). */
#define XAS_FIELD(Payload, member, kind, meaning) XAS_FIELD_AS(#member, Payload, member, kind, meaning)

/** A field called as a member of a part: XAS_FIELD_OF(XasEthPayload, ports[0], ip, ipv4, "..."). */
#define XAS_FIELD_OF(Payload, part, member, kind, meaning)                                                   \
    XAS_FIELD_AS(#member, Payload, part.member, kind, meaning) // NOLINT(bugprone-macro-parentheses)

/** Everything about one message type. */
struct XasMsgFields {
    std::uint32_t msgtype = 0;
    std::string_view meaning = {};
    std::span<const XasMsgField> fields = {};
    bool stored = true;   /**< a setting that the configuration server keeps; false for events and commands */
    bool answered = true; /**< the daemon acknowledges it */
};

/** A field of one element: the field's full name ("eth2.ip") and its own place. */
struct XasMsgFieldAt {
    std::string name;
    const XasMsgField *field;
    XasPlace place;
    std::size_t element; /**< of its group, from 0 */
};

/** A field of one element of its group, from 0; outside groups there is only that. */
XasMsgFieldAt xasFieldAt(const XasMsgField &field, std::size_t element);

/** Every field with groups spread out: eth1.marker ... eth1.mtu, eth2.marker ..., in the record's order. */
std::vector<XasMsgFieldAt> xasListFields(const XasMsgFields &fields);

/** The field called `name` ("hostname", "eth2.ip"), or none. */
std::optional<XasMsgFieldAt> xasFindField(const XasMsgFields &fields, std::string_view name);

/** The bytes of one element (from 0) of a group. */
XasPlace xasElementPlace(const XasMsgGroup &group, std::size_t element);

/** True when every byte of `place` is zero. */
[[nodiscard]] bool xasIsZero(std::span<const std::byte> record, XasPlace place);

/** True when the element that the field belongs to is in use; always so outside groups and in fixed ones. */
[[nodiscard]] bool xasIsUsed(std::span<const std::byte> record, const XasMsgFieldAt &where);

/** True when `width` bytes can hold a field of `kind`. */
[[nodiscard]] constexpr bool xasWidthFits(XasFieldKind kind, std::size_t width)
{
    const bool word = width == 1 || width == 2 || width == 4;
    switch (kind) {
    case XasFieldKind::text:
        return width > 1;
    case XasFieldKind::flag:
    case XasFieldKind::choice:
        return word;
    case XasFieldKind::number:
    case XasFieldKind::mask:
        return word || width == 8;
    case XasFieldKind::integer:
    case XasFieldKind::ipv4:
        return width == 4;
    case XasFieldKind::ipv6:
        return width == 16;
    case XasFieldKind::sockaddr6:
        return width == 28;
    case XasFieldKind::ipAddr:
        return width == 20;
    case XasFieldKind::hostAddr:
        return width == 76;
    }
    return false;
}

/** True for a field that says of itself what it must: its width fits its kind, a choice has names. */
[[nodiscard]] constexpr bool xasFieldIsSound(const XasMsgField &field)
{
    const bool isChoice = field.kind == XasFieldKind::choice;
    return xasWidthFits(field.kind, field.place.width) && (field.isRepeated() || !field.name.empty()) &&
           !field.meaning.empty() && isChoice == !field.names.empty() &&
           (!field.isSecret || field.kind == XasFieldKind::text);
}

/** True for a field that holds text which is checked: a text, or a host record. */
[[nodiscard]] constexpr bool xasHoldsText(const XasMsgField &field)
{
    return field.kind == XasFieldKind::text || field.kind == XasFieldKind::hostAddr;
}

/** What the check of a message's texts needs of such a field. */
constexpr XasTextField xasTextFieldOf(const XasMsgField &field)
{
    const bool isHost = field.kind == XasFieldKind::hostAddr;
    return {.name = field.name,
            .group = field.group->name,
            .offset = field.place.offset,
            .width = field.place.width,
            .stride = field.group->stride,
            .count = field.group->count(),
            .isHost = isHost,
            .rule = isHost ? XasTextRule::word : field.rule,
            .isRead = field.isRead};
}

/** Compilers pad members to at most this alignment. */
inline constexpr std::size_t XAS_ALIGNMENT_MAX = 8;

/** For static_assert beside a table of Payload's fields: each is sound, they ascend without overlap, and
 * nothing of the struct is left out but padding and the places in `unused`. */
template <class Payload>
[[nodiscard]] constexpr bool xasFieldsAreSound(std::span<const XasMsgField> fields,
                                               std::initializer_list<XasPlace> unused = {})
{
    std::size_t end = XAS_PAYLOAD_OFFSET;
    const auto reaches = [&](std::size_t offset) {
        for (const XasPlace &place : unused) {
            if (place.offset >= end && place.offset < end + XAS_ALIGNMENT_MAX && place.offset < offset)
                end = place.offset + place.width;
        }
        return offset >= end && offset < end + XAS_ALIGNMENT_MAX;
    };
    const XasMsgGroup *group = &XAS_NO_GROUP;
    for (const XasMsgField &field : fields) {
        // Told apart by their places: g++ takes no comparison of these addresses for constant when it builds
        // with UndefinedBehaviorSanitizer.
        if (group->stride != 0 && field.group->place.offset != group->place.offset)
            end = group->end();
        group = field.group;
        if (!xasFieldIsSound(field) || !reaches(field.place.offset))
            return false;
        end = field.place.offset + field.place.width;
        if (group->stride != 0 && end > group->place.offset + group->stride)
            return false;
    }
    if (group->stride != 0)
        end = group->end();
    return reaches(XAS_PAYLOAD_OFFSET + sizeof(Payload)) && end <= XAS_MESSAGE_SIZE;
}

#endif
