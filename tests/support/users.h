/** Local users as tests describe them. */
#ifndef XAS_TEST_SUPPORT_USERS_H
#define XAS_TEST_SUPPORT_USERS_H

#include "auth/user_message.h"

#include <string_view>

/** The logins of local users, one a line. */
inline constexpr const char *XAS_USER_LIST = "/etc/.lusers";

inline XasUserRecord xasTestUser(std::string_view login, std::string_view password = {},
                                 std::uint32_t uid = 501)
{
    XasUserRecord user{};
    login.copy(user.login, sizeof user.login);
    password.copy(user.password, sizeof user.password);
    user.uid = uid;
    return user;
}

#endif
