#include "files/key_lines.h"

#include "core/text.h"

#include <algorithm>

std::string xasReplaceKeyLines(std::string_view oldText, std::string_view delimiters,
                               std::span<const XasKeyLine> keyLines)
{
    std::string newText = xasBeginNewText(oldText);
    xasForEachLine(oldText, [&](std::string_view line) {
        const auto found = std::ranges::find(keyLines, xasFirstToken(line, delimiters), &XasKeyLine::key);
        newText += found != keyLines.end() ? std::string_view{found->line} : line;
    });
    return newText;
}
