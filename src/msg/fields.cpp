#include "msg/fields.h"

#include "msg/fields_subjects.h"

#include <algorithm>
#include <array>

namespace {

std::string fullName(const XasMsgField &field, std::size_t element)
{
    if (!field.isRepeated())
        return std::string{field.name};
    const std::string prefix = std::string{field.group->name} + std::to_string(element + 1);
    return field.name.empty() ? prefix : prefix + "." + std::string{field.name};
}

XasMsgFieldAt fieldAt(const XasMsgField &field, std::size_t element)
{
    const std::size_t shift = element * field.group->stride;
    return {fullName(field, element), &field, {field.place.offset + shift, field.place.width}, element};
}

/** Appends the fields of one group, element after element; they stand together in the table. */
void appendGroup(std::span<const XasMsgField> members, std::vector<XasMsgFieldAt> &list)
{
    for (std::size_t element = 0; element < members.front().group->count(); ++element) {
        for (const XasMsgField &field : members)
            list.push_back(fieldAt(field, element));
    }
}

/** The types that are described, in the order of their numbers. */
const std::array DESCRIBED = {
    &XAS_ETH_FIELDS,         &XAS_HOSTNAME_FIELDS,     &XAS_DNS_FIELDS,
    &XAS_FIREWALL_FIELDS,    &XAS_IPFILTER_SET_FIELDS, &XAS_IPFILTER_ASSIGN_FIELDS,
    &XAS_ROUTING_FIELDS,     &XAS_VPN_FIELDS,          &XAS_TIMEZONE_FIELDS,
    &XAS_NTP_FIELDS,         &XAS_SYSLOG_FIELDS,       &XAS_SNMP_FIELDS,
    &XAS_NFS_FIELDS,         &XAS_CIFS_FIELDS,         &XAS_AUTH_FIELDS,
    &XAS_LOCALUSERS_FIELDS,  &XAS_NIS_FIELDS,          &XAS_LDAP_FIELDS,
    &XAS_RADIUS_FIELDS,      &XAS_KERBEROS_FIELDS,     &XAS_TACACS_FIELDS,
    &XAS_APPLICATION_FIELDS, &XAS_USER_FIELDS,         &XAS_USERLIST_FIELDS,
    &XAS_NAT_NOTIFY_FIELDS,  &XAS_NOTIFY_FIELDS,       &XAS_ACKNAK_FIELDS,
};

} // namespace

const XasMsgFields *xasMsgFieldsOf(std::uint32_t msgtype)
{
    const auto found = std::ranges::find(DESCRIBED, msgtype, &XasMsgFields::msgtype);
    return found == DESCRIBED.end() ? nullptr : *found;
}

std::vector<XasMsgFieldAt> xasMsgListFields(const XasMsgFields &fields)
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
            list.push_back(fieldAt(*field, 0));
        field = next;
    }
    return list;
}

std::optional<XasMsgFieldAt> xasMsgFindField(const XasMsgFields &fields, std::string_view name)
{
    for (XasMsgFieldAt &where : xasMsgListFields(fields)) {
        if (where.name == name)
            return std::move(where);
    }
    return std::nullopt;
}

XasPlace xasMsgElementPlace(const XasMsgGroup &group, std::size_t element)
{
    return {group.place.offset + element * group.stride, group.stride};
}

bool xasMsgIsZero(std::span<const std::byte> record, XasPlace place)
{
    return std::ranges::all_of(record.subspan(place.offset, place.width),
                               [](std::byte byte) { return byte == std::byte{0}; });
}

bool xasMsgIsUsed(std::span<const std::byte> record, const XasMsgFieldAt &where)
{
    const XasMsgGroup &group = *where.field->group;
    return group.fixed || !xasMsgIsZero(record, xasMsgElementPlace(group, where.element));
}
