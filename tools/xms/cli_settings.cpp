// The commands about settings.
#include "xms/command_line.h"
#include "xms/describe.h"
#include "xms/man.h"
#include "xms/markdown.h"
#include "xms/preview.h"
#include "xms/settings_text.h"

namespace {

constexpr const char *SET_HELP =
    "Fields that are not named keep the values of the stored record of the type; when nothing is\n"
    "stored, or with --fresh, they start from their defaults (xms describe TYPE shows them). The\n"
    "record is stored once xasd has applied it. Types that are never answered are only sent.";

XmsExit print(const std::string &text)
{
    std::fputs(text.c_str(), stdout);
    return XmsExit::applied;
}

void addSetting(CLI::App &command, XmsCommandLine &line)
{
    command.add_option("TYPE", line.set.type, "Message type: hostname, XMSG_HOSTNAME or 2")->required();
    command.add_option("FIELD=VALUE", line.set.assignments, "Fields to set")->expected(0, -1);
    command.add_flag("--fresh", line.set.fresh, "Start from defaults, not from the stored record");
    command.add_flag("--force", line.set.force, "Take values that are not allowed, as long as they fit");
}

void addSet(CLI::App &app, XmsCommandLine &line)
{
    CLI::App *set = xmsAddCommand(app, line, "set", "Send a setting and wait for its acknowledgement",
                                  [&] { return xmsSetCommand(line.options, line.set); });
    set->footer(SET_HELP);
    addSetting(*set, line);
    xmsAddTimeout(*set, line.set.timeoutSeconds);
    xmsAddLogs(*set, line);
    xmsAddSecrets(*set, line, "Show secrets in the log lines of a refusal, too");
    set->add_option("--raw", line.set.rawFile,
                    "File (- is standard input) with the payload in hexadecimal, from offset 120 on");
}

void addPreview(CLI::App &app, XmsCommandLine &line)
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

XmsExit describe(const XmsCommandLine &line)
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

void addDescribe(CLI::App &app, XmsCommandLine &line)
{
    CLI::App *command =
        xmsAddCommand(app, line, "describe", "Explain the fields of a type and the values they take",
                      [&] { return describe(line); });
    command->add_option("TYPE", line.type, "Message type");
    command->add_flag("--markdown", line.markdown, "All types, as a Markdown document");
    command->add_flag("--settings", line.settings,
                      "What all types change and answer, as a Markdown document");
    command->add_flag("--man", line.man, "All types, as a manual page");
}

void addGet(CLI::App &app, XmsCommandLine &line)
{
    CLI::App *get = xmsAddCommand(app, line, "get", "Show the stored record of a type, or all", [&] {
        if (line.get.type.empty() != line.get.all)
            throw XmsError{XmsExit::usage, "one type is shown or, with --all, all of them"};
        return xmsGetCommand(line.options, line.get);
    });
    get->add_option("TYPE", line.get.type, "Message type");
    get->add_option("FIELD=VALUE", line.get.keys, "Which one, for types with several records")
        ->expected(0, -1);
    get->add_flag("--all", line.get.all, "Everything that is stored");
    get->add_flag("--yaml", line.get.yaml, "As a file for xms apply");
    xmsAddSecrets(*get, line, "Show secrets, too");
}

void addApply(CLI::App &app, XmsCommandLine &line)
{
    XmsApplyOptions &apply = line.apply;
    CLI::App *command = xmsAddCommand(app, line, "apply", "Send the settings of a file, once all are checked",
                                      [&] { return xmsApplyCommand(line.options, apply); });
    command->add_option("FILE", apply.file, "The file, YAML or JSON; - is standard input")->required();
    auto *goOn = command->add_flag("--go-on", apply.goOn, "Go on after a setting that is refused");
    command
        ->add_flag_callback(
            "--stop", [] {}, "Stop at the first setting that is refused; this is the default")
        ->excludes(goOn);
    command->add_flag("--keep", apply.keep,
                      "Fields that are not named keep what is stored, not their defaults");
    command->add_flag("--again", apply.again, "Send what is stored just so, too");
    command->add_flag("-n,--dry-run", apply.dryRun, "Check the file and tell what would be sent");
    xmsAddTimeout(*command, apply.timeoutSeconds);
    xmsAddLogs(*command, line);
    xmsAddSecrets(*command, line, "Show secrets in the log lines of a refusal, too");
    command->footer(
        "Nothing is sent when anything in the file is wrong. `xms get --all --yaml` writes such a file.");
}

void addTypes(CLI::App &app, XmsCommandLine &line)
{
    xmsAddCommand(app, line, "types", "List all message types", [&] {
        return print(line.options.json ? xmsJsonLine(xmsTypesJson()) + "\n" : xmsTypesText());
    });
}

} // namespace

void xmsAddSettingCommands(CLI::App &app, XmsCommandLine &line)
{
    addSet(app, line);
    addApply(app, line);
    addPreview(app, line);
    addGet(app, line);
    addTypes(app, line);
    addDescribe(app, line);
}
