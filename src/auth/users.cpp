#include "auth/users.h"

#include "auth/local_users.h"
#include "auth/user_ports.h"
#include "core/log.h"

#include <string>
#include <tuple>

namespace {

constexpr const char *INVALID_USER = "Invalid user to add\n";
constexpr const char *ADDUSER_FAILED = "adduser command failed\n";
constexpr const char *DELUSER_FAILED = "system call deluser failed \n";

std::string loginOf(const XasUserRecord &user)
{
    return xasFieldString(user.login);
}

/** One user of a full rebuild. That the command itself failed is not noticed. */
int makeListedUser(const XasUserRecord &user, XasReplyStatus *reply)
{
    std::ignore = xasAddLocalUserToList(loginOf(user)); // without it the account is made all the same
    if (xasRunAccountCommand(xasAddUserCommand(user)).shellNotRun())
        xasLogError("%s", ADDUSER_FAILED);
    return xasLocalUserPortFiles(&user, reply);
}

/** Makes all users of the message, whose records begin at `records`. */
int makeUsers(const std::byte *records, std::uint16_t count, XasReplyStatus *reply)
{
    int result = 0;
    bool refused = false;
    for (std::uint16_t i = 0; i < count; ++i) {
        XasUserRecord user;
        std::memcpy(&user, records + std::size_t{i} * sizeof user, sizeof user);
        if (xasIsValidUser(user)) {
            result = makeListedUser(user, reply);
        } else {
            xasLogError("%s", INVALID_USER);
            refused = true;
        }
    }
    return refused ? 1 : result;
}

int writePortFile(const XasUserRecord &user, XasReplyStatus *reply)
{
    if (xasLocalUserPortFiles(&user, reply) != 0)
        return xasLogFailure("Error setting port permissions for %s\n", loginOf(user).c_str());
    return 0;
}

int addUser(const XasUserRecord &user, XasReplyStatus *reply)
{
    if (xasAddLocalUserToList(loginOf(user)) != 0)
        return 1;
    const XasExitStatus status = xasRunAccountCommand(xasAddUserCommand(user));
    if (!status.exitedWell())
        return xasLogFailure("adduser command for %s, uid %d failed with code %d\n", loginOf(user).c_str(),
                             static_cast<int>(user.uid), status.waitStatus());
    return writePortFile(user, reply);
}

/** Removes the account and makes it anew. */
int remakeAccount(const XasUserRecord &user, const XasShellCommand &makeCommand)
{
    xasRemoveAccount(loginOf(user), DELUSER_FAILED);
    if (!xasRunAccountCommand(makeCommand).exitedWell())
        return xasLogFailure("%s", ADDUSER_FAILED);
    return 0;
}

int editUser(const XasUserRecord &user, XasReplyStatus *reply)
{
    return remakeAccount(user, xasEditUserCommand(user)) == 0 ? writePortFile(user, reply) : 1;
}

int deleteUser(const XasUserRecord &user)
{
    const int result = xasDeleteLocalUsers(loginOf(user));
    if (result != 0)
        xasLogError("Error deleting user: %s\n", loginOf(user).c_str());
    return result;
}

/** The port file stays as it is. */
int changePassword(const XasUserRecord &user)
{
    return remakeAccount(user, xasPasswordUserCommand(user));
}

} // namespace

int xasUpdateLocalUsersCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    xasAssertUpdate(msg, XMSG_LOCALUSERS, cfgFiles);
    const auto payload = xasReadPayload<XasLocalUsersPayload>(*msg);
    if (payload.users_included == 0)
        return 0;
    std::ignore = xasDeleteLocalUsers({}); // the users are made anew all the same
    const std::byte *records = nullptr;
    std::memcpy(&records, payload.users, sizeof records);
    return records != nullptr ? makeUsers(records, payload.num_users, reply) : 1;
}

int xasUpdateSingleLocalUsersCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    xasAssertUpdate(msg, XMSG_USER, cfgFiles);
    const auto payload = xasReadPayload<XasUserPayload>(*msg);
    const bool takesPassword = xasUserFields::isPasswordTaken(*msg, 0);
    if (!xasIsValidLogin(xasFieldText(payload.user.login)) ||
        (takesPassword && !xasIsValidPassword(xasFieldText(payload.user.password))))
        return xasLogFailure("%s", INVALID_USER);
    switch (payload.action) {
    case XAS_USER_ADD:
        return addUser(payload.user, reply);
    case XAS_USER_EDIT:
        return editUser(payload.user, reply);
    case XAS_USER_DELETE:
        return deleteUser(payload.user);
    case XAS_USER_PASSWORD:
        return changePassword(payload.user);
    default:
        xasLogError("Invalid user action %d\n", static_cast<int>(payload.action));
        return 1;
    }
}

int xasUpdateUserListCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus * /*reply*/)
{
    xasAssertUpdate(msg, XMSG_USERLIST, cfgFiles);
    return 0;
}
