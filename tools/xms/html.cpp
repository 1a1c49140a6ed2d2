#include "xms/html.h"

#include <array>
#include <cstdint>
#include <cstdio>

namespace {

struct Character {
    std::uint32_t code = 0xFFFD;
    std::size_t size = 1; /**< bytes */
};

/** The first character of `text`, which is not empty. */
Character firstOf(std::string_view text)
{
    const auto at = [&](std::size_t i) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(text[i]));
    };
    const std::uint32_t lead = at(0);
    if (lead < 0x80)
        return {lead, 1};
    const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < size)
        return {};
    std::uint32_t code = lead & (0xFFU >> (size + 1));
    for (std::size_t i = 1; i < size; ++i) {
        if ((at(i) & 0xC0U) != 0x80)
            return {};
        code = code << 6U | (at(i) & 0x3FU);
    }
    static constexpr std::array<std::uint32_t, 5> LOWEST = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    const bool isNone = (code & 0xFFFEU) == 0xFFFE || (code >= 0xFDD0 && code <= 0xFDEF);
    return code < LOWEST[size] || code > 0x10FFFF || isSurrogate || isNone ? Character{}
                                                                           : Character{code, size};
}

bool isUnseen(std::uint32_t code)
{
    const auto isIn = [code](std::uint32_t first, std::uint32_t last) {
        return code >= first && code <= last;
    };
    return code == 0xAD || code == 0x61C || code == 0x180E || code == 0xFEFF || isIn(0x200B, 0x200F) ||
           isIn(0x2028, 0x202E) || isIn(0x2060, 0x206F) || isIn(0xFFF9, 0xFFFB) || isIn(0xE0000, 0xE0FFF);
}

std::string numbered(const char *form, std::uint32_t code)
{
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), form, static_cast<unsigned>(code));
    return text.data();
}

std::string shown(std::uint32_t code, std::string_view bytes)
{
    switch (code) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\'':
        return "&#39;";
    case '\n':
    case '\t':
        return std::string{bytes};
    case 0xFFFD:
        return "\xEF\xBF\xBD";
    default:
        if (code < 0x20 || (code >= 0x7F && code <= 0x9F))
            return numbered("\\x%02x", code);
        return isUnseen(code) ? numbered("[U+%04X]", code) : std::string{bytes};
    }
}

} // namespace

std::string xmsHtml(std::string_view text)
{
    std::string html;
    while (!text.empty()) {
        const Character first = firstOf(text);
        html += shown(first.code, text.substr(0, first.size));
        text.remove_prefix(first.size);
    }
    return html;
}
