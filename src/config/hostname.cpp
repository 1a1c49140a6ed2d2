#include "config/hostname.h"

#include "config/network_file.h"
#include "core/assert.h"
#include "core/text.h"
#include "files/editor.h"
#include "files/update.h"

#include <algorithm>
#include <array>

namespace {

constexpr XasEditTexts HOSTS_TEXTS{
    .openReason = "Error opening hosts config file",
    .writeLog = "Error printing other line to hostname config file\n",
    .saveReason = "Error saving new hosts file",
    .writeLogOf =
        [](std::string_view /*line*/, bool isFirst) {
            return isFirst ? "Error printing line to hosts file\n"
                           : "Error printing other line to hostname config file\n";
        },
};

constexpr XasEditTexts HOSTNAME_TEXTS{
    .openReason = "Error opening hostname config file",
    .writeLog = "Error printing line to hostname config file\n",
    .saveReason = "Error saving new hostname config file",
};

constexpr XasEditTexts DOMAIN_TEXTS{
    .openReason = "Error opening static domain configuration file",
    .writeLog = "Error printing line to dns static domain config file\n",
    .saveReason = "Error saving new static domain config file",
};

constexpr std::array<std::string_view, 3> LOOPBACK_WORDS = {"127.0.0.1", "localhost.localdomain",
                                                            "localhost"};

bool isLoopbackLine(std::string_view line)
{
    return std::ranges::all_of(
        LOOPBACK_WORDS, [&](std::string_view word) { return line.find(word) != std::string_view::npos; });
}

/** Only the HOSTNAME line changes. */
XasNetInfo networkName(const std::string &fullName)
{
    XasNetInfo netInfo;
    netInfo.setHostname = true;
    netInfo.hostname = fullName.substr(0, XAS_NETWORK_HOSTNAME_MAX);
    return netInfo;
}

} // namespace

std::string xasFullHostname(const XasHostnamePayload &payload)
{
    std::string fullName{xasFieldText(payload.hostname)};
    const std::string_view domain = xasFieldText(payload.domain);
    if (!domain.empty())
        fullName.append(".").append(domain);
    fullName.resize(std::min(fullName.size(), XAS_FULL_HOSTNAME_MAX));
    return fullName;
}

std::string xasHostsText(std::string_view oldText, const std::string &fullName)
{
    std::string newText = xasFormatLine("%s\t%s\t%s\t%s\n", "127.0.0.1", fullName.c_str(),
                                        "localhost.localdomain", "localhost");
    xasForEachLine(oldText, [&](std::string_view line) {
        if (!isLoopbackLine(line))
            newText += line;
    });
    return newText;
}

std::string xasDomainText(std::string_view fullName)
{
    const std::string domain{fullName.substr(std::min(fullName.find('.'), fullName.size() - 1) + 1)};
    return domain.empty() ? domain : xasFormatLine("%s=%s\n", "STATIC_DOMAIN", domain.c_str());
}

int xasEditHostsFile(const char *cfgFileName, const char *hostname, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(hostname, "hostname");
    return xasEditFile(cfgFileName, HOSTS_TEXTS, reply,
                       [&](std::string_view oldText) { return xasHostsText(oldText, hostname); });
}

int xasEditHostnameFile(const char *cfgFileName, const char *hostname, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(hostname, "hostname");
    return xasEditFile(cfgFileName, HOSTNAME_TEXTS, reply,
                       [&](std::string_view /*oldText*/) { return xasFormatLine("%s\n", hostname); });
}

int xasEditDomainCfgFile(const char *cfgFileName, const char *hostname, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(hostname, "hostname");
    return xasEditFile(cfgFileName, DOMAIN_TEXTS, reply,
                       [&](std::string_view /*oldText*/) { return xasDomainText(hostname); });
}

int xasUpdateHostnameCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    xasAssertGiven(msg, "msg");
    xasAssert(XMSG_HOSTNAME == msg->xH.msgtype, "XMSG_HOSTNAME == msg->xH.msgtype");
    xasAssertGiven(cfgFiles, "cfgFiles");
    const std::string fullName = xasFullHostname(xasReadPayload<XasHostnamePayload>(*msg));
    const XasNetInfo netInfo = networkName(fullName);

    const std::array<XasFileStep, 4> steps = {{
        {.type = "hosts",
         .missingLog = "Error determining hosts config file\n",
         .missingReason = "Error determining hosts file",
         .editLog = "Error editing hosts file\n",
         .edit = [&](const char *path) { return xasEditHostsFile(path, fullName.c_str(), reply); },
         .restoreIfMissing = {},
         .restoreIfEditFails = {"hosts"}},
        {.type = "hostname",
         .missingLog = "Error determining config file for hostname\n",
         .missingReason = "Error determining hostname config file",
         .editLog = "Error editing hostname file\n",
         .edit = [&](const char *path) { return xasEditHostnameFile(path, fullName.c_str(), reply); },
         .restoreIfMissing = {"hosts"},
         .restoreIfEditFails = {"hosts"}},
        {.type = "network",
         .missingLog = "Error determining network config file\n",
         .missingReason = "Error determining network config file",
         .editLog = "Error editing network config file\n",
         .edit = [&](const char *path) { return xasEditNetCfgFile(path, &netInfo, reply); },
         .restoreIfMissing = {"hosts", "hostname"},
         .restoreIfEditFails = {"hosts", "hostname"}},
        {.type = "domain",
         .missingLog = "Error determining static domain configuration file\n",
         .missingReason = "Error determining static domain configuration file",
         .editLog = "Error editing static domain configuration file\n",
         .edit = [&](const char *path) { return xasEditDomainCfgFile(path, fullName.c_str(), reply); },
         .restoreIfMissing = {"hosts", "hostname", "network"},
         .restoreIfEditFails = {"hosts", "hostname", "network"}},
    }};
    return xasRunFileSteps(*cfgFiles, reply, steps);
}
