#include "xms/settings_text.h"

#include "dispatch/service.h"
#include "dispatch/settings.h"
#include "msg/fields.h"
#include "msg/type_names.h"
#include "xms/describe.h"
#include "xms/markdown.h"

namespace {

constexpr const char *ABOUT =
    "# Settings\n"
    "\n"
    "<!-- Generated from the rows that the daemon runs: run ./dev docs after a change of them. -->\n"
    "\n"
    "What each message type changes: its application, when that is started again, its files by their TYPE in the\n"
    "application list, and every result code and reason of an acknowledgement that was not applied. Without a\n"
    "reason of its own a failure is only in the log; the code is then 0 and the reason empty.\n"
    "\n"
    "A file is replaced as a whole; where one fails, those in front of it are rolled back unless the table says\n"
    "otherwise. `xms describe TYPE` shows the same for one type.\n";

/** The name of the field that holds payload word n. */
std::string wordName(std::uint32_t msgtype, std::size_t word)
{
    for (const XasMsgFieldAt &where : xasListFields(*msgFieldsOf(msgtype))) {
        if (where.place.offset == XAS_PAYLOAD_OFFSET + 4 * word)
            return where.name;
    }
    return "word " + std::to_string(word);
}

void addRow(std::vector<std::vector<std::string>> &rows, std::string_view file, const char *what,
            std::uint32_t rcode, const char *reason)
{
    if (reason != nullptr)
        rows.push_back({std::string{file}, what, std::to_string(rcode), reason});
    else
        rows.push_back({std::string{file}, what, "0", ""});
}

void addFileRows(std::vector<std::vector<std::string>> &rows, const XasFileRow &row)
{
    if (row.missingLog != nullptr)
        addRow(rows, row.type, "not in the application list", XAS_RCODE_MISSING, row.missingReason);
    if (row.edit.templateReason != nullptr)
        addRow(rows, row.type, "its template cannot be opened", XAS_RCODE_OPEN, row.edit.templateReason);
    const XasEditTexts *texts = row.edit.texts;
    if (texts == nullptr)
        return;
    addRow(rows, row.type, "cannot be opened", XAS_RCODE_OPEN, texts->openReason);
    if (texts->writeReason != nullptr)
        addRow(rows, row.type, "cannot be written", XAS_RCODE_SAVE, texts->writeReason);
    addRow(rows, row.type, "cannot be saved", XAS_RCODE_SAVE, texts->saveReason);
}

std::string filesText(const XasSetting &setting)
{
    std::string text;
    if (setting.update.files != nullptr) {
        for (const XasFileRow &row : setting.update.files->files)
            text += (text.empty() ? "" : ", ") + std::string{row.type} +
                    (row.missingLog == nullptr ? " (if it is there)" : "");
    }
    return text.empty() ? "none in the application list" : text;
}

std::string sectionOf(const XasSetting &setting)
{
    const std::string shortName = msgShortName(setting.msgtype);
    std::string text = "\n## " + shortName + "\n\n";
    text += "Application: " + xmsApplicationText(setting.msgtype) +
            ". Started: " + xmsStartText(setting.msgtype) + ". Files: " + filesText(setting) + ".\n";
    if (setting.update.files != nullptr && !setting.update.files->files.empty() &&
        setting.update.files->onFailure == XasOnFailure::goOn)
        text += "\nA file that fails does not keep the others from being written; nothing is rolled back.\n";
    const auto rows = xmsResultRows(setting.msgtype);
    return rows.empty() ? text : text + xmsMarkdownTable({"file", "when", "code", "reason"}, rows);
}

/** What every type may answer: the application could not be stopped or started. */
std::string commonSection()
{
    std::vector<std::vector<std::string>> rows = {
        {"a daemon cannot be stopped", "1", "Error stopping service"},
        {"a daemon cannot be started", "1", "Error starting service"},
        {"a script cannot be run, or is killed", "1", xasScriptErrorText(-1)}};
    for (const int code : {1, 20, 30, 40, 50})
        rows.push_back({"a script exits with " + std::to_string(code), "1", xasScriptErrorText(code)});
    rows.push_back({"a script exits with any other number but 0", "1", xasScriptErrorText(2)});
    return "\n## All settings\n" + xmsMarkdownTable({"when", "code", "reason"}, rows);
}

} // namespace

std::vector<std::vector<std::string>> xmsResultRows(std::uint32_t msgtype)
{
    std::vector<std::vector<std::string>> rows;
    const XasSetting *setting = xasFindSetting(msgtype);
    if (setting == nullptr)
        return rows;
    if (!setting->texts.empty())
        rows.push_back({"-", "a text that would break a file or a command", std::to_string(XAS_RCODE_TEXT),
                        "Invalid character in <field>"});
    if (setting->update.files == nullptr)
        return rows;
    for (const XasFileRow &row : setting->update.files->files)
        addFileRows(rows, row);
    for (const XasReason &reason : setting->update.files->reasons)
        addRow(rows, "-", "the message cannot be followed", reason.rcode, reason.text);
    return rows;
}

std::string xmsStartText(std::uint32_t msgtype)
{
    using enum XasStartRule;
    const XasSetting *setting = xasFindSetting(msgtype);
    if (setting == nullptr)
        return {};
    switch (setting->start) {
    case word0:
        return "when " + wordName(msgtype, 0) + " is not 0";
    case word0or1:
        return "when " + wordName(msgtype, 0) + " or " + wordName(msgtype, 1) + " is not 0";
    case word1AndModel:
        return "when " + wordName(msgtype, 1) + " is not 0, xpb only on models that have it";
    case always:
        break;
    }
    return "always";
}

std::string xmsSettingsMarkdown()
{
    std::string text = ABOUT + commonSection();
    for (const XasSetting &setting : xasSettings())
        text += sectionOf(setting);
    return text;
}
