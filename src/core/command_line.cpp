#include "core/command_line.h"

#include "core/text.h"

#include <sys/stat.h>

namespace {

bool clockMayStep(std::string_view commandLine)
{
    if (!commandLine.starts_with("/bin/ntpd"))
        return false;
    struct stat status {};
    return ::stat("/etc/ntp/step-tickers", &status) != 0 || status.st_size == 0;
}

} // namespace

std::vector<char *> XasArguments::vector()
{
    std::vector<char *> pointers;
    for (std::string &word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::string_view xasProgramOf(std::string_view commandLine)
{
    return xasNextToken(commandLine, " ");
}

XasArguments xasBuildArguments(std::string_view commandLine)
{
    std::string line{commandLine};
    if (clockMayStep(line))
        line += " -g";
    XasArguments arguments;
    if (line.size() > XAS_COMMAND_LINE_MAX)
        return arguments;
    std::string_view rest = line;
    for (auto word = xasNextToken(rest, " "); !word.empty(); word = xasNextToken(rest, " ")) {
        if (arguments.words.size() == XAS_ARGUMENTS_MAX)
            break;
        arguments.words.emplace_back(word);
    }
    return arguments;
}
