#include "config/syslog.h"

#include "config/logrotate.h"
#include "core/text.h"
#include "core/utils.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<const char *, XAS_SYSLOG_LEVELS> LEVEL_NAMES = {"none", "info", "warning", "err",
                                                                     "debug"};

/** Stands for a category whose level is always "info". */
constexpr std::size_t FIXED_LEVEL = XAS_SYSLOG_FACILITIES;

struct LogCategory {
    const char *facility;
    const char *file;
    std::size_t level; /**< place among the levels of the settings */
};

constexpr std::array CATEGORIES = {
    LogCategory{"local0", "/var/log/network", 0},      LogCategory{"local1", "/var/log/services", 1},
    LogCategory{"authpriv", "/var/log/secure", 2},     LogCategory{"local3", "/var/log/devports", 3},
    LogCategory{"local4", "/var/log/diag", 4},         LogCategory{"local5", "/var/log/general", 5},
    LogCategory{"local6", "/var/log/sw", FIXED_LEVEL}, LogCategory{"kern", "/var/log/general", 5},
};

const char *levelName(const LogCategory &category, const XasSyslogPayload &syslog)
{
    return category.level == FIXED_LEVEL ? "info" : LEVEL_NAMES.at(syslog.levels[category.level]);
}

bool isForwardingRule(std::string_view line)
{
    return line.find('@') != std::string_view::npos;
}

/** Appends what becomes of a line that is neither a comment nor a forwarding rule. */
void appendLocalRule(std::string &text, std::string_view line, const XasSyslogPayload &syslog)
{
    const std::string_view facility = xasFirstToken(line, ".");
    const auto *const category = std::ranges::find(CATEGORIES, facility, &LogCategory::facility);
    if (category == CATEGORIES.end())
        text += line;
    else if (line.find('/') != std::string_view::npos)
        text +=
            xasFormatLine("%s.%s    %s\n", category->facility, levelName(*category, syslog), category->file);
}

std::string remoteRules(const char *server, const XasSyslogPayload &syslog)
{
    std::string rules;
    for (const LogCategory &category : CATEGORIES)
        rules += xasFormatLine("%s.%s    @%s\n", category.facility, levelName(category, syslog), server);
    return rules + xasFormatLine("%s.info    @%s\n", "auth", server);
}

} // namespace

bool xasAreSyslogLevelsValid(const XasSyslogPayload &syslog)
{
    return std::ranges::all_of(syslog.levels, [](std::uint32_t level) { return level < XAS_SYSLOG_LEVELS; });
}

std::string xasSyslogLocalText(std::string_view oldText, const XasSyslogPayload &syslog)
{
    std::string newText = xasBeginNewText(oldText);
    xasForEachLine(oldText, [&](std::string_view line) {
        if (line.starts_with('#'))
            newText += line;
        else if (!isForwardingRule(line))
            appendLocalRule(newText, line, syslog);
    });
    return newText;
}

std::string xasSyslogRemoteText(const XasSyslogPayload &syslog)
{
    std::string rules;
    for (const XasHostAddr &server : syslog.remotes) {
        if (xasIsHostGiven(server))
            rules += remoteRules(xasHostToStr(server).c_str(), syslog);
    }
    return rules;
}

XasNewText xasSyslogText(std::string_view oldText, const XasSyslogPayload &syslog)
{
    XasNewText newText{xasSyslogLocalText(oldText, syslog)};
    newText.tail = xasSyslogRemoteText(syslog);
    return newText;
}

constexpr XasEditor<XasSyslogPayload> xasEditSyslogCfgFile{
    .argument = "sysLogInfo",
    .texts = {.openReason = "Error opening syslog config file",
              .writeLog = "Error printing line to syslog config file\n",
              .saveReason = "Error saving new syslog config file"},
    .text = xasMadeBy<xasSyslogText>};

constexpr XasFileRow FILES[] = {
    {.type = "syslog",
     .edit = xasEditedBy<xasEditSyslogCfgFile>,
     .missingLog = "Error determining config file for syslog\n",
     .editLog = "Error editing syslog config file\n"},
    {.type = "logrotate",
     .edit = xasEditedBy<xasEditLogrotateCfgFile>,
     .missingLog = "Error determining config file for logrotate\n",
     .editLog = "Error editing logrotate config file\n"},
};

constexpr XasFilesUpdate xasUpdateSyslogCfg{
    .msgtype = XMSG_SYSLOG,
    .files = FILES,
    .onFailure = XasOnFailure::goOn,
    .settled = [](const XasMessage &msg) -> std::optional<int> {
        if (xasAreSyslogLevelsValid(xasReadPayload<XasSyslogPayload>(msg)))
            return std::nullopt;
        return 1;
    }};
