/**
 * Field values as text, both ways, for every kind of field:
 *
 *   text       as it is, at most one character less than the field's width
 *   number     decimal, or hexadecimal with 0x
 *   integer    decimal, may be negative
 *   flag       yes or no (also on/off, true/false, 1/0); shown as yes or no
 *   choice     one of the names, or its number; a value without name is shown as its number
 *   mask       hexadecimal with 0x, or decimal; shown in hexadecimal
 *   ipv4       192.168.1.10; "none" where the field knows none
 *   ipv6       fd00::1, or none
 *   sockaddr6  the same; port, flow and scope are zero
 *   ipAddr     an IPv4 or IPv6 address, or none
 *   hostAddr   a host name, an IPv4 or an IPv6 address, or none
 *
 * What is shown can be set again. Setting an address kind to the empty text means none.
 */
#ifndef XAS_MSG_VALUES_H
#define XAS_MSG_VALUES_H

#include "msg/fields.h"

/** Whether values that the table does not allow are taken as long as they fit the field's bytes. */
enum class XasValueCheck : std::uint8_t { allowed, anyThatFits };

/**
 * Sets the field at `where` from `text`. Returns the empty text, or what is wrong with the value (naming what
 * is expected); the record is then unchanged.
 */
std::string msgSetValue(std::span<std::byte> record, const XasMsgFieldAt &where, std::string_view text,
                        XasValueCheck check = XasValueCheck::allowed);

/** The value of the field at `where` as text. */
std::string msgValueText(std::span<const std::byte> record, const XasMsgFieldAt &where);

/** The unsigned value of a number, flag, choice or mask. */
std::uint64_t msgValueNumber(std::span<const std::byte> record, XasPlace place);

/** Stores an unsigned value; bits beyond the width are lost. */
void msgStoreNumber(std::span<std::byte> record, XasPlace place, std::uint64_t value);

/** The values that the field takes, for people: "0 to 65535", "bootp, dhcp or static". */
std::string msgAllowedText(const XasMsgField &field);

/** The name of a kind: "text", "number", ..., with the number of bits where the width varies ("u16"). */
std::string msgKindName(const XasMsgField &field);

/** The numbers that the field takes: its own range, else what its width holds. */
XasRange msgRange(const XasMsgField &field);

/** Sets every field of the elements in use to its default: all fields outside groups and in fixed groups. */
void msgSetDefaults(std::span<std::byte> record, const XasMsgFields &fields);

/** Sets one element (from 0) of a group to its defaults. */
void msgSetElementDefaults(std::span<std::byte> record, const XasMsgFields &fields, const XasMsgGroup &group,
                           std::size_t element);

#endif
