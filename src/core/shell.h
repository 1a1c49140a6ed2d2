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

    /** Appends one word. A text of letters, digits and "_-.,:/@%+=" that does not begin with "-" stands as it
     * is; any other text, the empty one included, is quoted as one shell word. */
    XasShellCommand &word(std::string_view text);

    /** Appends one word in single quotes, quotes inside it escaped. */
    XasShellCommand &quoted(std::string_view text);

    XasShellCommand &number(long long value);

    /** Fits the line into a buffer of `size` bytes, terminating NUL included: a line without escapes is cut
     * there. A longer one with a quoted or escaped word is left alone, and false returned: it must not be
     * run. */
    [[nodiscard]] bool fit(std::size_t size);

    [[nodiscard]] const std::string &str() const { return line; }

  private:
    std::string line;
    bool escaped = false;
};

/** How a command ended. */
class [[nodiscard]] XasExitStatus {
  public:
    explicit constexpr XasExitStatus(int waitStatus) : status{waitStatus} {}

    /** It exited with status 0. */
    [[nodiscard]] constexpr bool exitedWell() const { return status == 0; }

    /** The shell could not be run; a command that the shell does not find is not meant. */
    [[nodiscard]] bool shellNotRun() const;

    /** As waitpid gives it; -1 when no child could be made or waited for. */
    [[nodiscard]] constexpr int waitStatus() const { return status; }

  private:
    int status;
};

/** Of a command that was not run at all. */
inline constexpr XasExitStatus XAS_NOT_RUN{-1};

/** Runs a command with "/bin/sh -c" and waits for it, serving signals. The child of a shell that cannot be
 * run exits with 127. */
XasExitStatus xasSystem(const XasShellCommand &command);

/** The same for a command on whose end nothing depends. */
void xasTrySystem(const XasShellCommand &command);

#endif
