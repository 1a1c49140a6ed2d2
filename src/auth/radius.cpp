#include "auth/radius.h"

#include "auth/auth_steps.h"
#include "auth/nsswitch.h"
#include "auth/sys_auth.h"
#include "core/assert.h"
#include "core/text.h"
#include "core/utils.h"
#include "files/editor.h"

namespace {

constexpr XasEditTexts TEXTS{
    .openReason = "Error opening /etc/raddb/server file",
    .writeLog = nullptr,
    .saveReason = "Error saving new /etc/raddb/server file",
    .secrecy = XasSecrecy::secret,
};

constexpr std::string_view NO_ADDRESS = "<invalid>";

bool isIPv6(const XasHostAddr &host)
{
    return host.is_name == 0 && host.is_ipv6 != 0;
}

std::string serverLine(const XasRadiusServer &server, std::uint8_t timeout, const char *blanksBehindPort)
{
    std::string host = xasHostToStr(server.host);
    if (isIPv6(server.host))
        host = "[" + host + "]";
    return xasFormatLine("%s:%d%s%s    %d\n", host.c_str(), server.port, blanksBehindPort,
                         xasFieldString(server.secret).c_str(), timeout);
}

std::string firstLine(const XasRadiusServer &server, std::uint8_t timeout)
{
    return serverLine(server, timeout, isIPv6(server.host) ? "    " : "   ");
}

std::string secondLine(const XasRadiusServer &server, std::uint8_t timeout)
{
    const bool isUnusable = isIPv6(server.host) && xasHostToStr(server.host) == NO_ADDRESS;
    if (!xasIsHostGiven(server.host) || isUnusable)
        return {};
    return serverLine(server, timeout, server.host.is_name != 0 ? "   " : "    ");
}

} // namespace

std::string xasRadiusText(std::string_view oldText, const XasRadiusPayload &cfgRadius)
{
    std::string newText;
    xasForEachLine(oldText, [&](std::string_view line) {
        if (line.starts_with('#'))
            newText += line;
    });
    if (cfgRadius.enabled != 0) {
        newText += firstLine(cfgRadius.server1, cfgRadius.timeout);
        newText += secondLine(cfgRadius.server2, cfgRadius.timeout);
    }
    return newText;
}

int xasEditRadiusCfgFile(const char *cfgFileName, const XasRadiusPayload *cfgRadius, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(cfgRadius, "cfgRadius");
    return xasEditFile(cfgFileName, TEXTS, reply,
                       [&](std::string_view oldText) { return xasRadiusText(oldText, *cfgRadius); });
}

int xasUpdateRadiusCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    xasAssertGiven(msg, "msg");
    xasAssert(XMSG_RADIUS == msg->xH.msgtype, "XMSG_RADIUS == msg->xH.msgtype");
    xasAssertGiven(cfgFiles, "cfgFiles");
    constexpr std::array FILES = {
        XasNeededFile{"radius", "Error determining openldap config file\n"},
        XasNeededFile{"nsswitch", "Error determining nsswitch.conf config file\n"},
        XasNeededFile{"system-auth", "Error determining system-auth config file\n"},
    };
    std::array<const char *, FILES.size()> paths{};
    if (!xasFindNeededFiles(*cfgFiles, FILES, paths))
        return 1;
    const auto [radiusFile, nsswitchFile, pamFile] = paths;

    const auto cfgRadius = xasReadPayload<XasRadiusPayload>(*msg);
    const int result = xasLogFailure(xasEditRadiusCfgFile(radiusFile, &cfgRadius, reply),
                                     "Error editing ldap config file\n");
    xasLogFailure(xasEditNsswitchCfgFile(nsswitchFile, reply), "Error editing nsswitch.conf config file\n");
    return xasLastFailure(result, xasLogFailure(xasEditRadiusSysAuthCfgFile(pamFile, &cfgRadius),
                                                "Error editing pam.d/system-auth config file\n"));
}
