#include "core/log_maintenance.h"

#include "core/daemon.h"
#include "core/file.h"
#include "core/log.h"
#include "core/shell.h"

#include <array>
#include <string_view>
#include <unistd.h>

namespace {

constexpr std::int32_t TICKS_BETWEEN_ROTATIONS = 12;

constexpr const char *ROTATION_OUTPUT = "/tmp/logrotate.txt";

/** While this file exists the output of the last rotation is kept for inspection. */
constexpr const char *KEEP_OUTPUT_MARKER = "/tmp/logrotate_debug";

std::int32_t ticks = 0;

void logRotationErrors()
{
    constexpr std::string_view ERROR_MARK = "error: ";
    const XasFile output = xasOpenFile(ROTATION_OUTPUT);
    xasLogError("error calling script /usr/sbin/logrotate\n");
    std::array<char, 256> line{};
    while (output && std::fgets(line.data(), line.size(), output.get()) != nullptr) {
        if (std::string_view{line.data()}.starts_with(ERROR_MARK))
            xasLogError("%s", line.data() + ERROR_MARK.size());
    }
}

void rotateLogs()
{
    xasLogInfo("Running /usr/sbin/logrotate\n");
    const XasShellCommand rotate{"/usr/sbin/logrotate -v /etc/logrotate.conf > /tmp/logrotate.txt 2>&1"};
    if (!xasSystem(rotate).exitedWell())
        logRotationErrors();
    if (::access(KEEP_OUTPUT_MARKER, F_OK) != 0)
        ::unlink(ROTATION_OUTPUT);
    xasTrySystem(XasShellCommand{"/bin/killall -SIGHUP syslogd"});
}

} // namespace

void xasMaintainLogs(XasAppList &apps)
{
    xasTrySystem(XasShellCommand{"/bin/cp -f /var/log/debug /var/log/devports /var/log/diag /var/log/general "
                                 "/var/log/messages /var/log/network /var/log/secure /var/log/services "
                                 "/var/log/sw /var/log/syslog /www/savelogs/"});
    if (++ticks >= TICKS_BETWEEN_ROTATIONS) {
        ticks = 0;
        rotateLogs();
        xasResetRestarts(apps);
    }
    ::alarm(XAS_ALARM_PERIOD);
}
