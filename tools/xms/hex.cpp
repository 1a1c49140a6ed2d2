#include "xms/hex.h"

namespace {

constexpr std::string_view DIGITS = "0123456789abcdef";
constexpr std::string_view BLANKS = " \t\r\n";

/** The digit's value, 16 or more when it is none. */
std::size_t digitValue(char digit)
{
    const bool isUpper = digit >= 'A' && digit <= 'F';
    return DIGITS.find(isUpper ? static_cast<char>(digit - 'A' + 'a') : digit);
}

} // namespace

std::string xmsToHex(std::span<const std::byte> bytes)
{
    std::string text;
    text.reserve(2 * bytes.size());
    for (const std::byte byte : bytes) {
        text += DIGITS[std::to_integer<std::size_t>(byte >> 4)];
        text += DIGITS[std::to_integer<std::size_t>(byte & std::byte{0x0F})];
    }
    return text;
}

std::string xmsToHex(const XasMessage &record)
{
    return xmsToHex(std::as_bytes(std::span{&record, 1}));
}

std::optional<std::vector<std::byte>> xmsFromHex(std::string_view text)
{
    std::vector<std::byte> bytes;
    std::size_t digits = 0;
    for (const char character : text) {
        if (BLANKS.find(character) != std::string_view::npos)
            continue;
        const std::size_t value = digitValue(character);
        if (value >= DIGITS.size())
            return std::nullopt;
        if (digits++ % 2 == 0)
            bytes.push_back(static_cast<std::byte>(value << 4));
        else
            bytes.back() |= static_cast<std::byte>(value);
    }
    if (digits % 2 != 0)
        return std::nullopt;
    return bytes;
}

std::optional<XasMessage> xmsRecordFromHex(std::string_view text)
{
    const auto bytes = xmsFromHex(text);
    if (!bytes || bytes->size() != sizeof(XasMessage))
        return std::nullopt;
    XasMessage record;
    std::memcpy(&record, bytes->data(), sizeof record);
    return record;
}
