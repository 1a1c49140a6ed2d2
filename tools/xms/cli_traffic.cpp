// The commands about the traffic and the application list.
#include "xms/check.h"
#include "xms/command_line.h"
#include "xms/replay.h"
#include "xms/report.h"
#include "xms/serve.h"

namespace {

void addServe(CLI::App &app, XmsCommandLine &line)
{
    CLI::App *serve = xmsAddCommand(
        app, line, "serve", "Make the queues, own the store, forward settings, show the traffic", [&] {
            xmsServe({.socket = line.options.socket,
                      .keepQueues = line.keepQueues,
                      .quiet = line.quiet,
                      .json = line.options.json,
                      .secrets = line.options.secrets,
                      .paint = line.options.paint});
            return XmsExit::applied;
        });
    serve->add_flag("--keep", line.keepQueues, "Leave the queues at the end, for an xasd that runs on");
    serve->add_flag("-q,--quiet", line.quiet, "Do not show the traffic");
    xmsAddSecrets(*serve, line, "Show secrets in the traffic, too");
    serve->footer("The store is the directory /r58/store, or what XMS_STORE names.\n"
                  "Ends at SIGINT and SIGTERM.");
}

void addWatch(CLI::App &app, XmsCommandLine &line)
{
    CLI::App *watch =
        xmsAddCommand(app, line, "watch", "Show what passes between server and xasd, as it happens",
                      [&] { return xmsWatchCommand(line.options, line.watch); });
    watch->add_flag("--dump", line.watch.dump, "Show each message whole");
    watch
        ->add_option("--type", line.watch.types,
                     "Only messages of this type, and their acknowledgements; may be repeated")
        ->allow_extra_args(false)
        ->take_all();
    watch->add_option("--only", line.watch.only, "refused: only settings that are refused, with their answer")
        ->check(CLI::IsMember({"refused"}));
    xmsAddLogs(*watch, line);
    xmsAddSecrets(*watch, line, "Show secrets, too");
}

void addCheck(CLI::App &app, XmsCommandLine &line)
{
    CLI::App *check =
        xmsAddCommand(app, line, "check", "Tell what is wrong or suspicious in an application list",
                      [&] { return xmsCheckCommand(line.options, line.list, line.root); });
    check->add_option("SYSAPP.XML", line.list, "The list, by default that of the root");
    check->add_option("--root", line.root, "Look for programs and files below this directory");
    check->footer("Ends with status 1 when there is more than hints. Without a list and a root it is this\n"
                  "machine's own list that is checked.");
}

void addRecordings(CLI::App &app, XmsCommandLine &line)
{
    CLI::App *record =
        xmsAddCommand(app, line, "record", "Write what passes between server and xasd into a file",
                      [&] { return xmsRecordCommand(line.options, line.record); });
    record->add_option("FILE", line.record.path, "The file; - is standard output")->required();
    record->add_flag("--files", line.record.files, "Keep what each message changed in files, too");
    record->add_option("--list", line.record.list, "Application list that names the files")
        ->capture_default_str();
    xmsAddLogs(*record, line);
    xmsAddSecrets(*record, line, "Record secrets, too; a replay needs them");
    record->footer("Ends at SIGINT, SIGTERM and when the server ends.");

    CLI::App *replay = xmsAddCommand(app, line, "replay", "Send the settings of a recording again", [&] {
        return xmsReplayCommand(line.options, line.recording, line.set.timeoutSeconds);
    });
    replay->add_option("FILE", line.recording, "The file; - is standard input")->required();
    replay->footer("Ends with status 1 when a setting was answered differently when it was recorded.");
    xmsAddTimeout(*replay, line.set.timeoutSeconds);

    CLI::App *report = xmsAddCommand(app, line, "report", "Make one page of HTML of a recording",
                                     [&] { return xmsReportCommand(line.options, line.recording); });
    report->add_option("FILE", line.recording, "The file; - is standard input")->required();
    xmsAddSecrets(*report, line, "Show the secrets that the recording holds");
    report->footer("The page is written to standard output, needs no other file and runs nothing.");
}

} // namespace

void xmsAddTrafficCommands(CLI::App &app, XmsCommandLine &line)
{
    addServe(app, line);
    addWatch(app, line);
    addRecordings(app, line);
    addCheck(app, line);
}
