/**
 * Files of "KEY=value" lines in which some keys get new values and everything else stays: the old lines of
 * those keys are replaced where they stand. A key that the file does not have is not added.
 */
#ifndef XAS_FILES_KEY_LINES_H
#define XAS_FILES_KEY_LINES_H

#include <span>
#include <string>
#include <string_view>

/** The new line of a key, its line feed included. */
struct XasKeyLine {
    std::string_view key;
    std::string line;
};

/** The new text of such a file. The key of an old line is its first token between `delimiters`; a commented
 * line begins with another token and so stays as it is. */
std::string xasReplaceKeyLines(std::string_view oldText, std::string_view delimiters,
                               std::span<const XasKeyLine> keyLines);

#endif
