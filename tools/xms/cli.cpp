#include "xms/cli.h"

#include "xms/check.h"
#include "xms/commands.h"
#include "xms/describe.h"
#include "xms/man.h"
#include "xms/markdown.h"
#include "xms/preview.h"
#include "xms/record.h"
#include "xms/replay.h"
#include "xms/serve.h"
#include "xms/settings_text.h"
#include "xms/socket.h"
#include "xms/watch.h"

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <functional>
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
    "  xms describe eth                                     which fields and values there are\n"
    "  xms check                                            what is wrong in the application list\n"
    "\n"
    "Exit status: 0 done, the setting was applied; 1 refused by xasd, nothing stored, or a list with faults;\n"
    "2 wrong arguments or values; 3 no server, or no acknowledgement in time.";

constexpr const char *SET_HELP =
    "Fields that are not named keep the values of the stored record of the type; when nothing is\n"
    "stored, or with --fresh, they start from their defaults (xms describe TYPE shows them). The\n"
    "record is stored once xasd has applied it. Types that are never answered are only sent.";

/** Everything the command line can say. */
struct CommandLine {
    XmsOptions options{.socket = XMS_DEFAULT_SOCKET};
    std::string color = "auto";
    bool keepQueues = false;
    bool quiet = false;
    bool markdown = false;
    bool settings = false;
    bool man = false;
    XmsWatchOptions watch;
    std::string type;
    std::vector<std::string> assignments;
    XmsSetOptions set;
    std::string recording;
    std::string list;
    std::string root;
    std::function<XmsExit()> run;
};

XmsPaint paintFor(const std::string &color)
{
    const bool isPlainWanted = std::getenv("NO_COLOR") != nullptr || isatty(STDOUT_FILENO) == 0;
    const bool isColoured = color == "always" || (color == "auto" && !isPlainWanted);
    return isColoured ? XmsPaint::coloured : XmsPaint::plain;
}

XmsExit print(const std::string &text)
{
    std::fputs(text.c_str(), stdout);
    return XmsExit::applied;
}

CLI::App *addCommand(CLI::App &app, CommandLine &line, const char *name, const char *help,
                     std::function<XmsExit()> run)
{
    CLI::App *command = app.add_subcommand(name, help);
    command->callback([&line, run = std::move(run)] { line.run = run; });
    command->add_flag("--json", line.options.json, "Print JSON, one object a line");
    command->fallthrough(); // --socket and --color may stand behind the command too
    return command;
}

void addServe(CLI::App &app, CommandLine &line)
{
    CLI::App *serve = addCommand(app, line, "serve",
                                 "Make the queues, own the store, forward settings, show the traffic", [&] {
                                     xmsServe({.socket = line.options.socket,
                                               .keepQueues = line.keepQueues,
                                               .quiet = line.quiet,
                                               .json = line.options.json,
                                               .paint = line.options.paint});
                                     return XmsExit::applied;
                                 });
    serve->add_flag("--keep", line.keepQueues, "Leave the queues at the end, for an xasd that runs on");
    serve->add_flag("-q,--quiet", line.quiet, "Do not show the traffic");
    serve->footer("The store is the directory /r58/store, or what XMS_STORE names.\n"
                  "Ends at SIGINT and SIGTERM.");
}

void addTimeout(CLI::App &command, CommandLine &line)
{
    command.add_option("--timeout", line.set.timeoutSeconds, "Seconds to wait for the acknowledgement")
        ->check(CLI::Range(0.0, 86400.0))
        ->capture_default_str();
}

void addSetting(CLI::App &command, CommandLine &line)
{
    command.add_option("TYPE", line.set.type, "Message type: hostname, XMSG_HOSTNAME or 2")->required();
    command.add_option("FIELD=VALUE", line.set.assignments, "Fields to set")->expected(0, -1);
    command.add_flag("--fresh", line.set.fresh, "Start from defaults, not from the stored record");
    command.add_flag("--force", line.set.force, "Take values that are not allowed, as long as they fit");
}

void addSet(CLI::App &app, CommandLine &line)
{
    CLI::App *set = addCommand(app, line, "set", "Send a setting and wait for its acknowledgement",
                               [&] { return xmsSetCommand(line.options, line.set); });
    set->footer(SET_HELP);
    addSetting(*set, line);
    addTimeout(*set, line);
    set->add_option("--raw", line.set.rawFile,
                    "File (- is standard input) with the payload in hexadecimal, from offset 120 on");
}

void addPreview(CLI::App &app, CommandLine &line)
{
    CLI::App *preview = app.add_subcommand("preview", "Show which files a setting would change, and how");
    preview->callback([&line] {
        line.run = [&line] {
            return xmsPreviewCommand(line.set);
        };
    });
    preview->footer("The setting is applied to a second appliance that is booted from a copy of this one's\n"
                    "files; this one stays as it is. Only for the appliance to try things on.");
    addSetting(*preview, line);
}

