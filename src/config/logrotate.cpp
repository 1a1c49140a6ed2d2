#include "config/logrotate.h"

#include "core/text.h"

#include <array>

namespace {

constexpr int BYTES_PER_KILOBYTE = 1024;

/** What follows a token. */
struct SizeRule {
    std::string_view token;
    std::string (*rest)(int kilobytes);
};

/** The first that a line holds counts. */
constexpr std::array SIZE_RULES = {
    SizeRule{"size ",
             [](int kilobytes) {
                 return xasFormat("%dk\n", kilobytes);
             }},
    SizeRule{"$logbytes -gt ",
             [](int kilobytes) {
                 return xasFormat("%d ] ; then\n", kilobytes * BYTES_PER_KILOBYTE);
             }},
    SizeRule{"tail -c ",
             [](int kilobytes) {
                 return xasFormat("%d $1 > /www/$1.log\n", kilobytes * BYTES_PER_KILOBYTE / 2);
             }},
};

constexpr std::string_view NUT_LOG = "/var/log/nut";

bool contains(std::string_view line, std::string_view part)
{
    return line.find(part) != std::string_view::npos;
}

std::string resized(std::string_view line, const SizeRule &rule, int kilobytes)
{
    const std::string kept{line.substr(0, line.find(rule.token) + rule.token.size())};
    return xasFormatLine("%s%s", kept.c_str(), rule.rest(kilobytes).c_str());
}

} // namespace

std::string xasLogrotateText(std::string_view oldText, const XasSyslogPayload &syslog)
{
    std::string newText = xasBeginNewText(oldText);
    int kilobytes = syslog.log_size;
    xasForEachLine(oldText, [&](std::string_view line) {
        for (const SizeRule &rule : SIZE_RULES) {
            if (contains(line, rule.token)) {
                newText += resized(line, rule, kilobytes);
                return;
            }
        }
        if (contains(line, NUT_LOG))
            kilobytes = syslog.nut_size;
        newText += line;
    });
    return newText;
}

constexpr XasEditor<XasSyslogPayload> xasEditLogrotateCfgFile{
    .argument = "sysLogInfo",
    .texts = {.openReason = "Error opening logrotate config file",
              .writeLog = "Error printing line to logrotate config file\n",
              .saveReason = "Error saving new logrotate config file"},
    .text = xasMadeBy<xasLogrotateText>};
