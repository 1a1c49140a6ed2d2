#include "auth/nis.h"

#include "auth/auth_steps.h"
#include "auth/nsswitch.h"
#include "auth/sys_auth.h"
#include "core/assert.h"
#include "core/child.h"
#include "core/text.h"
#include "core/utils.h"
#include "files/editor.h"

#include <unistd.h>

namespace {

constexpr XasEditTexts YP_TEXTS{
    .openReason = "Error opening yp.conf config file",
    .writeLog = nullptr,
    .saveReason = "Error saving new yp.conf config file",
};

/** The save's reason names another file; it is the system's own. */
constexpr XasEditTexts NETWORK_TEXTS{
    .openReason = "Error opening sysconfig/network config file",
    .writeLog = nullptr,
    .saveReason = "Error saving new firewall config file",
};

std::string domainOf(const XasNisPayload &cfgNIS)
{
    return xasFieldString(cfgNIS.domain);
}

/** Starts the program that sets the running domain name. */
void startDomainName(const std::string &domain)
{
    if (xasFork() == 0) {
        ::execl("/bin/domainname", "domainname", domain.c_str(), nullptr);
        ::_exit(XAS_EXEC_FAILED);
    }
}

} // namespace

std::string xasYpText(const XasNisPayload &cfgNIS)
{
    const std::string domain = domainOf(cfgNIS);
    std::string text = "# /etc/yp.conf - ypbind configuration file\n";
    text += xasFormatLine("domain %s server %s \n", domain.c_str(), xasHostToStr(cfgNIS.master).c_str());
    if (cfgNIS.broadcast != 0)
        text += xasFormatLine("domain %s broadcast\n", domain.c_str());
    for (const XasHostAddr &slave : cfgNIS.slaves) {
        if (xasIsHostGiven(slave))
            text += xasFormatLine("ypserver %s \n", xasHostToStr(slave).c_str());
    }
    return text;
}

std::string xasNisNetworkText(std::string_view oldText, std::string_view domain)
{
    std::string newText;
    xasForEachLine(oldText, [&](std::string_view line) {
        const bool isOurs = !line.starts_with('#') && xasFirstToken(line, " =").starts_with("NISDOMAIN");
        if (!isOurs)
            newText += line;
    });
    if (!domain.empty())
        newText.append("NISDOMAIN=").append(domain);
    return newText;
}

int xasEditYpCfgFile(const char *cfgFileName, const XasNisPayload *cfgNIS, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(cfgNIS, "cfgNIS");
    return xasEditFile(cfgFileName, YP_TEXTS, reply,
                       [&](std::string_view /*oldText*/) { return xasYpText(*cfgNIS); });
}

int xasEditNetworkCfgFile(const char *cfgFileName, const XasNisPayload *cfgNIS, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(cfgNIS, "cfgNIS");
    const std::string domain = domainOf(*cfgNIS);
    bool opened = false;
    const int result = xasEditFile(cfgFileName, NETWORK_TEXTS, reply, [&](std::string_view oldText) {
        opened = true;
        return xasNisNetworkText(oldText, domain);
    });
    if (opened && !domain.empty())
        startDomainName(domain);
    return result;
}

int xasUpdateNisCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    xasAssertGiven(msg, "msg");
    xasAssert(XMSG_NIS == msg->xH.msgtype, "XMSG_NIS == msg->xH.msgtype");
    xasAssertGiven(cfgFiles, "cfgFiles");
    constexpr std::array FILES = {
        XasNeededFile{"yp", "Error determining yp.conf config file\n"},
        XasNeededFile{"network", "Error determining network config file\n"},
        XasNeededFile{"system-auth", "Error determining system-auth config file\n"},
        XasNeededFile{"nsswitch", "Error determining nsswitch.conf config file\n"},
    };
    std::array<const char *, FILES.size()> paths{};
    if (!xasFindNeededFiles(*cfgFiles, FILES, paths))
        return 1;
    const auto [ypFile, networkFile, pamFile, nsswitchFile] = paths;

    const auto cfgNIS = xasReadPayload<XasNisPayload>(*msg);
    int result =
        xasLogFailure(xasEditYpCfgFile(ypFile, &cfgNIS, reply), "Error editing yp.conf config file\n");
    result = xasLastFailure(result, xasLogFailure(xasEditNetworkCfgFile(networkFile, &cfgNIS, reply),
                                                  "Error editing network config file\n"));
    xasLogFailure(xasEditNisSysAuthCfgFile(pamFile, &cfgNIS), "Error editing system-auth config file\n");
    return xasLastFailure(result, xasLogFailure(xasEditNsswitchCfgFile(nsswitchFile, reply),
                                                "Error editing nsswitch.conf config file\n"));
}
