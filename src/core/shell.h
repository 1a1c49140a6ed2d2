/**
 * Shell commands. A command is built from literals of this program and from words that are quoted where they
 * need it; there is no way to put other text into one, so nothing from a message can be read as shell syntax.
 */
#ifndef XAS_CORE_SHELL_H
#define XAS_CORE_SHELL_H

#include <cstddef>
#include <string>
#include <string_view>

/** A text that stands in the source code. */
class XasLiteral {
  public:
    // NOLINTNEXTLINE(google-explicit-constructor,hicpp-explicit-conversions): a literal is written as one
    consteval XasLiteral(const char *literal) : chars{literal} {}
    [[nodiscard]] constexpr std::string_view view() const { return chars; }

  private:
    std::string_view chars;
};

class XasShellCommand {
  public:
    explicit XasShellCommand(XasLiteral text) : line{text.view()} {}

    XasShellCommand &text(XasLiteral text);

    /**
     * Appends one word. A text of letters, digits and "_-.,:/@%+=" that does not begin with "-" stands as it
     * is; any other text, the empty one included, is quoted as one shell word.
     */
    XasShellCommand &word(std::string_view text);

    /** Appends one word in single quotes, quotes inside it escaped. */
    XasShellCommand &quoted(std::string_view text);

    XasShellCommand &number(long long value);

    /**
     * Fits the line into a buffer of `size` bytes, terminating NUL included: a line without escapes is cut
     * there. A longer one with a quoted or escaped word is left alone, and false returned: it must not be
     * run.
     */
    [[nodiscard]] bool fit(std::size_t size);

    [[nodiscard]] const std::string &str() const { return line; }

  private:
    std::string line;
    bool escaped = false;
};

/**
 * Runs a command with "/bin/sh -c" and waits for it, serving signals. Returns the wait status; that of an
 * exit with 127 when the shell cannot be run; -1 when no child can be made or waited for.
 */
int xasSystem(const XasShellCommand &command);

/** True when the wait status is an exit with status 0. */
bool xasExitedWell(int status);

/** True when xasSystem could not run the shell; a command that the shell does not find is not meant. */
bool xasShellNotRun(int status);

#endif
