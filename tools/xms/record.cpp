#include "xms/record.h"

#include "msg/type_names.h"
#include "wire/message_names.h"
#include "xms/error.h"
#include "xms/hex.h"
#include "xms/suggest.h"

#include <algorithm>

namespace {

[[noreturn]] void complain(const std::string &text)
{
    throw XmsError{XmsExit::usage, text};
}

std::vector<std::string> shortTypeNames()
{
    std::vector<std::string> names;
    for (std::uint32_t msgtype = XMSG_ETH; msgtype <= XMSG_ERROR; ++msgtype) {
        if (!xasMsgTypeName(msgtype).empty())
            names.push_back(msgShortName(msgtype));
    }
    return names;
}

/** The name as it would be written in the list of short names, for finding close ones. */
std::string comparable(std::string_view text)
{
    std::string name{text};
    std::ranges::transform(name, name.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; });
    return name.starts_with("xmsg_") ? name.substr(5) : name;
}

const XasMsgFields &fieldsToSet(std::uint32_t msgtype)
{
    const XasMsgFields *fields = msgFieldsOf(msgtype);
    if (fields == nullptr || fields->fields.empty())
        complain(msgLongName(msgtype) + " has no fields to set by name");
    return *fields;
}

XasMsgFieldAt findField(const XasMsgFields &fields, const std::string &name)
{
    if (auto where = xasFindField(fields, name))
        return *std::move(where);
    std::vector<std::string> known;
    for (const XasMsgFieldAt &where : xasListFields(fields))
        known.push_back(where.name);
    const std::string type = msgShortName(fields.msgtype);
    complain(type + " has no field \"" + name + "\"" + xmsDidYouMean(name, known) + "; xms describe " + type +
             " lists them");
}

/** The number of elements up to the last one in use. */
std::size_t usedElements(std::span<const std::byte> bytes, const XasMsgGroup &group)
{
    std::size_t used = group.count();
    while (used > 0 && xasIsZero(bytes, xasElementPlace(group, used - 1)))
        --used;
    return used;
}

/** Brings the fields that count one of the `touched` groups up to date. */
void updateCounts(std::span<std::byte> bytes, const XasMsgFields &fields,
                  const std::vector<const XasMsgGroup *> &touched,
                  const std::vector<XmsAssignment> &assignments)
{
    for (const XasMsgField &field : fields.fields) {
        const bool isTouched = std::ranges::find(touched, field.counts) != touched.end();
        const bool isNamed =
            std::ranges::find(assignments, field.name, &XmsAssignment::name) != assignments.end();
        if (field.counts != nullptr && isTouched && !isNamed)
            msgStoreNumber(bytes, field.place, usedElements(bytes, *field.counts));
    }
}

} // namespace

std::uint32_t xmsTypeFromText(std::string_view text)
{
    if (const auto msgtype = msgTypeFromText(text))
        return *msgtype;
    complain("no message type is called \"" + std::string{text} + "\"" +
             xmsDidYouMean(comparable(text), shortTypeNames()) + "; xms types lists them");
}

std::vector<XmsAssignment> xmsParseAssignments(const std::vector<std::string> &arguments)
{
    std::vector<XmsAssignment> assignments;
    for (const std::string &argument : arguments) {
        const std::size_t equals = argument.find('=');
        if (equals == 0 || equals == std::string::npos)
            complain("\"" + argument + "\" is not of the form field=value");
        assignments.push_back({argument.substr(0, equals), argument.substr(equals + 1)});
    }
    return assignments;
}

XasMessage xmsDefaultRecord(std::uint32_t msgtype)
{
    XasMessage record{};
    record.xH.msgtype = msgtype;
    if (const XasMsgFields *fields = msgFieldsOf(msgtype))
        msgSetDefaults(std::as_writable_bytes(std::span{&record, 1}), *fields);
    return record;
}

void xmsAssignIn(std::span<std::byte> block, const XasMsgFields &fields,
                 const std::vector<XmsAssignment> &assignments, XasValueCheck check)
{
    std::vector<const XasMsgGroup *> touched;
    for (const XmsAssignment &assignment : assignments) {
        const XasMsgFieldAt where = findField(fields, assignment.name);
        if (!xasIsUsed(block, where))
            msgSetElementDefaults(block, fields, *where.field->group, where.element);
        const std::string complaint = msgSetValue(block, where, assignment.value, check);
        if (!complaint.empty())
            complain(assignment.name + ": " + complaint);
        touched.push_back(where.field->group);
    }
    updateCounts(block, fields, touched, assignments);
}

void xmsAssign(XasMessage &record, const std::vector<XmsAssignment> &assignments, XasValueCheck check)
{
    if (assignments.empty())
        return;
    xmsAssignIn(std::as_writable_bytes(std::span{&record, 1}), fieldsToSet(record.xH.msgtype), assignments,
                check);
}

void xmsSetRawPayload(XasMessage &record, std::string_view hex)
{
    const auto bytes = xmsFromHex(hex);
    if (!bytes)
        complain("the raw payload is not a row of whole bytes in hexadecimal");
    if (bytes->size() > XAS_PAYLOAD_SIZE)
        complain("the raw payload has " + std::to_string(bytes->size()) + " bytes, there is room for " +
                 std::to_string(XAS_PAYLOAD_SIZE));
    record.payload = {};
    std::ranges::copy(*bytes, record.payload.begin());
}
