/** Text in C's manner where the system's formats ask for it: printf formatting, bounded lines, tokens. */
#ifndef XAS_CORE_TEXT_H
#define XAS_CORE_TEXT_H

#include <cstdarg>
#include <cstddef>
#include <string>
#include <string_view>

/** The longest line that an editor reads or builds in one piece, without the terminating NUL. */
inline constexpr std::size_t XAS_LINE_MAX = 511;

/** The text that printf would write. */
[[gnu::format(printf, 1, 2)]] std::string xasFormat(const char *format, ...);
std::string xasFormatV(const char *format, va_list arguments);

/** As xasFormat, cut to XAS_LINE_MAX characters: a line built by an editor. */
[[gnu::format(printf, 1, 2)]] std::string xasFormatLine(const char *format, ...);

/** `line` without its line end ("\n" or "\r\n"). */
std::string_view xasWithoutLineEnd(std::string_view line);

/**
 * Takes the next token off `rest`, as strtok does: leading delimiters are skipped, the token ends at the next
 * one, which is removed with it. Empty when no token is left.
 */
std::string_view xasNextToken(std::string_view &rest, std::string_view delimiters);

/** The first token of a line; its line end is never part of a token. */
std::string_view xasFirstToken(std::string_view line, std::string_view delimiters);

/** An empty text with room for what is made of `oldText` by changing a few of its lines, so that it need not
 * be moved as it grows. */
std::string xasBeginNewText(std::string_view oldText);

/** Calls `use` with every piece of `text` that an fgets loop would see with room for `longest` characters:
 * lines with their line feed, a longer line in pieces. A piece ends at an embedded NUL, as it does for C's
 * text functions. */
template <class Use>
void xasForEachLine(std::string_view text, Use use, std::size_t longest = XAS_LINE_MAX)
{
    const bool hasNul = text.find('\0') != std::string_view::npos;
    while (!text.empty()) {
        const std::string_view window = text.substr(0, longest);
        const std::size_t feed = window.find('\n');
        const std::string_view piece = window.substr(0, feed == std::string_view::npos ? feed : feed + 1);
        use(hasNul ? piece.substr(0, piece.find('\0')) : piece);
        text.remove_prefix(piece.size());
    }
}

#endif
