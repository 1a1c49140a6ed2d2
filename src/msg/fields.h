/**
 * The fields of message payloads, described once for every tool: name, place, width, kind, meaning, the
 * values that make sense and the default. The message tool sets and shows fields by these tables.
 *
 * Places and widths come from the payload structs through XAS_PLACE, so a description cannot drift from what
 * the daemon reads; each table is proved sound at compile time (xasMsgFieldsAreSound).
 *
 * To describe another message type: write msg_fields_<subject>.cpp after the model of msg_fields_dns.cpp
 * (plain fields) or msg_fields_eth.cpp (a repeated group), declare its table in msg_fields_subjects.h and
 * name it in the list at the end of msg_fields.cpp.
 *
 * Offsets count from the start of a block of bytes. For a message that is the record itself; a block that
 * accompanies a message in a second queue entry can be described by a table of its own in the same way.
 */
#ifndef XAS_MSG_FIELDS_H
#define XAS_MSG_FIELDS_H

#include "wire/message.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/** How the bytes of a field are to be read; msg_values.h gives the text form of each. */
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
    constexpr std::size_t count() const { return place.width / stride; }
};

/** Of a field that is not repeated. (Not a null pointer: g++ does not take a comparison with one for a
 * constant expression when it builds with UndefinedBehaviorSanitizer.) */
inline constexpr XasMsgGroup XAS_NO_GROUP = {.stride = 0, .fixed = true};

/** One field. A member of a group is described at its place in the group's first element. */
struct XasMsgField {
    std::string_view name = {}; /**< empty for a group whose elements are single values: "slave1" */
    XasPlace place = {};
    XasFieldKind kind = XasFieldKind::number;
    std::string_view meaning = {};
    std::span<const XasValueName> names = {}; /**< of a choice */
    std::optional<XasRange> range =
        std::nullopt;              /**< narrower than the width; of a choice: numbers without name */
    bool none = false;             /**< of an IPv4 address: 255.255.255.255 means none */
    std::string_view initial = {}; /**< the default as text; empty: all zero */
    const XasMsgGroup *group = &XAS_NO_GROUP; /**< the group that it is repeated in */
    const XasMsgGroup *counts = nullptr;      /**< it holds the number of used elements of that group */
    constexpr bool isRepeated() const { return group->stride != 0; }
};

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

/** The description of a message type, or null when the type is not described. */
const XasMsgFields *xasMsgFieldsOf(std::uint32_t msgtype);

/** Every field with groups spread out: eth1.marker ... eth1.mtu, eth2.marker ..., in the order of the record.
 */
std::vector<XasMsgFieldAt> xasMsgListFields(const XasMsgFields &fields);

/** The field called `name` ("hostname", "eth2.ip"), or none. */
std::optional<XasMsgFieldAt> xasMsgFindField(const XasMsgFields &fields, std::string_view name);

/** The bytes of one element (from 0) of a group. */
XasPlace xasMsgElementPlace(const XasMsgGroup &group, std::size_t element);

/** True when every byte of `place` is zero. */
bool xasMsgIsZero(std::span<const std::byte> record, XasPlace place);

/** True when the element that the field belongs to is in use; always true outside groups and in fixed ones.
 */
bool xasMsgIsUsed(std::span<const std::byte> record, const XasMsgFieldAt &where);

/** True when `width` bytes can hold a field of `kind`. */
constexpr bool xasMsgWidthFits(XasFieldKind kind, std::size_t width)
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

/** For static_assert beside a table: widths fit kinds, choices have names, fields ascend without overlap. */
constexpr bool xasMsgFieldsAreSound(std::span<const XasMsgField> fields)
{
    std::size_t end = XAS_PAYLOAD_OFFSET;
    for (const XasMsgField &field : fields) {
        const bool isChoice = field.kind == XasFieldKind::choice;
        const bool isNamed = field.isRepeated() || !field.name.empty();
        if (!xasMsgWidthFits(field.kind, field.place.width) || field.place.offset < end || !isNamed ||
            field.meaning.empty() || isChoice != !field.names.empty())
            return false;
        end = field.place.offset + field.place.width;
        if (field.isRepeated() && end > field.group->place.offset + field.group->stride)
            return false;
    }
    return end <= XAS_MESSAGE_SIZE;
}

#endif
