/** XMSG_APPLICATION: stop, and perhaps start again, one of five applications that have no settings here. */
#ifndef XAS_DISPATCH_APPLICATION_MESSAGE_H
#define XAS_DISPATCH_APPLICATION_MESSAGE_H

#include "wire/field.h"

struct XasApplicationPayload {
    std::uint32_t application;
    std::uint32_t start;
};

namespace xasApplicationFields {

inline constexpr XasValueName APPLICATIONS[] = {
    {0, "xdd"}, {1, "xld"}, {2, "snmptrapd"}, {3, "portmap"}, {4, "xpb"}};

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD(XasApplicationPayload, application, choice,
              "which application; xpb starts only on models that have it")
        .of(APPLICATIONS),
    XAS_FIELD(XasApplicationPayload, start, flag, "yes: (re)start it, no: stop it").byDefault("yes"),
};
static_assert(xasFieldsAreSound<XasApplicationPayload>(FIELDS));

} // namespace xasApplicationFields

inline constexpr XasMsgFields XAS_APPLICATION_MESSAGE = {.msgtype = XMSG_APPLICATION,
                                                         .meaning = "start or stop an application",
                                                         .fields = xasApplicationFields::FIELDS,
                                                         .stored = false};

#endif
