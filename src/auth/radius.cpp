#include "auth/radius.h"

#include "auth/nsswitch.h"
#include "auth/sys_auth.h"
#include "core/text.h"
#include "core/utils.h"

namespace {

constexpr std::string_view NO_ADDRESS = "<invalid>";

std::string serverLine(const XasRadiusServer &server, std::uint8_t timeout, const char *blanksBehindPort)
{
    std::string host = xasHostToStr(server.host);
    if (server.host.isIPv6())
        host = "[" + host + "]";
    return xasFormatLine("%s:%d%s%s    %d\n", host.c_str(), server.port, blanksBehindPort,
                         xasFieldString(server.secret).c_str(), timeout);
}

std::string firstLine(const XasRadiusServer &server, std::uint8_t timeout)
{
    return serverLine(server, timeout, server.host.isIPv6() ? "    " : "   ");
}

std::string secondLine(const XasRadiusServer &server, std::uint8_t timeout)
{
    const bool isUnusable = server.host.isIPv6() && xasHostToStr(server.host) == NO_ADDRESS;
    if (!xasIsHostGiven(server.host) || isUnusable)
        return {};
    return serverLine(server, timeout, server.host.is_name != 0 ? "   " : "    ");
}

} // namespace

std::string xasRadiusText(std::string_view oldText, const XasRadiusPayload &radius)
{
    std::string newText = xasBeginNewText(oldText);
    xasForEachLine(oldText, [&](std::string_view line) {
        if (line.starts_with('#'))
            newText += line;
    });
    if (radius.enabled != 0) {
        newText += firstLine(radius.server1, radius.timeout);
        newText += secondLine(radius.server2, radius.timeout);
    }
    return newText;
}

constexpr XasEditor<XasRadiusPayload> xasEditRadiusCfgFile{
    .argument = "cfgRadius",
    .texts = {.openReason = "Error opening /etc/raddb/server file",
              .saveReason = "Error saving new /etc/raddb/server file",
              .secrecy = XasSecrecy::secret},
    .text = xasMadeBy<xasRadiusText>};

constexpr XasFileRow FILES[] = {
    {.type = "radius",
     .edit = xasEditedBy<xasEditRadiusCfgFile>,
     .missingLog = "Error determining openldap config file\n",
     .editLog = "Error editing ldap config file\n"},
    {.type = "nsswitch",
     .edit = XAS_NSSWITCH_EDIT,
     .missingLog = "Error determining nsswitch.conf config file\n",
     .editLog = "Error editing nsswitch.conf config file\n"},
    {.type = "system-auth",
     .edit = xasRefreshedBy<XasRadiusPayload, xasEditRadiusSysAuthCfgFile>,
     .missingLog = "Error determining system-auth config file\n",
     .editLog = "Error editing pam.d/system-auth config file\n"},
};

constexpr XasFilesUpdate xasUpdateRadiusCfg{
    .msgtype = XMSG_RADIUS, .files = FILES, .onFailure = XasOnFailure::goOn, .lookUp = XasLookUp::together};
