#include "wire/field.h"

#include <algorithm>

XasMsgFieldAt xasFieldAt(const XasMsgField &field, std::size_t element)
{
    const std::size_t shift = element * field.group->stride;
    return {xasElementName(field.name, field.group->name, element),
            &field,
            {field.place.offset + shift, field.place.width},
            element};
}

namespace {

/** Appends the fields of one group, element after element; they stand together in the table. */
void appendGroup(std::span<const XasMsgField> members, std::vector<XasMsgFieldAt> &list)
{
    for (std::size_t element = 0; element < members.front().group->count(); ++element) {
        for (const XasMsgField &field : members)
            list.push_back(xasFieldAt(field, element));
    }
}

} // namespace

std::vector<XasMsgFieldAt> xasListFields(const XasMsgFields &fields)
{
    std::vector<XasMsgFieldAt> list;
    auto field = fields.fields.begin();
    while (field != fields.fields.end()) {
        const auto isOther = [&](const XasMsgField &other) {
            return other.group != field->group;
        };
        const auto next = field->isRepeated() ? std::find_if(field, fields.fields.end(), isOther) : field + 1;
        if (field->isRepeated())
            appendGroup({field, next}, list);
        else
            list.push_back(xasFieldAt(*field, 0));
        field = next;
    }
    return list;
}

std::optional<XasMsgFieldAt> xasFindField(const XasMsgFields &fields, std::string_view name)
{
    for (const XasMsgField &field : fields.fields) {
        if (!name.ends_with(field.name))
            continue;
        for (std::size_t element = 0; element < field.group->count(); ++element) {
            XasMsgFieldAt where = xasFieldAt(field, element);
            if (where.name == name)
                return where;
        }
    }
    return std::nullopt;
}

XasPlace xasElementPlace(const XasMsgGroup &group, std::size_t element)
{
    return {group.place.offset + element * group.stride, group.stride};
}

bool xasIsZero(std::span<const std::byte> record, XasPlace place)
{
    return std::ranges::all_of(record.subspan(place.offset, place.width),
                               [](std::byte byte) { return byte == std::byte{0}; });
}

bool xasIsUsed(std::span<const std::byte> record, const XasMsgFieldAt &where)
{
    const XasMsgGroup &group = *where.field->group;
    return group.fixed || !xasIsZero(record, xasElementPlace(group, where.element));
}
