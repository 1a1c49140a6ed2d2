#include "core/log.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <new>
#include <string>

#include "core/text.h"

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

/** As logText, without any memory to be had: a long text is cut. */
void logCut(int facility, int level, const char *format, va_list arguments)
{
    std::array<char, 512> text{};
    std::vsnprintf(text.data(), text.size(), format, arguments);
    std::array<char, 600> line{};
    std::snprintf(line.data(), line.size(), "%s/%s-%s", xasFacilityTag(facility).data(),
                  xasLevelTag(level).data(), text.data());
    syslog(level, "%s", line.data());
}

void logText(int facility, int level, const char *format, va_list arguments)
{
    va_list again;
    va_copy(again, arguments);
    try {
        std::string line;
        line.append(xasFacilityTag(facility)).append("/").append(xasLevelTag(level)).append("-");
        line += xasFormatV(format, arguments);
        syslog(level, "%s", line.c_str());
    } catch (const std::bad_alloc &) {
        logCut(facility, level, format, again);
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
