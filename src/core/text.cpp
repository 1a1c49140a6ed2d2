#include "core/text.h"

#include <algorithm>
#include <cstdio>

std::string xasFormatV(const char *format, va_list arguments)
{
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text(static_cast<std::size_t>(std::max(length, 0)), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    return text;
}

std::string xasFormat(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    std::string text = xasFormatV(format, arguments);
    va_end(arguments);
    return text;
}

std::string xasFormatLine(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    std::string text = xasFormatV(format, arguments);
    va_end(arguments);
    text.resize(std::min(text.size(), XAS_LINE_MAX));
    return text;
}

std::string xasBeginNewText(std::string_view oldText)
{
    constexpr std::size_t SHARE = 8; // of the old text that the new one may be longer
    constexpr std::size_t MORE_LINES = 4 * XAS_LINE_MAX;
    std::string text;
    text.reserve(oldText.size() + oldText.size() / SHARE + MORE_LINES);
    return text;
}

std::string_view xasWithoutLineEnd(std::string_view line)
{
    if (line.ends_with('\n')) {
        line.remove_suffix(1);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
    }
    return line;
}

std::string_view xasNextToken(std::string_view &rest, std::string_view delimiters)
{
    rest.remove_prefix(std::min(rest.find_first_not_of(delimiters), rest.size()));
    const std::size_t end = std::min(rest.find_first_of(delimiters), rest.size());
    const std::string_view token = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return token;
}

std::string_view xasFirstToken(std::string_view line, std::string_view delimiters)
{
    std::string_view rest = xasWithoutLineEnd(line);
    return xasNextToken(rest, delimiters);
}
