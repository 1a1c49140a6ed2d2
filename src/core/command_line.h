/** Command lines of scripts and daemons as argument vectors. */
#ifndef XAS_CORE_COMMAND_LINE_H
#define XAS_CORE_COMMAND_LINE_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/** The longest command line that is run; what is appended to it counts. */
inline constexpr std::size_t XAS_COMMAND_LINE_MAX = 255;

/** Further words of a command line are dropped. */
inline constexpr std::size_t XAS_ARGUMENTS_MAX = 20;

/** A command line split into words. */
struct XasArguments {
    std::vector<std::string> words;

    /** The words as execvp takes them; valid while this object lives and is not changed. */
    [[nodiscard]] std::vector<char *> vector();
};

/** The first word of a command line, empty when there is none. A line feed belongs to a word. */
std::string_view xasProgramOf(std::string_view commandLine);

/** Splits a command line at blanks (runs count as one, tabs do not separate). A line that begins with
 * "/bin/ntpd" gets the word "-g" appended first when "/etc/ntp/step-tickers" is missing or empty: the NTP
 * daemon may then set the clock by any amount. No words when the line has none or is too long. */
XasArguments xasBuildArguments(std::string_view commandLine);

#endif
