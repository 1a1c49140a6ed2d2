/** A line of the log, as tests expect and compare it. */
#ifndef XAS_TEST_SUPPORT_LOG_LINE_H
#define XAS_TEST_SUPPORT_LOG_LINE_H

#include "support/test.h"

#include <ostream>
#include <syslog.h>

struct XasLogLine {
    int priority;     /**< as given to syslog; read off /dev/log it includes the facility */
    std::string text; /**< exactly as sent, its line feed (or the lack of one) included */

    bool operator==(const XasLogLine &) const = default;
};

inline std::ostream &operator<<(std::ostream &out, const XasLogLine &line)
{
    return out << '<' << line.priority << '>' << testing::PrintToString(line.text);
}

/** The daemon's own lines, by their text behind the prefix. */
inline XasLogLine xasErrorLine(std::string_view text)
{
    return {LOG_ERR, "sw/err-" + std::string{text}};
}
inline XasLogLine xasWarningLine(std::string_view text)
{
    return {LOG_WARNING, "sw/warn-" + std::string{text}};
}
inline XasLogLine xasInfoLine(std::string_view text)
{
    return {LOG_INFO, "sw/info-" + std::string{text}};
}

#endif
