/** A shell's own reading of a line: what its words are, when it is nothing but words. */
#ifndef XAS_FUZZ_SUPPORT_WORDS_H
#define XAS_FUZZ_SUPPORT_WORDS_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/** The words of a line of plain words and single quotes, a backslash in front of a quote included; none when
 * it holds anything else that a shell could take for syntax. `extra`: characters that are plain too. */
std::optional<std::vector<std::string>> xasShellWords(std::string_view line, std::string_view extra = {});

#endif