XmsExit describe(const CommandLine &line)
{
    if (line.settings)
        return print(xmsSettingsMarkdown());
    if (line.man)
        return print(xmsMessagesMan());
    if (line.markdown)
        return print(xmsMarkdown());
    if (line.type.empty())
        throw XmsError{XmsExit::usage, "which type? xms types lists them"};
    const std::uint32_t msgtype = xmsTypeFromText(line.type);
    return print(line.options.json ? xmsJsonLine(xmsDescribeJson(msgtype)) + "\n"
                                   : xmsDescribeText(msgtype, line.options.paint));
}

void addDescribe(CLI::App &app, CommandLine &line)
{
    CLI::App *command =
        addCommand(app, line, "describe", "Explain the fields of a type and the values they take",
                   [&] { return describe(line); });
    command->add_option("TYPE", line.type, "Message type");
    command->add_flag("--markdown", line.markdown, "All types, as a Markdown document");
    command->add_flag("--settings", line.settings,
                      "What all types change and answer, as a Markdown document");
    command->add_flag("--man", line.man, "All types, as a manual page");
}

void addQuestions(CLI::App &app, CommandLine &line)
{
    CLI::App *get = addCommand(app, line, "get", "Show the stored record of a type",
                               [&] { return xmsGetCommand(line.options, line.type, line.assignments); });
    get->add_option("TYPE", line.type, "Message type")->required();
    get->add_option("FIELD=VALUE", line.assignments, "Which one, for types with several records")
        ->expected(0, -1);

    addCommand(app, line, "types", "List all message types", [&] {
        return print(line.options.json ? xmsJsonLine(xmsTypesJson()) + "\n" : xmsTypesText());
    });

    CLI::App *watch =
        addCommand(app, line, "watch", "Show what passes between server and xasd, as it happens",
                   [&] { return xmsWatchCommand(line.options, line.watch); });
    watch->add_flag("--dump", line.watch.dump, "Show each message whole, passwords included");
    watch
        ->add_option("--type", line.watch.types,
                     "Only messages of this type, and their acknowledgements; may be repeated")
        ->expected(1)
        ->take_all();
    watch->add_option("--only", line.watch.only, "refused: only settings that are refused, with their answer")
        ->check(CLI::IsMember({"refused"}));
}

void addCheck(CLI::App &app, CommandLine &line)
{
    CLI::App *check =
        addCommand(app, line, "check", "Tell what is wrong or suspicious in an application list",
                   [&] { return xmsCheckCommand(line.options, line.list, line.root); });
    check->add_option("SYSAPP.XML", line.list, "The list, by default that of the root");
    check->add_option("--root", line.root, "Look for programs and files below this directory");
    check->footer("Ends with status 1 when there is more than hints. Without a list and a root it is this\n"
                  "machine's own list that is checked.");
}

void addRecordings(CLI::App &app, CommandLine &line)
{
    CLI::App *record =
        addCommand(app, line, "record", "Write what passes between server and xasd into a file",
                   [&] { return xmsRecordCommand(line.options, line.recording); });
    record->add_option("FILE", line.recording, "The file; - is standard output")->required();
    record->footer("Ends at SIGINT, SIGTERM and when the server ends.");

    CLI::App *replay = addCommand(app, line, "replay", "Send the settings of a recording again", [&] {
        return xmsReplayCommand(line.options, line.recording, line.set.timeoutSeconds);
    });
    replay->add_option("FILE", line.recording, "The file; - is standard input")->required();
    replay->footer("Ends with status 1 when a setting was answered differently when it was recorded.");
    addTimeout(*replay, line);
}

void addAll(CLI::App &app, CommandLine &line)
{
    app.require_subcommand(1);
    app.set_version_flag("--version", "xms " XMS_VERSION, "Print the version and exit");
    app.add_option("--socket", line.options.socket, "Where the server listens")
        ->envname("XMS_SOCKET")
        ->capture_default_str();
    app.add_option("--color", line.color, "auto (on a terminal), always or never")
        ->check(CLI::IsMember({"auto", "always", "never"}))
        ->capture_default_str();
    addServe(app, line);
    addSet(app, line);
    addPreview(app, line);
    addQuestions(app, line);
    addDescribe(app, line);
    addRecordings(app, line);
    addCheck(app, line);
    app.footer(EXAMPLES); // after the commands, which would take it over
}

} // namespace

int xmsMain(int argc, char **argv)
{
    CLI::App app{ABOUT, "xms"};
    CommandLine line;
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
