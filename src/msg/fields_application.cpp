/** XMSG_APPLICATION: stop, and perhaps start again, one of five applications that have no settings here. */
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

struct XasApplicationPayload {
    std::uint32_t application;
    std::uint32_t start;
};
static_assert(offsetof(XasApplicationPayload, start) + XAS_PAYLOAD_OFFSET == 124);

constexpr XasValueName APPLICATIONS[] = {
    {0, "xdd"}, {1, "xld"}, {2, "snmptrapd"}, {3, "portmap"}, {4, "xpb"}};

constexpr XasMsgField FIELDS[] = {
    {.name = "application",
     .place = XAS_PLACE(XasApplicationPayload, application),
     .kind = choice,
     .meaning = "which application; xpb starts only on models that have it",
     .names = APPLICATIONS},
    {.name = "start",
     .place = XAS_PLACE(XasApplicationPayload, start),
     .kind = flag,
     .meaning = "yes: (re)start it, no: stop it",
     .initial = "yes"},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_APPLICATION_FIELDS = {.msgtype = XMSG_APPLICATION,
                                             .meaning = "start or stop an application",
                                             .fields = FIELDS,
                                             .stored = false};
