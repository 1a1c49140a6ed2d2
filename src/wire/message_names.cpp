#include "wire/message_names.h"

#include "wire/message.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

using Name = std::string_view;

/** By number; 0 and 66 have none. */
constexpr auto MSG_TYPE_NAMES = [] {
    std::array<Name, XMSG_ERROR + 1> names;
#define XAS_NAME(type, number) names[type] = #type;
    XAS_MSG_TYPES(XAS_NAME)
#undef XAS_NAME
    return names;
}();

constexpr std::array ACTION_NAMES = {Name{"Set"}, Name{"Get"}, Name{"Return"}};

constexpr std::array SENDER_NAMES = {
    Name{"XCS"}, Name{"XMS"}, Name{"XWS"}, Name{"CLI"}, Name{"APP"},   Name{"LCD"},
    Name{"XLD"}, Name{"XPB"}, Name{"XDD"}, Name{"XPC"}, Name{"SNMPD"},
};

template <std::size_t N>
Name nameAt(const std::array<Name, N> &table, std::size_t index)
{
    return index < N ? table[index] : Name{};
}

} // namespace

std::string_view xasMsgTypeName(std::uint32_t msgtype)
{
    return nameAt(MSG_TYPE_NAMES, msgtype);
}

std::uint32_t xasMsgTypeByName(std::string_view name)
{
    const auto *const found = std::ranges::find(MSG_TYPE_NAMES, name);
    return found != MSG_TYPE_NAMES.end() ? static_cast<std::uint32_t>(found - MSG_TYPE_NAMES.begin()) : 0;
}

std::string_view xasActionName(std::uint32_t action)
{
    return nameAt(ACTION_NAMES, action);
}

std::string_view xasSenderName(std::uint32_t sender)
{
    return nameAt(SENDER_NAMES, sender);
}
