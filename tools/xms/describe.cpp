#include "xms/describe.h"

#include "dispatch/settings.h"
#include "msg/type_names.h"
#include "msg/values.h"
#include "xms/reference.h"
#include "xms/settings_text.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr const char *TYPES_NOTE =
    "\n  application: what xasd reconfigures; - is a type that it refuses (acknowledgements and errors aside)\n"
    "  fields: how many can be set by name; - is a type that is not described, set with --raw\n";

/** The default of a field as text: its own, else what zero bytes mean. */
std::string defaultText(const XasMsgFieldAt &where)
{
    static constexpr std::array<std::byte, XAS_MESSAGE_SIZE> ZERO{};
    const XasMsgField &field = *where.field;
    return field.initial.empty() ? msgValueText(ZERO, where) : std::string{field.initial};
}

std::string choiceText(const XasMsgField &field)
{
    std::string text;
    for (const XasValueName &value : field.names)
        text += (text.empty() ? "" : ", ") + std::to_string(value.value) + " " + std::string{value.name};
    return field.range ? text + "; at most " + std::to_string(field.range->highest) : text;
}

/** What the kind and the width do not say: the values of a choice with their numbers, narrower ranges, "or
 * none". */
std::string valuesText(const XasMsgField &field)
{
    switch (field.kind) {
    case XasFieldKind::choice:
        return choiceText(field);
    case XasFieldKind::text:
        return msgAllowedText(field);
    case XasFieldKind::number:
    case XasFieldKind::integer:
    case XasFieldKind::mask:
        return field.range ? msgAllowedText(field) : "";
    case XasFieldKind::flag:
        return {};
    case XasFieldKind::ipv4:
        return field.none ? "or none" : "";
    default:
        return "or none";
    }
}

/** The name with the element's number left open: "eth<n>.ip". */
std::string openName(const XasMsgField &field)
{
    if (!field.isRepeated())
        return std::string{field.name};
    const std::string prefix = std::string{field.group->name} + "<n>";
    return field.name.empty() ? prefix : prefix + "." + std::string{field.name};
}

std::vector<std::string> fieldRow(const XasMsgField &field)
{
    const XasMsgFieldAt first{{}, &field, field.place, 0};
    const std::string initial = defaultText(first);
    const std::string values = valuesText(field);
    return {openName(field),
            std::to_string(field.place.offset),
            std::to_string(field.place.width),
            msgKindName(field),
            initial.empty() ? "-" : initial,
            std::string{field.meaning} + (values.empty() ? "" : " (" + values + ")") +
                (field.isSecret ? "; a secret" : "")};
}

XmsJson fieldJson(const XasMsgFieldAt &where)
{
    const XasMsgField &field = *where.field;
    XmsJson json = {{"name", where.name},
                    {"offset", where.place.offset},
                    {"width", where.place.width},
                    {"kind", msgKindName(field)},
                    {"default", defaultText(where)},
                    {"meaning", field.meaning},
                    {"expects", msgAllowedText(field)}};
    if (field.isSecret)
        json["secret"] = true;
    for (const XasValueName &value : field.names)
        json["values"].push_back({{"value", value.value}, {"name", value.name}});
    return json;
}

XmsJson typeJson(std::uint32_t msgtype)
{
    const XasMsgFields *fields = msgFieldsOf(msgtype);
    XmsJson json = {{"number", msgtype},
                    {"type", msgShortName(msgtype)},
                    {"name", msgLongName(msgtype)},
                    {"application", xmsApplicationText(msgtype)},
                    {"described", fields != nullptr}};
    if (fields != nullptr) {
        json["meaning"] = fields->meaning;
        json["answered"] = fields->answered;
        json["stored"] = fields->stored;
    }
    return json;
}

