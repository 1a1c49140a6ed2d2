#include "core/shell.h"

#include "core/child.h"
#include "core/wait.h"

#include <algorithm>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr const char *SHELL = "/bin/sh";
constexpr int SHELL_NOT_RUN = 127;

bool isPlainWord(std::string_view text)
{
    constexpr std::string_view PLAIN =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-.,:/@%+=";
    return !text.empty() && !text.starts_with('-') && text.find_first_not_of(PLAIN) == std::string_view::npos;
}

} // namespace

XasShellCommand &XasShellCommand::text(XasLiteral text)
{
    line += text.view();
    return *this;
}

XasShellCommand &XasShellCommand::word(std::string_view text)
{
    if (isPlainWord(text)) {
        line += text;
        return *this;
    }
    escaped = true;
    return quoted(text);
}

XasShellCommand &XasShellCommand::quoted(std::string_view text)
{
    line += '\'';
    for (const char c : text) {
        if (c == '\'') {
            line += "'\\''";
            escaped = true;
        } else {
            line += c;
        }
    }
    line += '\'';
    return *this;
}

XasShellCommand &XasShellCommand::number(long long value)
{
    line += std::to_string(value);
    return *this;
}

bool XasShellCommand::fit(std::size_t size)
{
    if (line.size() < size)
        return true;
    if (escaped)
        return false;
    line.resize(size - 1);
    return true;
}

int xasSystem(const XasShellCommand &command)
{
    const pid_t pid = xasFork();
    if (pid < 0)
        return -1;
    if (pid == 0) {
        ::execl(SHELL, "sh", "-c", command.str().c_str(), nullptr);
        ::_exit(SHELL_NOT_RUN);
    }
    int status = 0;
    return xasWaitForChild(pid, status) ? status : -1;
}

bool xasExitedWell(int status)
{
    return status == 0;
}

bool xasShellNotRun(int status)
{
    if (status == -1)
        return true;
    // The shell itself exits so for a command that it does not find.
    return WIFEXITED(status) && WEXITSTATUS(status) == SHELL_NOT_RUN && ::access(SHELL, X_OK) != 0;
}
