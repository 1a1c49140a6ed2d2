#include "support/words.h"

#include <cctype>

namespace {

bool isPlain(char c, std::string_view extra)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0 ||
           std::string_view{"_-.,:/@%+="}.find(c) != std::string_view::npos ||
           extra.find(c) != std::string_view::npos;
}

} // namespace

std::optional<std::vector<std::string>> xasShellWords(std::string_view line, std::string_view extra)
{
    std::vector<std::string> words;
    bool inWord = false;
    bool isQuoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (!isQuoted && c == ' ') {
            inWord = false;
            continue;
        }
        if (!inWord)
            words.emplace_back();
        inWord = true;
        if (c == '\'')
            isQuoted = !isQuoted;
        else if (!isQuoted && c == '\\' && line.substr(i + 1, 1) == "'")
            words.back() += line[++i];
        else if (isQuoted || isPlain(c, extra))
            words.back() += c;
        else
            return std::nullopt;
    }
    return isQuoted ? std::nullopt : std::optional{words};
}
