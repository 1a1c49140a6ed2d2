#include "auth/nis.h"

#include "auth/nsswitch.h"
#include "auth/sys_auth.h"
#include "core/child.h"
#include "core/text.h"
#include "core/utils.h"

#include <unistd.h>

namespace {

/** Starts the program that sets the running domain name. */
void startDomainName(const std::string &domain)
{
    if (xasFork() == 0) {
        ::execl("/bin/domainname", "domainname", domain.c_str(), nullptr);
        ::_exit(XAS_EXEC_FAILED);
    }
}

} // namespace

std::string xasYpText(const XasNisPayload &nis)
{
    const std::string domain = xasFieldString(nis.domain);
    std::string text = "# /etc/yp.conf - ypbind configuration file\n";
    text += xasFormatLine("domain %s server %s \n", domain.c_str(), xasHostToStr(nis.master).c_str());
    if (nis.broadcast != 0)
        text += xasFormatLine("domain %s broadcast\n", domain.c_str());
    for (const XasHostAddr &slave : nis.slaves) {
        if (xasIsHostGiven(slave))
            text += xasFormatLine("ypserver %s \n", xasHostToStr(slave).c_str());
    }
    return text;
}

std::string xasNisNetworkText(std::string_view oldText, std::string_view domain)
{
    std::string newText = xasBeginNewText(oldText);
    xasForEachLine(oldText, [&](std::string_view line) {
        const bool isOurs = !line.starts_with('#') && xasFirstToken(line, " =").starts_with("NISDOMAIN");
        if (!isOurs)
            newText += line;
    });
    if (!domain.empty())
        newText.append("NISDOMAIN=").append(domain);
    return newText;
}

constexpr XasEditor<XasNisPayload> xasEditYpCfgFile{
    .argument = "cfgNIS",
    .texts = {.openReason = "Error opening yp.conf config file",
              .saveReason = "Error saving new yp.conf config file"},
    .text = xasMadeBy<xasYpText>};

/** The save's reason names another file; it is the system's own. */
constexpr XasEditTexts NETWORK_TEXTS{.openReason = "Error opening sysconfig/network config file",
                                     .saveReason = "Error saving new firewall config file"};

constexpr XasFileRow FILES[] = {
    {.type = "yp",
     .edit = xasEditedBy<xasEditYpCfgFile>,
     .missingLog = "Error determining yp.conf config file\n",
     .editLog = "Error editing yp.conf config file\n"},
    {.type = "network",
     .edit = {[](const XasEditCall &call) {
                  const auto nis = xasReadPayload<XasNisPayload>(call.msg);
                  return xasEditNetworkCfgFile(call.path, &nis, call.reply);
              },
              &NETWORK_TEXTS},
     .missingLog = "Error determining network config file\n",
     .editLog = "Error editing network config file\n"},
    {.type = "system-auth",
     .edit = xasRefreshedBy<XasNisPayload, xasEditNisSysAuthCfgFile>,
     .missingLog = "Error determining system-auth config file\n",
     .editLog = "Error editing system-auth config file\n"},
    {.type = "nsswitch",
     .edit = XAS_NSSWITCH_EDIT,
     .missingLog = "Error determining nsswitch.conf config file\n",
     .editLog = "Error editing nsswitch.conf config file\n"},
};

int xasEditNetworkCfgFile(const char *cfgFileName, const XasNisPayload *nis, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(nis, "cfgNIS");
    const std::string domain = xasFieldString(nis->domain);
    bool opened = false;
    const int result = xasEditFile(cfgFileName, NETWORK_TEXTS, reply, [&](std::string_view oldText) {
        opened = true;
        return XasNewText{xasNisNetworkText(oldText, domain)};
    });
    if (opened && !domain.empty())
        startDomainName(domain);
    return result;
}

constexpr XasFilesUpdate xasUpdateNisCfg{
    .msgtype = XMSG_NIS, .files = FILES, .onFailure = XasOnFailure::goOn, .lookUp = XasLookUp::together};
