#include "xms/users.h"

#include "auth/local_users.h"
#include "auth/user_message.h"
#include "msg/fields.h"
#include "xms/error.h"
#include "xms/show.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr std::string_view PREFIX = "user";

/** What the message's 16-bit count can say. */
constexpr std::size_t USERS_MAX = 65535;

struct UserField {
    std::size_t user; /**< from 0 */
    std::string field;
};

/** The parts of "user<n>.<field>"; none for any other name. */
std::optional<UserField> userFieldOf(std::string_view name)
{
    const std::size_t dot = name.find('.');
    if (!name.starts_with(PREFIX) || dot == std::string_view::npos)
        return std::nullopt;
    std::size_t number = 0;
    const char *const end = name.data() + dot;
    const auto [last, error] = std::from_chars(name.data() + PREFIX.size(), end, number);
    if (error != std::errc{} || last != end || number < 1 || number > USERS_MAX)
        return std::nullopt;
    return UserField{number - 1, std::string{name.substr(dot + 1)}};
}

constexpr std::size_t entrySize(std::size_t users)
{
    return XAS_PAYLOAD_OFFSET + users * XAS_USER_RECORD_SIZE;
}

XasUserRecord recordOf(std::span<const std::byte> entry, std::size_t user)
{
    XasUserRecord record;
    std::memcpy(&record, entry.subspan(entrySize(user)).data(), sizeof record);
    return record;
}

std::string loginOf(std::span<const std::byte> entry, std::size_t user)
{
    return xasFieldString(recordOf(entry, user).login);
}

/** The daemon would skip a user that it can make no account of. */
void requireValidUsers(std::span<const std::byte> entry)
{
    for (std::size_t user = 0; user < xmsUserCount(entry.size()).value_or(0); ++user) {
        const std::string name = std::string{PREFIX} + std::to_string(user + 1);
        if (loginOf(entry, user).empty())
            throw XmsError{XmsExit::usage, name + " has no login"};
        if (!xasIsValidUser(recordOf(entry, user)))
            throw XmsError{XmsExit::usage, name + ": Invalid user to add"};
    }
}

} // namespace

std::optional<std::size_t> xmsUserCount(std::size_t size)
{
    const bool isList = size > XAS_PAYLOAD_OFFSET && (size - XAS_PAYLOAD_OFFSET) % XAS_USER_RECORD_SIZE == 0;
    return isList ? std::optional{(size - XAS_PAYLOAD_OFFSET) / XAS_USER_RECORD_SIZE} : std::nullopt;
}

std::span<std::byte> xmsUserBlock(std::span<std::byte> entry, std::size_t user)
{
    return entry.subspan(user * XAS_USER_RECORD_SIZE, entrySize(1));
}

XmsUserEntry xmsTakeUsers(std::vector<XmsAssignment> &assignments, XasValueCheck check)
{
    XmsUserEntry entry;
    std::erase_if(assignments, [&](const XmsAssignment &assignment) {
        const auto where = userFieldOf(assignment.name);
        if (!where)
            return false;
        entry.resize(std::max(entry.size(), entrySize(where->user + 1)));
        xmsAssignIn(xmsUserBlock(entry, where->user), XAS_LISTED_USER_MESSAGE,
                    {{where->field, assignment.value}}, check);
        return true;
    });
    if (check == XasValueCheck::allowed)
        requireValidUsers(entry);
    return entry;
}

void xmsAnnounceUsers(XasMessage &record, const XmsUserEntry &users)
{
    if (record.xH.msgtype != XMSG_LOCALUSERS)
        return;
    auto payload = xasReadPayload<XasLocalUsersPayload>(record);
    payload.num_users = static_cast<std::uint16_t>(xmsUserCount(users.size()).value_or(0));
    payload.users_included = users.empty() ? 0 : 1;
    xasWritePayload(record, payload);
}

void xmsRequireMatchingCount(const XasMessage &record, const XmsUserEntry &users)
{
    if (record.xH.msgtype != XMSG_LOCALUSERS)
        return;
    const std::size_t announced = xasReadPayload<XasLocalUsersPayload>(record).num_users;
    const std::size_t given = xmsUserCount(users.size()).value_or(0);
    if (announced != given)
        throw XmsError{XmsExit::usage, "num_users is " + std::to_string(announced) + ", but " +
                                           std::to_string(given) +
                                           " users are given; xasd would wait for them"};
}

std::string xmsUsersText(std::span<const std::byte> users)
{
    const std::size_t count = xmsUserCount(users.size()).value_or(0);
    std::string text = std::to_string(count) + (count == 1 ? " user: " : " users: ");
    for (std::size_t user = 0; user < count; ++user)
        text += (user == 0 ? "" : ", ") + xmsQuoted(loginOf(users, user));
    return text;
}
