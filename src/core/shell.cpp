#include "core/shell.h"

#include "core/child.h"
#include "core/wait.h"
#include "wire/text_rule.h"

#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr const char *SHELL = "/bin/sh";
constexpr int SHELL_NOT_RUN = 127;

} // namespace

XasShellCommand &XasShellCommand::text(XasLiteral text)
{
    line += text.view();
    return *this;
}

XasShellCommand &XasShellCommand::word(std::string_view text)
{
    if (xasIsPlainWord(text)) {
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

XasExitStatus xasSystem(const XasShellCommand &command)
{
    const pid_t pid = xasFork();
    if (pid < 0)
        return XAS_NOT_RUN;
    if (pid == 0) {
        ::execl(SHELL, "sh", "-c", command.str().c_str(), nullptr);
        ::_exit(SHELL_NOT_RUN);
    }
    int status = 0;
    return xasWaitForChild(pid, status) ? XasExitStatus{status} : XAS_NOT_RUN;
}

void xasTrySystem(const XasShellCommand &command)
{
    static_cast<void>(xasSystem(command));
}

bool XasExitStatus::shellNotRun() const
{
    if (status == -1)
        return true;
    // The shell itself exits so for a command that it does not find.
    return WIFEXITED(status) && WEXITSTATUS(status) == SHELL_NOT_RUN && ::access(SHELL, X_OK) != 0;
}
