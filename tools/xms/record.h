/** Building a message record from what the user typed. Complaints are thrown as XmsError with status usage.
 */
#ifndef XAS_XMS_RECORD_H
#define XAS_XMS_RECORD_H

#include "msg/values.h"
#include "wire/message.h"

#include <string>
#include <string_view>
#include <vector>

/** One "name=value". */
struct XmsAssignment {
    std::string name;
    std::string value;
};

/** The message type called `text`; an unknown name is refused with the close ones. */
std::uint32_t xmsTypeFromText(std::string_view text);

/** Splits each of `arguments` at its first "=". */
std::vector<XmsAssignment> xmsParseAssignments(const std::vector<std::string> &arguments);

/** A record of `msgtype` with every field at its default. */
XasMessage xmsDefaultRecord(std::uint32_t msgtype);

/**
 * Sets the named fields in a block that `fields` describes. The first field set in an unused element of a
 * group brings in that element's defaults, and a field that counts a group follows it unless it is named
 * itself.
 */
void xmsAssignIn(std::span<std::byte> block, const XasMsgFields &fields,
                 const std::vector<XmsAssignment> &assignments, XasValueCheck check);

/** The same for a message record, by the description of its type. */
void xmsAssign(XasMessage &record, const std::vector<XmsAssignment> &assignments,
               XasValueCheck check = XasValueCheck::allowed);

/** Replaces the payload by `hex`, the bytes from offset 120 on; what is not given is zero. */
void xmsSetRawPayload(XasMessage &record, std::string_view hex);

#endif
