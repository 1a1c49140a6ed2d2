#include "config/hostname.h"

#include "config/network_file.h"
#include "core/text.h"

#include <algorithm>
#include <array>

namespace {

/** The one that the fewest other lines begin to have comes first. */
constexpr std::array<std::string_view, 3> LOOPBACK_WORDS = {"localhost.localdomain", "localhost",
                                                            "127.0.0.1"};

bool isLoopbackLine(std::string_view line)
{
    return std::ranges::all_of(
        LOOPBACK_WORDS, [&](std::string_view word) { return line.find(word) != std::string_view::npos; });
}

/** Only the HOSTNAME line changes. */
int editNetworkName(const XasEditCall &call)
{
    XasNetInfo netInfo;
    netInfo.setHostname = true;
    netInfo.hostname =
        xasFullHostname(xasReadPayload<XasHostnamePayload>(call.msg)).substr(0, XAS_NETWORK_HOSTNAME_MAX);
    return xasEditNetCfgFile(call.path, &netInfo, call.reply);
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

std::string xasHostsText(std::string_view oldText, const XasHostnamePayload &payload)
{
    std::string newText = xasBeginNewText(oldText);
    newText += xasFormatLine("%s\t%s\t%s\t%s\n", "127.0.0.1", xasFullHostname(payload).c_str(),
                             "localhost.localdomain", "localhost");
    xasForEachLine(oldText, [&](std::string_view line) {
        if (!isLoopbackLine(line))
            newText += line;
    });
    return newText;
}

std::string xasHostnameText(const XasHostnamePayload &payload)
{
    return xasFormatLine("%s\n", xasFullHostname(payload).c_str());
}

std::string xasDomainText(const XasHostnamePayload &payload)
{
    const std::string fullName = xasFullHostname(payload);
    const std::string domain{fullName.substr(std::min(fullName.find('.'), fullName.size() - 1) + 1)};
    return domain.empty() ? domain : xasFormatLine("%s=%s\n", "STATIC_DOMAIN", domain.c_str());
}

constexpr XasEditor<XasHostnamePayload> xasEditHostsFile{
    .argument = "hostname",
    .texts = {.openReason = "Error opening hosts config file",
              .writeLog = "Error printing other line to hostname config file\n",
              .saveReason = "Error saving new hosts file",
              .writeLogOf =
                  [](std::string_view /*line*/, bool isFirst) {
                      return isFirst ? "Error printing line to hosts file\n"
                                     : "Error printing other line to hostname config file\n";
                  }},
    .text = xasMadeBy<xasHostsText>};

constexpr XasEditor<XasHostnamePayload> xasEditHostnameFile{
    .argument = "hostname",
    .texts = {.openReason = "Error opening hostname config file",
              .writeLog = "Error printing line to hostname config file\n",
              .saveReason = "Error saving new hostname config file"},
    .text = xasMadeBy<xasHostnameText>};

constexpr XasEditor<XasHostnamePayload> xasEditDomainCfgFile{
    .argument = "hostname",
    .texts = {.openReason = "Error opening static domain configuration file",
              .writeLog = "Error printing line to dns static domain config file\n",
              .saveReason = "Error saving new static domain config file"},
    .text = xasMadeBy<xasDomainText>};

constexpr XasFileRow FILES[] = {
    {.type = "hosts",
     .edit = xasEditedBy<xasEditHostsFile>,
     .missingLog = "Error determining hosts config file\n",
     .missingReason = "Error determining hosts file",
     .editLog = "Error editing hosts file\n",
     .restoresItself = true},
    {.type = "hostname",
     .edit = xasEditedBy<xasEditHostnameFile>,
     .missingLog = "Error determining config file for hostname\n",
     .missingReason = "Error determining hostname config file",
     .editLog = "Error editing hostname file\n"},
    {.type = "network",
     .edit = {editNetworkName, &xasEditNetCfgFile.texts},
     .missingLog = "Error determining network config file\n",
     .missingReason = "Error determining network config file",
     .editLog = "Error editing network config file\n"},
    {.type = "domain",
     .edit = xasEditedBy<xasEditDomainCfgFile>,
     .missingLog = "Error determining static domain configuration file\n",
     .missingReason = "Error determining static domain configuration file",
     .editLog = "Error editing static domain configuration file\n"},
};

constexpr XasFilesUpdate xasUpdateHostnameCfg{.msgtype = XMSG_HOSTNAME, .files = FILES};
