#include "dispatch/service.h"

#include "core/command_line.h"
#include "core/daemon.h"
#include "core/log.h"
#include "core/script.h"
#include "core/wait.h"

#include <algorithm>
#include <array>

using namespace std::chrono_literals;

namespace {

constexpr std::uint32_t SERVICE_FAILED = 1;

/** The system logger needs this long until it takes lines. */
constexpr auto LOGGER_START_WAIT = 1000ms;

struct ScriptError {
    int code;
    const char *text;
};

constexpr std::array SCRIPT_ERRORS = {
    ScriptError{-1, "Internal error applying settings"},
    ScriptError{0, "Settings applied successfully"},
    ScriptError{1, "Internal error attempting to apply settings"},
    ScriptError{20, "Internal error getting firewall configuration file"},
    ScriptError{30, "Mount/unmount of NFS share failed"},
    ScriptError{40, "Error contacting NTP server"},
    ScriptError{50, "Invalid hostname specified"},
};

/** Runs a script if there is one. Returns 0, or 1 with the reason of its exit status. */
int runServiceScript(const std::optional<std::string> &script, XasReplyStatus *reply)
{
    const int code = script ? xasRunScript(script) : 0;
    if (code == 0)
        return 0;
    xasSetReply(*reply, SERVICE_FAILED, xasScriptErrorText(code));
    return 1;
}

} // namespace

const char *xasScriptErrorText(int code)
{
    const auto *const found = std::ranges::find(SCRIPT_ERRORS, code, &ScriptError::code);
    return found != SCRIPT_ERRORS.end() ? found->text : "Error applying settings";
}

int xasStopApp(XasApp &app, XasReplyStatus *reply)
{
    if (runServiceScript(app.stopScript, reply) != 0)
        return 1;
    for (XasDaemon &daemon : app.daemons) {
        if (daemon.running == 0) {
            xasLogWarning("daemon: %s was not running under app: %s\n",
                          std::string{xasProgramOf(daemon.exe)}.c_str(), app.name.value_or("").c_str());
        } else if (xasStopDaemon(&daemon) != 0) {
            xasSetReply(*reply, SERVICE_FAILED, "Error stopping service");
            return 1;
        }
    }
    app.running = 0;
    return 0;
}

int xasStartApp(XasApp &app, XasReplyStatus *reply)
{
    if (runServiceScript(app.startScript, reply) != 0)
        return 1;
    for (XasDaemon &daemon : app.daemons) {
        daemon.restarts = 0;
        daemon.stopping = 0;
        daemon.pid = xasStartDaemon(&daemon, app);
        if (daemon.pid < 0) {
            xasLogError("Error starting %s app\n", app.name.value_or("").c_str());
            xasSetReply(*reply, SERVICE_FAILED, "Error starting service");
            return 1;
        }
    }
    if (app.name == "syslog")
        xasWait(LOGGER_START_WAIT);
    app.running = 1;
    return 0;
}
