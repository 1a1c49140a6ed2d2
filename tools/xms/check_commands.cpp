#include "xms/check.h"

#include "core/command_line.h"
#include "core/text.h"

#include <algorithm>
#include <cctype>

namespace {

/** What is appended to the command line of the NTP daemon. */
constexpr std::size_t APPENDED_MAX = std::string_view{" -g"}.size();

std::vector<std::string_view> wordsOf(std::string_view line)
{
    std::vector<std::string_view> words;
    for (auto word = xasNextToken(line, " "); !word.empty(); word = xasNextToken(line, " "))
        words.push_back(word);
    return words;
}

/** A command line with where it stands. */
struct Command {
    const XmsCheckedApp &checked;
    std::string element;
    std::string text;
    int line;

    [[nodiscard]] std::string title() const { return "the " + element + " of " + checked.name(); }
};

std::vector<Command> commandsOf(const XmsCheckedApp &checked)
{
    std::vector<Command> commands;
    commands.reserve(checked.app.daemons.size() + 2);
    for (std::size_t n = 0; n < checked.app.daemons.size(); ++n)
        commands.push_back({checked, "EXE", checked.app.daemons[n].exe, checked.lineOf("EXE", n)});
    if (checked.app.startScript)
        commands.push_back({checked, "STARTSCRIPT", *checked.app.startScript, checked.lineOf("STARTSCRIPT")});
    if (checked.app.stopScript)
        commands.push_back({checked, "STOPSCRIPT", *checked.app.stopScript, checked.lineOf("STOPSCRIPT")});
    return commands;
}

void checkLimits(const Command &command, XmsFindings &findings)
{
    const std::size_t appended = command.text.starts_with("/bin/ntpd") ? APPENDED_MAX : 0;
    const auto words = wordsOf(command.text);
    if (command.text.size() + appended > XAS_COMMAND_LINE_MAX)
        findings.push_back({command.line, XmsWorry::error, "command",
                            command.title() + " has more than " +
                                std::to_string(XAS_COMMAND_LINE_MAX - appended) +
                                " characters and is never run"});
    else if (words.size() + (appended != 0 ? 1 : 0) > XAS_ARGUMENTS_MAX)
        findings.push_back({command.line, XmsWorry::warning, "command",
                            command.title() + " has more than " + std::to_string(XAS_ARGUMENTS_MAX) +
                                " words, the last ones are dropped"});
    if (!words.empty() && !words.front().starts_with('/'))
        findings.push_back({command.line, XmsWorry::error, "command",
                            command.title() + " does not begin with an absolute path"});
}

/** What only a shell or another parser would understand. */
void checkSyntax(const Command &command, XmsFindings &findings)
{
    if (command.text.find_first_of("\t\n") != std::string::npos)
        findings.push_back({command.line, XmsWorry::warning, "command",
                            command.title() + " has a tab or a line end, which is part of a word"});
    if (command.text.find_first_of("&|;<>$`\"'\\*?") != std::string::npos)
        findings.push_back({command.line, XmsWorry::warning, "shell",
                            command.title() + " has characters for a shell, but none reads it"});
}

/** A script is waited for; a daemon does not end. */
void checkHang(const XmsCheckedApp &checked, XmsFindings &findings)
{
    for (const Command &command : commandsOf(checked)) {
        const std::string program{xasProgramOf(command.text)};
        const bool isDaemon = std::ranges::any_of(checked.app.daemons, [&](const XasDaemon &daemon) {
            return xasProgramOf(daemon.exe) == program;
        });
        if (command.element != "EXE" && isDaemon)
            findings.push_back({command.line, XmsWorry::warning, "hang",
                                command.title() +
                                    " runs a daemon and is waited for: no setting is taken until "
                                    "it ends"});
    }
}

/** A digit, a blank, a digit, a blank and a digit at the end. */
bool endsInCodes(std::string_view script)
{
    const auto isDigit = [&](std::size_t fromEnd) {
        return script[script.size() - fromEnd] >= '0' && script[script.size() - fromEnd] <= '9';
    };
    return script.size() > 5 && isDigit(1) && isDigit(3) && isDigit(5) && script[script.size() - 2] == ' ' &&
           script[script.size() - 4] == ' ' && script[script.size() - 6] == ' ';
}

void checkEthScripts(const XmsCheckedApp &checked, XmsFindings &findings)
{
    const bool hasStart = checked.app.startScript.has_value();
    if (hasStart != checked.app.stopScript.has_value())
        findings.push_back({checked.lineOf("NAME"), XmsWorry::warning, "parameters",
                            std::string{"eth has no "} + (hasStart ? "STOPSCRIPT" : "STARTSCRIPT") +
                                ", so the port codes of the other script are never set"});
    if (!hasStart || !checked.app.stopScript)
        return;
    for (const Command &command : commandsOf(checked)) {
        if (command.element != "EXE" && !endsInCodes(command.text))
            findings.push_back({command.line, XmsWorry::error, "parameters",
                                command.title() + " must end in three digits for the port codes, as in \"" +
                                    std::string{xasProgramOf(command.text)} + " start 0 0 0\""});
    }
}

void checkThreeParameters(const XmsCheckedApp &checked, std::string_view example, XmsFindings &findings)
{
    if (!checked.app.startScript || wordsOf(*checked.app.startScript).size() == 4)
        return;
    findings.push_back({checked.lineOf("STARTSCRIPT"), XmsWorry::error, "parameters",
                        "the STARTSCRIPT of " + checked.name() +
                            " must have three parameters, which are overwritten, as in \"" +
                            std::string{xasProgramOf(*checked.app.startScript)} + " " + std::string{example} +
                            "\""});
}

void checkParameters(const XmsCheckedApp &checked, XmsFindings &findings)
{
    if (checked.app.name == "eth")
        checkEthScripts(checked, findings);
    else if (checked.app.name == "nat")
        checkThreeParameters(checked, "add 0 0.0.0.0", findings);
    else if (checked.app.name == "netlink")
        checkThreeParameters(checked, "linkup 0 0", findings);
}

/** Two settings need the routing application besides their own. */
void checkRouter(const std::vector<XmsCheckedApp> &apps, XmsFindings &findings)
{
    const auto isRouter = [](const XmsCheckedApp &checked) {
        return checked.app.name == "router";
    };
    if (std::ranges::any_of(apps, isRouter))
        return;
    for (const XmsCheckedApp &checked : apps) {
        if (checked.app.name == "eth" || (checked.app.name == "nat" && checked.app.startScript))
            findings.push_back({checked.lineOf("NAME"), XmsWorry::error, "application",
                                "the settings of " + checked.name() + " fail without an application router"});
    }
}

} // namespace

void xmsCheckCommands(const std::vector<XmsCheckedApp> &apps, XmsFindings &findings)
{
    for (const XmsCheckedApp &checked : apps) {
        for (const Command &command : commandsOf(checked)) {
            checkLimits(command, findings);
            checkSyntax(command, findings);
        }
        checkHang(checked, findings);
        checkParameters(checked, findings);
    }
    checkRouter(apps, findings);
}
