/** XMSG_LOCALUSERS: the rules for local accounts. The users themselves travel in a second queue entry. */
#include "auth/user_payload.h"
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasMsgField FIELDS[] = {
    {.name = "enabled",
     .place = XAS_PLACE(XasLocalUsersPayload, enabled),
     .kind = flag,
     .meaning = "local accounts are used",
     .initial = "yes"},
    {.name = "order",
     .place = XAS_PLACE(XasLocalUsersPayload, order),
     .kind = number,
     .meaning = "position among the login methods, for others: the order on disk counts"},
    {.name = "first_responding",
     .place = XAS_PLACE(XasLocalUsersPayload, first_responding),
     .kind = flag,
     .meaning = "for others, as are all fields up to lockout_period"},
    {.name = "complex_passwords",
     .place = XAS_PLACE(XasLocalUsersPayload, complex_passwords),
     .kind = flag,
     .meaning = "passwords must be complex"},
    {.name = "allow_reuse",
     .place = XAS_PLACE(XasLocalUsersPayload, allow_reuse),
     .kind = flag,
     .meaning = "an old password may be used again"},
    {.name = "reuse_history",
     .place = XAS_PLACE(XasLocalUsersPayload, reuse_history),
     .kind = number,
     .meaning = "after so many others"},
    {.name = "pwd_lifetime",
     .place = XAS_PLACE(XasLocalUsersPayload, pwd_lifetime),
     .kind = number,
     .meaning = "days until a password expires"},
    {.name = "warning_period",
     .place = XAS_PLACE(XasLocalUsersPayload, warning_period),
     .kind = number,
     .meaning = "days of warning before"},
    {.name = "max_attempts",
     .place = XAS_PLACE(XasLocalUsersPayload, max_attempts),
     .kind = number,
     .meaning = "failed logins until an account is locked"},
    {.name = "lockout_period",
     .place = XAS_PLACE(XasLocalUsersPayload, lockout_period),
     .kind = number,
     .meaning = "minutes that it stays locked"},
    {.name = "users_included",
     .place = XAS_PLACE(XasLocalUsersPayload, users_included),
     .kind = flag,
     .meaning = "the accounts are made anew from the list of users"},
    {.name = "num_users",
     .place = XAS_PLACE(XasLocalUsersPayload, num_users),
     .kind = number,
     .meaning = "how many users the list has"},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_LOCALUSERS_FIELDS = {
    .msgtype = XMSG_LOCALUSERS, .meaning = "local accounts, all users", .fields = FIELDS};
