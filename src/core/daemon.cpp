#include "core/daemon.h"

#include "core/assert.h"
#include "core/child.h"
#include "core/command_line.h"
#include "core/log.h"
#include "core/pid_file.h"
#include "core/text.h"
#include "core/utils.h"
#include "core/wait.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <sched.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

constexpr auto START_WAIT = 200ms;
constexpr auto TERM_WAIT = 100ms;
constexpr auto KILL_WAIT = 1000ms;
constexpr auto RESTART_WAIT = 1000ms;
constexpr auto PID_FILE_WAIT = 200ms;
constexpr int RESTARTS_MAX = 10;

/** The application whose daemons start and die without a log line. */
constexpr std::string_view SYSTEM_LOGGER = "syslog";

bool isLogged(const XasApp &app)
{
    return app.name != SYSTEM_LOGGER;
}

bool isFilled(const std::string &path)
{
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && status.st_size > 0;
}

/** What goes wrong here ends the child, never goes on as a second one of us. */
[[noreturn]] void execDaemon(XasArguments &arguments) noexcept
{
    const char *program = arguments.words.front().c_str();
    ::execvp(program, arguments.vector().data());
    xasLogError("execvp(%s,..) failed\n", program);
    ::_exit(XAS_EXEC_FAILED);
}

/** A server that has put itself in the background runs on under the pid of its pid file. */
bool adoptServer(XasDaemon &daemon)
{
    const bool isNmbd = daemon.exe.find("nmbd") != std::string::npos;
    if (!isNmbd && daemon.exe.find("smbd") == std::string::npos)
        return false;
    xasWait(PID_FILE_WAIT);
    const char *server = isNmbd ? "nmbd" : "smbd";
    const pid_t pid = xasRunningServer(xasFormat("/var/run/%s.pid", server), server);
    if (pid == 0)
        return false;
    daemon.pid = pid;
    daemon.running = 1;
    return true;
}

void restartDaemon(XasDaemon &daemon, const XasApp &app)
{
    if (daemon.restarts >= RESTARTS_MAX)
        return;
    xasWait(RESTART_WAIT);
    ++daemon.restarts;
    daemon.pid = xasStartDaemon(&daemon, app);
    if (daemon.pid < 0)
        xasLogError("Error restarting app\n");
}

/** Logs how a daemon ended; false for an event that is no end. */
bool logExit(const XasApp &app, pid_t pid, int status)
{
    const char *how = WIFEXITED(status) ? "WIFEXITED" : "WIFSIGNALED";
    if (!WIFEXITED(status) && !WIFSIGNALED(status)) {
        xasLogError("Unknown event for PID %d\n", pid);
        return false;
    }
    if (isLogged(app))
        xasLogInfo("PID[%d] %s on sig %s\n", pid, how, strsignal(SIGCHLD));
    return true;
}

void daemonExited(XasDaemon &daemon, const XasApp &app, int status)
{
    if (!logExit(app, daemon.pid, status))
        return;
    daemon.running = 0;
    daemon.pid = -1;
    if (daemon.stopping == 0 && !adoptServer(daemon))
        restartDaemon(daemon, app);
}

/** A SMB server is no child of this process; its lock file tells whether it runs. */
void readLockFile(XasDaemon &daemon)
{
    if (daemon.exe.find("samba") == std::string::npos)
        return;
    const bool isSmbd = daemon.exe.find("smbd") != std::string::npos;
    daemon.running = isFilled(xasFormat("/var/lock/%s.pid", isSmbd ? "smbd" : "nmbd")) ? 1 : 0;
}

enum class StopStep { gone, failed, alive };

/** Sends a signal, waits and looks whether the daemon is gone. Its pid is read again before the signal. */
StopStep stopWithSignal(XasDaemon &daemon, int signal, const char *name, std::chrono::milliseconds wait)
{
    if (daemon.pid <= 0)
        return StopStep::gone;
    if (::kill(daemon.pid, signal) != 0) {
        xasLogWarning("Error sending %s to process %d\n", name, daemon.pid);
        return StopStep::failed;
    }
    xasWait(wait);
    readLockFile(daemon);
    return daemon.running == 0 ? StopStep::gone : StopStep::alive;
}

bool isDead(pid_t pid)
{
    sched_param parameters{};
    return ::sched_getparam(pid, &parameters) != 0 && errno == ESRCH;
}

} // namespace

pid_t xasStartDaemon(XasDaemon *daemon, const XasApp &app)
{
    if (daemon == nullptr || daemon->exe.empty())
        return -1;
    XasArguments arguments = xasBuildArguments(daemon->exe);
    if (!xasIsExecutable(daemon->exe) || arguments.words.empty()) {
        xasLogError("%s is not a valid executable file\n", daemon->exe.c_str());
        return -1;
    }
    const pid_t pid = xasFork();
    if (pid < 0) {
        xasLogError("fork error");
        return -1;
    }
    if (pid == 0)
        execDaemon(arguments);
    const XasHeldChild held{pid};
    daemon->pid = pid; // from now on the end of an earlier process of this record is no end of the daemon
    xasWait(START_WAIT);
    if (isLogged(app))
        xasLogInfo("[%d] %s started\n", pid, arguments.words.front().c_str());
    daemon->running = 1;
    daemon->pgrp = ::getpgrp();
    return pid;
}

int xasStopDaemon(XasDaemon *daemon)
{
    xasAssertGiven(daemon, "daemon");
    xasServeCollected();
    if (daemon->pid <= 0) {
        xasLogWarning("Invalid daemon pid %d to stop\n", daemon->pid);
        return 1;
    }
    daemon->stopping = 1;
    if (isDead(daemon->pid)) {
        xasLogWarning("%s() pid %d is not alive, assume it was killed\n", __func__, daemon->pid);
        daemon->stopping = 0;
        return 0;
    }
    StopStep step = stopWithSignal(*daemon, SIGTERM, "SIGTERM", TERM_WAIT);
    if (step == StopStep::alive)
        step = stopWithSignal(*daemon, SIGKILL, "SIGKILL", KILL_WAIT);
    if (step == StopStep::alive)
        xasLogError("Failed to kill process: %d\n", daemon->pid);
    if (step != StopStep::gone)
        return 1;
    daemon->stopping = 0;
    return 0;
}

void xasReapChild(XasAppList &apps, pid_t pid, int status)
{
    for (XasApp &app : apps) {
        for (XasDaemon &daemon : app.daemons) {
            if (daemon.pid == pid) {
                daemonExited(daemon, app, status);
                return;
            }
        }
    }
}

void xasResetRestarts(XasAppList &apps)
{
    for (XasApp &app : apps) {
        for (XasDaemon &daemon : app.daemons)
            daemon.restarts = 0;
    }
}
