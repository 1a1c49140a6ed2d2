#include "msg/type_names.h"

#include "wire/message_names.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace {

constexpr std::string_view PREFIX = "XMSG_";

std::string inCase(std::string_view text, int (*convert)(int))
{
    std::string converted{text};
    std::ranges::transform(converted, converted.begin(), [&](char character) {
        return static_cast<char>(convert(static_cast<unsigned char>(character)));
    });
    return converted;
}

std::optional<std::uint32_t> wholeNumber(std::string_view text)
{
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

} // namespace

std::string msgShortName(std::uint32_t msgtype)
{
    const std::string_view name = xasMsgTypeName(msgtype);
    return name.empty() ? std::to_string(msgtype) : inCase(name.substr(PREFIX.size()), &std::tolower);
}

std::string msgLongName(std::uint32_t msgtype)
{
    const std::string_view name = xasMsgTypeName(msgtype);
    return name.empty() ? "type " + std::to_string(msgtype) : std::string{name};
}

std::optional<std::uint32_t> msgTypeFromText(std::string_view text)
{
    const std::string name = inCase(text, &std::toupper);
    for (const std::string &candidate : {name, std::string{PREFIX} + name}) {
        if (const std::uint32_t msgtype = xasMsgTypeByName(candidate); msgtype != 0)
            return msgtype;
    }
    return wholeNumber(text);
}
