/** What the fields of a message type take and begin with. */
#ifndef XAS_TEST_SUPPORT_FIELDS_H
#define XAS_TEST_SUPPORT_FIELDS_H

#include "msg/values.h"
#include "support/message.h"

#include <string>

/** The values of a record that nobody has set anything in: "enabled=yes port=88". */
inline std::string xasTestDefaults(std::uint32_t msgtype)
{
    XasMessage record{};
    msgSetDefaults(xasBytesOf(record), *msgFieldsOf(msgtype));
    std::string text;
    for (const XasMsgFieldAt &where : xasListFields(*msgFieldsOf(msgtype)))
        text += (text.empty() ? "" : " ") + where.name + "=" + msgValueText(xasBytesOf(record), where);
    return text;
}

/** The number that `text` stands for in a field; "refused" when it is not allowed. */
inline std::string xasTestNumberOf(std::uint32_t msgtype, std::string_view name, std::string_view text)
{
    XasMessage record{};
    const XasMsgFieldAt where = xasTestField(msgtype, name);
    if (!msgSetValue(xasBytesOf(record), where, text).empty())
        return "refused";
    return std::to_string(msgValueNumber(xasBytesOf(record), where.place));
}

#endif
