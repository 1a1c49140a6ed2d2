#include "msg/dumps.h"

#include "auth/user_message.h"
#include "core/text.h"
#include "msg/enum_names.h"

#include <algorithm>

namespace {

unsigned long long mask(std::uint64_t ports)
{
    return ports;
}

std::string listedUserLines(const XasUserRecord &user)
{
    return xasFormat("  login: %s password: %s uid: %u listen: 0x%llx\n", xasFieldString(user.login).c_str(),
                     xasFieldString(user.password).c_str(), user.uid, mask(user.listen)) +
           xasFormat("  data: 0x%llx clear: 0x%llx outlets: 0x%x escseq: %s brkseq: %s\n", mask(user.data),
                     mask(user.clear), user.outlets, xasFieldString(user.escseq).c_str(),
                     xasFieldString(user.brkseq).c_str()) +
           xasFormat("  menu: %s dialback: %s dialback_num: %s perm: 0x%x cli: 0x%x\n",
                     xasFieldString(user.menu).c_str(), msgYesNoName(user.dialback),
                     xasFieldString(user.dialback_num).c_str(), user.perm, user.cli) +
           xasFormat("  pwd_change: %s pwd_expires: %ld pwd_login_change: %s login_attempts: %ld\n",
                     msgYesNoName(user.pwd_change), static_cast<long>(user.pwd_expires),
                     msgYesNoName(user.pwd_login_change), static_cast<long>(user.login_attempts));
}

} // namespace

std::string msgDumpLocalUsers(const XasMessage &msg, std::span<const std::byte> users)
{
    const auto payload = xasReadPayload<XasLocalUsersPayload>(msg);
    std::string text =
        xasFormat("enabled: %s order: %d first_responding: %s complex_passwords: %s num_users: %d\n",
                  msgYesNoName(payload.enabled), payload.order, msgYesNoName(payload.first_responding),
                  msgYesNoName(payload.complex_passwords), payload.num_users) +
        xasFormat("allow_reuse: %s reuse_history: %d pwd_lifetime: %d\n", msgYesNoName(payload.allow_reuse),
                  payload.reuse_history, payload.pwd_lifetime) +
        xasFormat("warning_period: %d max_attempts: %d lockout_period: %d\n", payload.warning_period,
                  payload.max_attempts, payload.lockout_period);
    const std::size_t held = std::min<std::size_t>(payload.num_users, users.size() / sizeof(XasUserRecord));
    for (std::size_t i = 0; i < held; ++i) {
        XasUserRecord user;
        std::memcpy(&user, users.data() + i * sizeof user, sizeof user);
        text += listedUserLines(user);
    }
    return text;
}

std::string msgDumpUser(const XasMessage &msg)
{
    const auto payload = xasReadPayload<XasUserPayload>(msg);
    const XasUserRecord &user = payload.user;
    return xasFormat("valid_user: %s remote_user: %s action: %s login: %s\n",
                     msgYesNoName(payload.valid_user), msgYesNoName(payload.remote_user),
                     msgUserActionName(payload.action), xasFieldString(user.login).c_str()) +
           xasFormat("password: %s uid: %d listen: 0x%llx data: 0x%llx\n",
                     xasFieldString(user.password).c_str(), static_cast<int>(user.uid), mask(user.listen),
                     mask(user.data)) +
           xasFormat("clear: 0x%llx outlets: 0x%x escseq: %s brkseq: %s menu: %s\n", mask(user.clear),
                     user.outlets, xasFieldString(user.escseq).c_str(), xasFieldString(user.brkseq).c_str(),
                     xasFieldString(user.menu).c_str());
}
