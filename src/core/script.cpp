#include "core/script.h"

#include "core/child.h"
#include "core/command_line.h"
#include "core/log.h"
#include "core/wait.h"

#include <sys/wait.h>
#include <unistd.h>

namespace {

/** What goes wrong here ends the child, never goes on as a second one of us. */
[[noreturn]] void execScript(XasArguments &arguments) noexcept
{
    const char *program = arguments.words.front().c_str();
    xasLogInfo("Running %s\n", program);
    ::execvp(program, arguments.vector().data());
    xasLogError("exec %s failed\n", program);
    ::_exit(XAS_EXEC_FAILED);
}

int scriptResult(const char *program, int status)
{
    if (!WIFEXITED(status)) {
        xasLogError("error calling script %s\n", program);
        return -1;
    }
    if (WEXITSTATUS(status) != 0)
        xasLogError("error %d calling script %s\n", WEXITSTATUS(status), program);
    return WEXITSTATUS(status);
}

} // namespace

int xasRunScript(const std::optional<std::string> &commandLine)
{
    if (!commandLine) {
        xasLogError("NULL configuration script\n");
        return -1;
    }
    XasArguments arguments = xasBuildArguments(*commandLine);
    if (arguments.words.empty()) {
        xasLogError("Error building script %s argument list\n", commandLine->c_str());
        return -1;
    }
    const char *program = arguments.words.front().c_str();
    const pid_t pid = xasFork();
    if (pid < 0) {
        xasLogError("fork %s script failed\n", program);
        return 0;
    }
    if (pid == 0)
        execScript(arguments);
    int status = 0;
    if (!xasWaitForChild(pid, status)) {
        xasLogError("error waiting for script %s to finish\n", program);
        return -1;
    }
    return scriptResult(program, status);
}