/** When the application is started, and what an acknowledgement may say. */
std::string resultsText(std::uint32_t msgtype)
{
    const std::string start = xmsStartText(msgtype);
    std::string text =
        start.empty() ? start : "  " + xmsApplicationText(msgtype) + " is started: " + start + "\n";
    std::vector<std::vector<std::string>> rows = xmsResultRows(msgtype);
    if (rows.empty())
        return text;
    rows.insert(rows.begin(), {"file", "when", "code", "reason"});
    return text + xmsAligned(rows);
}

} // namespace

std::vector<std::vector<std::string>> xmsFieldRows(const XasMsgFields &fields)
{
    std::vector<std::vector<std::string>> rows;
    for (const XasMsgField &field : fields.fields)
        rows.push_back(fieldRow(field));
    return rows;
}

std::vector<std::string> xmsGroupTexts(const XasMsgFields &fields)
{
    std::vector<std::string> texts;
    const XasMsgGroup *last = nullptr;
    for (const XasMsgField &field : fields.fields) {
        const XasMsgGroup *group = field.group;
        if (field.isRepeated() && group != last)
            texts.push_back(std::string{group->name} + "<n>: n is 1 to " + std::to_string(group->count()) +
                            ", " + std::to_string(group->stride) + " bytes apart; " +
                            std::string{group->meaning});
        last = group;
    }
    return texts;
}

std::string xmsApplicationText(std::uint32_t msgtype)
{
    const XasSetting *row = xasFindSetting(msgtype);
    if (row == nullptr)
        return {};
    return row->application.empty() ? "(by field)" : std::string{row->application};
}

std::string xmsHandlingText(const XasMsgFields &fields)
{
    return std::string{fields.answered ? "acknowledged" : "never answered"} +
           (fields.stored ? ", stored when applied" : ", not stored");
}

std::string xmsTypesText()
{
    std::vector<std::vector<std::string>> rows = {{"no", "type", "application", "fields", "meaning"}};
    for (const std::uint32_t msgtype : xmsNamedTypes()) {
        const XasMsgFields *fields = msgFieldsOf(msgtype);
        const std::string application = xmsApplicationText(msgtype);
        rows.push_back({std::to_string(msgtype), msgShortName(msgtype),
                        application.empty() ? "-" : application,
                        fields == nullptr ? "-" : std::to_string(xasListFields(*fields).size()),
                        fields == nullptr ? "" : std::string{fields->meaning}});
    }
    return xmsAligned(rows) + TYPES_NOTE;
}

XmsJson xmsTypesJson()
{
    XmsJson json = XmsJson::array();
    for (const std::uint32_t msgtype : xmsNamedTypes())
        json.push_back(typeJson(msgtype));
    return json;
}

std::string xmsDescribeText(std::uint32_t msgtype, XmsPaint paint)
{
    const XasMsgFields *fields = msgFieldsOf(msgtype);
    const std::string title = xmsPainted(paint, XmsInk::strong, msgLongName(msgtype));
    const std::string number = " (" + std::to_string(msgtype) + ")";
    if (fields == nullptr)
        return title + number + ": its fields are not described\n";
    std::string text =
        title + number + ": " + std::string{fields->meaning} + "\n  " + xmsHandlingText(*fields) + "\n";
    if (fields->fields.empty())
        return text + "  no fields\n" + resultsText(msgtype);
    std::vector<std::vector<std::string>> rows = {
        {"field", "offset", "bytes", "kind", "default", "meaning (values)"}};
    std::ranges::copy(xmsFieldRows(*fields), std::back_inserter(rows));
    text += xmsAligned(rows);
    for (const std::string &group : xmsGroupTexts(*fields))
        text += "  " + group + "\n";
    return text + resultsText(msgtype);
}

XmsJson xmsDescribeJson(std::uint32_t msgtype)
{
    XmsJson json = typeJson(msgtype);
    json["fields"] = XmsJson::array();
    if (const XasMsgFields *fields = msgFieldsOf(msgtype)) {
        for (const XasMsgFieldAt &where : xasListFields(*fields))
            json["fields"].push_back(fieldJson(where));
    }
    return json;
}
