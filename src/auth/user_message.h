/** A local user's record, and the payloads of XMSG_LOCALUSERS and XMSG_USER. */
#ifndef XAS_AUTH_USER_MESSAGE_H
#define XAS_AUTH_USER_MESSAGE_H

#include "core/msgqueue.h"
#include "wire/field.h"

struct XasUserRecord {
    char login[33];
    char password[67]; /**< encrypted, as adduser takes it; empty: none */
    std::uint32_t uid;
    std::uint64_t listen; /**< ports that the user may listen to, one bit each */
    std::uint64_t data;   /**< ports that the user may connect to directly */
    std::uint64_t clear;  /**< ports that the user may clear */
    std::uint8_t outlets; /**< this and what follows behind brkseq is for others */
    char escseq[11];      /**< escape sequence */
    char brkseq[11];      /**< break sequence */
    char menu[21];
    std::uint32_t dialback;
    char dialback_num[20];
    std::uint32_t perm;
    std::uint16_t cli;
    std::uint32_t pwd_change;
    std::int32_t pwd_expires;
    std::uint32_t pwd_login_change;
    std::int32_t login_attempts;
    std::uint32_t reserved;
};

static_assert(sizeof(XasUserRecord) == XAS_USER_RECORD_SIZE);

/** The settings of local accounts. The records themselves accompany the message. */
struct XasLocalUsersPayload {
    std::uint32_t enabled; /**< the fields before users_included are for others */
    std::uint8_t order;
    std::uint32_t first_responding;
    std::uint32_t complex_passwords;
    std::uint32_t allow_reuse;
    std::uint8_t reuse_history;
    std::uint16_t pwd_lifetime;
    std::uint8_t warning_period;
    std::uint8_t max_attempts;
    std::uint8_t lockout_period;
    std::uint8_t unused1[9];
    std::uint32_t users_included; /**< non-zero: the accounts are made anew from the records */
    std::uint16_t num_users;
    std::uint16_t unused2;
    unsigned char users[sizeof(void *)]; /**< where the records are: a pointer that is not aligned, or null */
};

/** What is done with a single user (`XasUserPayload::action`); other values are refused. */
enum XasUserAction : std::uint32_t {
    XAS_USER_ADD = 0,
    XAS_USER_EDIT = 1,
    XAS_USER_DELETE = 2,
    XAS_USER_PASSWORD = 3,
    XAS_USER_EDIT_CLI = 5 /**< refused here */
};

struct XasUserPayload {
    XasUserRecord user;
    std::uint32_t valid_user;  /**< for others */
    std::uint32_t remote_user; /**< for others */
    std::uint32_t action;      /**< XasUserAction */
};

namespace xasLocalUsersFields {

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD(XasLocalUsersPayload, enabled, flag, "local accounts are used").byDefault("yes"),
    XAS_FIELD(XasLocalUsersPayload, order, number,
              "position among the login methods, for others: the order on disk counts"),
    XAS_FIELD(XasLocalUsersPayload, first_responding, flag,
              "for others, as are all fields up to lockout_period"),
    XAS_FIELD(XasLocalUsersPayload, complex_passwords, flag, "passwords must be complex"),
    XAS_FIELD(XasLocalUsersPayload, allow_reuse, flag, "an old password may be used again"),
    XAS_FIELD(XasLocalUsersPayload, reuse_history, number, "after so many others"),
    XAS_FIELD(XasLocalUsersPayload, pwd_lifetime, number, "days until a password expires"),
    XAS_FIELD(XasLocalUsersPayload, warning_period, number, "days of warning before"),
    XAS_FIELD(XasLocalUsersPayload, max_attempts, number, "failed logins until an account is locked"),
    XAS_FIELD(XasLocalUsersPayload, lockout_period, number, "minutes that it stays locked"),
    XAS_FIELD(XasLocalUsersPayload, users_included, flag,
              "the accounts are made anew from the list of users"),
    XAS_FIELD(XasLocalUsersPayload, num_users, number, "how many users the list has"),
};
static_assert(xasFieldsAreSound<XasLocalUsersPayload>(FIELDS, {XAS_PLACE(XasLocalUsersPayload, unused1),
                                                               XAS_PLACE(XasLocalUsersPayload, unused2),
                                                               XAS_PLACE(XasLocalUsersPayload, users)}));

} // namespace xasLocalUsersFields

