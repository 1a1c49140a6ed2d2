#include "xms/cli.h"

#include "xms/command_line.h"

#include <cstdlib>
#include <unistd.h>

namespace {

constexpr const char *ABOUT =
    "Talks to xasd in place of the configuration server.\n"
    "\n"
    "One process, `xms serve`, makes the message queues and owns the stored settings;\n"
    "the other commands ask it over a Unix socket.";

constexpr const char *EXAMPLES =
    "Examples:\n"
    "  xms serve &                                          make the queues, show the traffic\n"
    "  xms set hostname hostname=console1 domain=example.org\n"
    "  xms set eth eth1.source=static eth1.ip=192.168.1.10 eth1.mask=255.255.255.0\n"
    "  xms get eth                                          what is stored\n"
    "  xms get --all --yaml >settings.yaml                  all of it, for xms apply\n"
    "  xms describe eth                                     which fields and values there are\n"
    "  xms check                                            what is wrong in the application list\n"
    "\n"
    "Exit status: 0 done, the setting was applied; 1 refused by xasd, nothing stored, or a list with faults;\n"
    "2 wrong arguments or values; 3 no server, or no acknowledgement in time.";

XmsPaint paintFor(const std::string &color)
{
    const bool isPlainWanted = std::getenv("NO_COLOR") != nullptr || isatty(STDOUT_FILENO) == 0;
    const bool isColoured = color == "always" || (color == "auto" && !isPlainWanted);
    return isColoured ? XmsPaint::coloured : XmsPaint::plain;
}

void addAll(CLI::App &app, XmsCommandLine &line)
{
    app.require_subcommand(1);
    app.set_version_flag("--version", "xms " XMS_VERSION, "Print the version and exit");
    app.add_option("--socket", line.options.socket, "Where the server listens")
        ->envname("XMS_SOCKET")
        ->capture_default_str();
    app.add_option("--color", line.color, "auto (on a terminal), always or never")
        ->check(CLI::IsMember({"auto", "always", "never"}))
        ->capture_default_str();
    xmsAddSettingCommands(app, line);
    xmsAddTrafficCommands(app, line);
    app.footer(EXAMPLES); // after the commands, which would take it over
}

} // namespace

CLI::App *xmsAddCommand(CLI::App &app, XmsCommandLine &line, const char *name, const char *help,
                        std::function<XmsExit()> run)
{
    CLI::App *command = app.add_subcommand(name, help);
    command->callback([&line, run = std::move(run)] { line.run = run; });
    command->add_flag("--json", line.options.json, "Print JSON, one object a line");
    command->fallthrough(); // --socket and --color may stand behind the command too
    return command;
}

void xmsAddTimeout(CLI::App &command, double &seconds)
{
    command.add_option("--timeout", seconds, "Seconds to wait for the acknowledgement")
        ->check(CLI::Range(0.0, 86400.0))
        ->capture_default_str();
}

void xmsAddSecrets(CLI::App &command, XmsCommandLine &line, const char *help)
{
    command.add_flag("--secrets", line.options.secrets, help);
}

void xmsAddLogs(CLI::App &command, XmsCommandLine &line)
{
    command
        .add_option("--log", line.options.logs,
                    "Log file to follow, by default /var/log/sw and /var/log/general; may be repeated")
        ->allow_extra_args(false) // what follows is not another one
        ->take_all();
}

int xmsMain(int argc, char **argv)
{
    CLI::App app{ABOUT, "xms"};
    XmsCommandLine line;
    addAll(app, line);
    try {
        app.parse(argc, argv);
        line.options.paint = paintFor(line.color);
        return static_cast<int>(line.run());
    } catch (const CLI::ParseError &error) {
        return static_cast<int>(app.exit(error) == 0 ? XmsExit::applied : XmsExit::usage);
    } catch (const XmsError &error) {
        std::fprintf(stderr, "xms: %s\n", error.what());
        return static_cast<int>(error.status);
    }
}
