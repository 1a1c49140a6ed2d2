/** The dump of types without lines of their own: name-and-value pairs as their fields are described. */
#include "msg/dumps.h"
#include "msg/enum_names.h"
#include "msg/values.h"

#include <algorithm>

namespace {

/** A choice that the dump shows by the names of its enumeration, whatever the tools call its values. */
struct Enumeration {
    XasMsgType msgtype;
    std::string_view field;
    XasEnumNames nameOf;
};

constexpr Enumeration ENUMERATIONS[] = {
    {XMSG_ETH, "source", msgAddressSourceName},   {XMSG_VPN, "ike_enc", msgIPsecCipherName},
    {XMSG_VPN, "ike_hash", msgIPsecHashName},     {XMSG_VPN, "ike_dhgroup", msgIPsecGroupName},
    {XMSG_VPN, "esp_enc", msgIPsecCipherName},    {XMSG_VPN, "esp_hash", msgIPsecHashName},
    {XMSG_VPN, "esp_dhgroup", msgIPsecGroupName}, {XMSG_SYSLOG, "local0", msgLogLevelName},
    {XMSG_SYSLOG, "local1", msgLogLevelName},     {XMSG_SYSLOG, "authpriv", msgLogLevelName},
    {XMSG_SYSLOG, "local3", msgLogLevelName},     {XMSG_SYSLOG, "local4", msgLogLevelName},
    {XMSG_SYSLOG, "local5", msgLogLevelName},
};

std::string valueText(std::uint32_t msgtype, std::span<const std::byte> record, const XasMsgFieldAt &where)
{
    const auto number = static_cast<std::uint32_t>(msgValueNumber(record, where.place));
    if (where.field->kind == XasFieldKind::flag)
        return msgYesNoName(number);
    const auto *const known = std::ranges::find_if(ENUMERATIONS, [&](const Enumeration &enumeration) {
        return enumeration.msgtype == msgtype && enumeration.field == where.field->name;
    });
    return known != std::end(ENUMERATIONS) ? known->nameOf(number) : msgValueText(record, where);
}

} // namespace

std::string msgDumpFields(const XasMessage &msg)
{
    const XasMsgFields *fields = msgFieldsOf(msg.xH.msgtype);
    if (fields == nullptr)
        return {};
    const auto record = std::as_bytes(std::span{&msg, 1});
    const XasMsgGroup *group = nullptr;
    std::size_t element = 0;
    std::string text;
    for (const XasMsgFieldAt &where : xasListFields(*fields)) {
        if (!xasIsUsed(record, where))
            continue;
        const bool isSameLine = where.field->group == group && where.element == element;
        if (!text.empty())
            text += isSameLine ? " " : "\n";
        group = where.field->group;
        element = where.element;
        text.append(where.name).append(": ").append(valueText(msg.xH.msgtype, record, where));
    }
    return text.empty() ? text : text + "\n";
}