inline constexpr XasMsgFields XAS_LOCALUSERS_MESSAGE = {.msgtype = XMSG_LOCALUSERS,
                                                        .meaning = "local accounts, all users",
                                                        .fields = xasLocalUsersFields::FIELDS};

namespace xasUserFields {

inline constexpr XasValueName ACTIONS[] = {{XAS_USER_ADD, "add"},
                                           {XAS_USER_EDIT, "edit"},
                                           {XAS_USER_DELETE, "delete"},
                                           {XAS_USER_PASSWORD, "password"},
                                           {XAS_USER_EDIT_CLI, "edit_clisettings"}};

inline std::uint32_t actionOf(const XasMessage &msg)
{
    return xasReadPayload<XasUserPayload>(msg).action;
}

inline bool isPortFileWritten(const XasMessage &msg, std::size_t /*element*/)
{
    return actionOf(msg) == XAS_USER_ADD || actionOf(msg) == XAS_USER_EDIT;
}

inline bool isPasswordTaken(const XasMessage &msg, std::size_t element)
{
    return isPortFileWritten(msg, element) || actionOf(msg) == XAS_USER_PASSWORD;
}

inline bool isNeverRead(const XasMessage & /*msg*/, std::size_t /*element*/)
{
    return false;
}

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD_OF(XasUserPayload, user, login, text, "login name"),
    XAS_FIELD_OF(XasUserPayload, user, password, text, "encrypted password; empty: none")
        .secret()
        .readIf(isPasswordTaken),
    XAS_FIELD_OF(XasUserPayload, user, uid, number, "user id"),
    XAS_FIELD_OF(XasUserPayload, user, listen, mask, "ports that the user may listen to"),
    XAS_FIELD_OF(XasUserPayload, user, data, mask, "ports that the user may connect to directly"),
    XAS_FIELD_OF(XasUserPayload, user, clear, mask, "ports that the user may clear"),
    XAS_FIELD_OF(XasUserPayload, user, outlets, mask,
                 "outlets, for others as are all others but the sequences"),
    XAS_FIELD_OF(XasUserPayload, user, escseq, text, "escape sequence")
        .holding(XasTextRule::sequence)
        .readIf(isPortFileWritten),
    XAS_FIELD_OF(XasUserPayload, user, brkseq, text, "break sequence")
        .holding(XasTextRule::sequence)
        .readIf(isPortFileWritten),
    XAS_FIELD_OF(XasUserPayload, user, menu, text, "menu").readIf(isNeverRead),
    XAS_FIELD_OF(XasUserPayload, user, dialback, flag, "the appliance calls back"),
    XAS_FIELD_OF(XasUserPayload, user, dialback_num, text, "the number that it calls").readIf(isNeverRead),
    XAS_FIELD_OF(XasUserPayload, user, perm, mask, "permissions"),
    XAS_FIELD_OF(XasUserPayload, user, cli, mask, "permissions on the command line"),
    XAS_FIELD_OF(XasUserPayload, user, pwd_change, flag, "the password may be changed"),
    XAS_FIELD_OF(XasUserPayload, user, pwd_expires, integer, "when the password expires"),
    XAS_FIELD_OF(XasUserPayload, user, pwd_login_change, flag,
                 "the password must be changed at the next login"),
    XAS_FIELD_OF(XasUserPayload, user, login_attempts, integer, "failed logins so far"),
    XAS_FIELD(XasUserPayload, valid_user, flag, "for others"),
    XAS_FIELD(XasUserPayload, remote_user, flag, "for others"),
    XAS_FIELD(XasUserPayload, action, choice, "what is done with the user").of(ACTIONS),
};
static_assert(xasFieldsAreSound<XasUserPayload>(FIELDS));

/** How many of the fields belong to the user's record; the rest is the message's own. */
inline constexpr std::size_t RECORD_FIELDS = std::size(FIELDS) - 3;

} // namespace xasUserFields

inline constexpr XasMsgFields XAS_USER_MESSAGE = {
    .msgtype = XMSG_USER, .meaning = "one local user", .fields = xasUserFields::FIELDS, .stored = false};

inline constexpr XasMsgFields XAS_LISTED_USER_MESSAGE = {
    .msgtype = XMSG_LOCALUSERS,
    .meaning = "a user of the list",
    .fields = std::span{xasUserFields::FIELDS}.first(xasUserFields::RECORD_FIELDS)};

inline constexpr XasMsgFields XAS_USERLIST_MESSAGE = {
    .msgtype = XMSG_USERLIST, .meaning = "the list of users changed", .stored = false};

#endif
