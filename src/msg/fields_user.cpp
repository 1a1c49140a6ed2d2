/** XMSG_USER: one user. The record of a user is the same in the list of XMSG_LOCALUSERS. */
#include "auth/user_payload.h"
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasValueName ACTIONS[] = {{XAS_USER_ADD, "add"},
                                    {XAS_USER_EDIT, "edit"},
                                    {XAS_USER_DELETE, "delete"},
                                    {XAS_USER_PASSWORD, "password"},
                                    {XAS_USER_EDIT_CLI, "edit_clisettings"}};

constexpr XasMsgField FIELDS[] = {
    {.name = "login", .place = XAS_PLACE(XasUserPayload, user.login), .kind = text, .meaning = "login name"},
    {.name = "password",
     .place = XAS_PLACE(XasUserPayload, user.password),
     .kind = text,
     .meaning = "encrypted password; empty: none"},
    {.name = "uid", .place = XAS_PLACE(XasUserPayload, user.uid), .kind = number, .meaning = "user id"},
    {.name = "listen",
     .place = XAS_PLACE(XasUserPayload, user.listen),
     .kind = mask,
     .meaning = "ports that the user may listen to"},
    {.name = "data",
     .place = XAS_PLACE(XasUserPayload, user.data),
     .kind = mask,
     .meaning = "ports that the user may connect to directly"},
    {.name = "clear",
     .place = XAS_PLACE(XasUserPayload, user.clear),
     .kind = mask,
     .meaning = "ports that the user may clear"},
    {.name = "outlets",
     .place = XAS_PLACE(XasUserPayload, user.outlets),
     .kind = mask,
     .meaning = "outlets, for others as are all others but the sequences"},
    {.name = "escseq",
     .place = XAS_PLACE(XasUserPayload, user.escseq),
     .kind = text,
     .meaning = "escape sequence"},
    {.name = "brkseq",
     .place = XAS_PLACE(XasUserPayload, user.brkseq),
     .kind = text,
     .meaning = "break sequence"},
    {.name = "menu", .place = XAS_PLACE(XasUserPayload, user.menu), .kind = text, .meaning = "menu"},
    {.name = "dialback",
     .place = XAS_PLACE(XasUserPayload, user.dialback),
     .kind = flag,
     .meaning = "the appliance calls back"},
    {.name = "dialback_num",
     .place = XAS_PLACE(XasUserPayload, user.dialback_num),
     .kind = text,
     .meaning = "the number that it calls"},
    {.name = "perm", .place = XAS_PLACE(XasUserPayload, user.perm), .kind = mask, .meaning = "permissions"},
    {.name = "cli",
     .place = XAS_PLACE(XasUserPayload, user.cli),
     .kind = mask,
     .meaning = "permissions on the command line"},
    {.name = "pwd_change",
     .place = XAS_PLACE(XasUserPayload, user.pwd_change),
     .kind = flag,
     .meaning = "the password may be changed"},
    {.name = "pwd_expires",
     .place = XAS_PLACE(XasUserPayload, user.pwd_expires),
     .kind = integer,
     .meaning = "when the password expires"},
    {.name = "pwd_login_change",
     .place = XAS_PLACE(XasUserPayload, user.pwd_login_change),
     .kind = flag,
     .meaning = "the password must be changed at the next login"},
    {.name = "login_attempts",
     .place = XAS_PLACE(XasUserPayload, user.login_attempts),
     .kind = integer,
     .meaning = "failed logins so far"},
    {.name = "valid_user",
     .place = XAS_PLACE(XasUserPayload, valid_user),
     .kind = flag,
     .meaning = "for others"},
    {.name = "remote_user",
     .place = XAS_PLACE(XasUserPayload, remote_user),
     .kind = flag,
     .meaning = "for others"},
    {.name = "action",
     .place = XAS_PLACE(XasUserPayload, action),
     .kind = choice,
     .meaning = "what is done with the user",
     .names = ACTIONS},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

/** How many of the fields belong to the user's record; the rest is the message's own. */
constexpr std::size_t RECORD_FIELDS = std::size(FIELDS) - 3;

} // namespace

const XasMsgFields XAS_USER_FIELDS = {
    .msgtype = XMSG_USER, .meaning = "one local user", .fields = FIELDS, .stored = false};

const XasMsgFields XAS_LISTED_USER_FIELDS = {.msgtype = XMSG_LOCALUSERS,
                                             .meaning = "a user of the list",
                                             .fields = std::span{FIELDS}.first(RECORD_FIELDS)};
