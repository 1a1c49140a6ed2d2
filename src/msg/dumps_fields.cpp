/** The dump of types without lines of their own: name-and-value pairs after the description of their fields.
 */
#include "msg/dumps.h"
#include "msg/enum_names.h"
#include "msg/values.h"

#include <algorithm>
#include <array>

namespace {

/** A choice that the dump shows by the names of its enumeration, whatever the tools call its values. */
struct Enumeration {
    XasMsgType msgtype;
    std::string_view field;
    const char *(*name)(std::uint32_t value);
};

constexpr std::array ENUMERATIONS = {
    Enumeration{XMSG_ETH, "source", msgAddressSourceName},
    Enumeration{XMSG_VPN, "ike_enc", msgIPsecCipherName},
    Enumeration{XMSG_VPN, "ike_hash", msgIPsecHashName},
    Enumeration{XMSG_VPN, "ike_dhgroup", msgIPsecGroupName},
    Enumeration{XMSG_VPN, "esp_enc", msgIPsecCipherName},
    Enumeration{XMSG_VPN, "esp_hash", msgIPsecHashName},
    Enumeration{XMSG_VPN, "esp_dhgroup", msgIPsecGroupName},
    Enumeration{XMSG_SYSLOG, "local0", msgLogLevelName},
    Enumeration{XMSG_SYSLOG, "local1", msgLogLevelName},
    Enumeration{XMSG_SYSLOG, "authpriv", msgLogLevelName},
    Enumeration{XMSG_SYSLOG, "local3", msgLogLevelName},
    Enumeration{XMSG_SYSLOG, "local4", msgLogLevelName},
    Enumeration{XMSG_SYSLOG, "local5", msgLogLevelName},
};

std::string valueText(std::uint32_t msgtype, std::span<const std::byte> record, const XasMsgFieldAt &where)
{
    const auto number = static_cast<std::uint32_t>(msgValueNumber(record, where.place));
    if (where.field->kind == XasFieldKind::flag)
        return msgYesNoName(number);
    const auto *const known = std::ranges::find_if(ENUMERATIONS, [&](const Enumeration &enumeration) {
        return enumeration.msgtype == msgtype && enumeration.field == where.field->name;
    });
    return known != ENUMERATIONS.end() ? known->name(number) : msgValueText(record, where);
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
