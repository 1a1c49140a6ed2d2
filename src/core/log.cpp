#include "core/log.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

#include "core/text.h"
#include "wire/control.h"

namespace {

struct Tag {
    int value;
    std::string_view name;
};

constexpr std::array FACILITY_TAGS = {
    Tag{LOG_LOCAL0, "net"},  Tag{LOG_LOCAL1, "srv"}, Tag{LOG_AUTHPRIV, "auth"}, Tag{LOG_LOCAL3, "dev"},
    Tag{LOG_LOCAL4, "diag"}, Tag{LOG_LOCAL5, "gen"}, Tag{LOG_LOCAL6, "sw"},
};

constexpr std::array LEVEL_TAGS = {
    Tag{0, ""}, Tag{LOG_INFO, "info"}, Tag{LOG_WARNING, "warn"}, Tag{LOG_ERR, "err"}, Tag{LOG_DEBUG, "dbg"},
};

template <std::size_t N>
std::string_view tagOf(const std::array<Tag, N> &table, int value)
{
    const auto *const found = std::ranges::find(table, value, &Tag::value);
    return found != table.end() ? found->name : std::string_view{};
}

/** The text with its control characters in octal, but for a line feed at its end and those within the format.
 * When a value has one, too, nobody can tell them apart, and all are. */
std::string escaped(std::string text, std::string_view format)
{
    if (std::ranges::none_of(text, xasIsControl))
        return text;
    const bool isEnded = text.ends_with('\n');
    if (isEnded)
        text.pop_back();
    format.remove_suffix(format.ends_with('\n') ? 1 : 0);
    const bool areAllOurs = std::ranges::count(text, '\n') == std::ranges::count(format, '\n');
    std::string line;
    for (const char c : text) {
        if (xasIsControl(c) && !(c == '\n' && areAllOurs))
            line += xasFormat("\\%03o", static_cast<unsigned>(c));
        else
            line += c;
    }
    return isEnded ? line + '\n' : line;
}

/** As logText(), without memory: a long text is cut, and control characters but for that at the end become
 * "?". */
void logTextOnStack(int facility, int level, const char *format, va_list arguments) noexcept
{
    std::array<char, 512> text{};
    std::vsnprintf(text.data(), text.size(), format, arguments);
    const std::size_t size = std::strlen(text.data());
    for (std::size_t i = 0; i + 1 < size; ++i)
        text.at(i) = xasIsControl(text.at(i)) ? '?' : text.at(i);
    syslog(level, "%s/%s-%s", xasFacilityTag(facility).data(), xasLevelTag(level).data(), text.data());
}

/** Nothing is thrown: what is logged is often that something failed. */
void logText(int facility, int level, const char *format, va_list arguments) noexcept
{
    va_list again;
    va_copy(again, arguments);
    try {
        std::string line;
        line.append(xasFacilityTag(facility)).append("/").append(xasLevelTag(level)).append("-");
        line += escaped(xasFormatV(format, arguments), format);
        syslog(level, "%s", line.c_str());
    } catch (const std::exception &) {
        logTextOnStack(facility, level, format, again);
    }
    va_end(again);
}

} // namespace

std::string_view xasFacilityTag(int facility)
{
    return tagOf(FACILITY_TAGS, facility);
}

std::string_view xasLevelTag(int level)
{
    return tagOf(LEVEL_TAGS, level);
}

void xasOpenLog()
{
    openlog("xasd", LOG_CONS, LOG_LOCAL6);
}

void xasLogError(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    logText(LOG_LOCAL6, LOG_ERR, format, arguments);
    va_end(arguments);
}

void xasLogWarning(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    logText(LOG_LOCAL6, LOG_WARNING, format, arguments);
    va_end(arguments);
}

void xasLogInfo(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    logText(LOG_LOCAL6, LOG_INFO, format, arguments);
    va_end(arguments);
}

int xasLogFailure(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    logText(LOG_LOCAL6, LOG_ERR, format, arguments);
    va_end(arguments);
    return 1;
}

void xasLogErrorTagged(int facility, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    logText(facility, LOG_ERR, format, arguments);
    va_end(arguments);
}
