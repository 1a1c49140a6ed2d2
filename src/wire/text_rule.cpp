#include "wire/text_rule.h"

#include "wire/address.h"
#include "wire/control.h"

#include <algorithm>

namespace {

bool isLine(std::string_view text)
{
    return std::ranges::none_of(text, xasIsControl);
}

bool isLineWithout(std::string_view text, std::string_view refused)
{
    return isLine(text) && text.find_first_of(refused) == std::string_view::npos;
}

bool isWordOrNothing(std::string_view text)
{
    return text.empty() || xasIsPlainWord(text);
}

bool hasLetterOrDigit(std::string_view text)
{
    return text.find_first_not_of("_-.,:/@%+=") != std::string_view::npos;
}

/** The text of one element; a host record that holds an address has none. */
std::string_view textOf(const XasTextField &field, const char *record)
{
    if (!field.isHost)
        return {record, ::strnlen(record, field.width)};
    std::uint32_t isName = 0;
    std::memcpy(&isName, record + offsetof(XasHostAddr, is_name), sizeof isName);
    const char *name = record + offsetof(XasHostAddr, value);
    return isName != 0 ? std::string_view{name, ::strnlen(name, sizeof(XasHostAddr::value))}
                       : std::string_view{};
}

} // namespace

bool xasIsPlainWord(std::string_view text)
{
    return !text.empty() && !text.starts_with('-') &&
           text.find_first_not_of(XAS_PLAIN_CHARACTERS) == std::string_view::npos;
}

bool xasHasParentComponent(std::string_view path)
{
    while (!path.empty()) {
        const std::string_view component = path.substr(0, path.find('/'));
        if (component == "..")
            return true;
        path.remove_prefix(std::min(component.size() + 1, path.size()));
    }
    return false;
}

bool xasFitsRule(XasTextRule rule, std::string_view text)
{
    switch (rule) {
    case XasTextRule::line:
        return isLine(text);
    case XasTextRule::word:
        return isWordOrNothing(text);
    case XasTextRule::host:
        return isWordOrNothing(text) && (text.empty() || hasLetterOrDigit(text));
    case XasTextRule::option:
        return isLine(text) && !text.starts_with('-');
    case XasTextRule::secret:
        return isLineWithout(text, " #");
    case XasTextRule::pamValue:
        return isLineWithout(text, " #[]");
    case XasTextRule::quoted:
        return isLineWithout(text, "\"");
    case XasTextRule::column:
        return isLineWithout(text, ":");
    case XasTextRule::path:
        return isLine(text) && !xasHasParentComponent(text);
    case XasTextRule::sequence:
        break;
    }
    return text.find_first_of("\n\r") == std::string_view::npos;
}

std::string xasElementName(std::string_view name, std::string_view group, std::size_t element)
{
    if (group.empty())
        return std::string{name};
    const std::string prefix = std::string{group} + std::to_string(element + 1);
    return name.empty() ? prefix : prefix + "." + std::string{name};
}

std::string xasFindUnfitText(std::span<const XasTextField> fields, const XasMessage &msg)
{
    const char *payload = reinterpret_cast<const char *>(msg.payload.data());
    for (const XasTextField &field : fields) {
        for (std::size_t element = 0; element < field.count; ++element) {
            const std::size_t offset = field.offset - XAS_PAYLOAD_OFFSET + element * field.stride;
            if (!xasFitsRule(field.rule, textOf(field, payload + offset)) &&
                (field.isRead == nullptr || field.isRead(msg, element)))
                return xasElementName(field.name, field.group, element);
        }
    }
    return {};
}
