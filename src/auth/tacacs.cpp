#include "auth/tacacs.h"

#include "auth/nsswitch.h"
#include "auth/sys_auth.h"
#include "core/text.h"
#include "core/utils.h"

namespace {

/** The longest address in square brackets. */
constexpr std::size_t BRACKETED_MAX = 47;

std::string serverText(const XasHostAddr &server)
{
    const std::string text = xasHostToStr(server);
    return server.isIPv6() ? ("[" + text + "]").substr(0, BRACKETED_MAX) : text;
}

const char *serviceName(std::uint32_t service)
{
    if (service == XAS_TACACS_LOGIN)
        return "login";
    return service == XAS_TACACS_CHAP ? "chap" : "pap";
}

} // namespace

std::string xasTacacsText(std::string templateText, const XasTacacsPayload &tacacs)
{
    const std::array replacements = {
        XasReplacement{"$(SERVER_1)", serverText(tacacs.servers[0])},
        XasReplacement{"$(SERVER_2)", serverText(tacacs.servers[1])},
        XasReplacement{"$(SERVER_3)", serverText(tacacs.servers[2])},
        XasReplacement{"$(SERVER_1_SECRET)", xasFieldString(tacacs.server1_secret)},
        XasReplacement{"$(ENCRYPT)", xasFormat("%d", static_cast<int>(tacacs.encrypt))},
        XasReplacement{"$(SERVICE)", serviceName(tacacs.service)},
    };
    return xasExpandPlaceholders(std::move(templateText), replacements);
}

constexpr XasTemplateEditor<XasTacacsPayload> xasEditTacacsCfgFile{
    .argument = "cfgTacacs",
    .texts = {.templateReason = "Error opening tacplus.conf.tempalte file for read",
              .file = {.openReason = "Error opening tacplus.conf file for write",
                       .saveReason = "Error writing to tacplus.conf file",
                       .secrecy = XasSecrecy::secret}},
    .expand = xasTacacsText};

constexpr XasFileRow FILES[] = {
    {.type = "tacplustmpl", .missingLog = "Error determining tacplus config template file\n"},
    {.type = "tacplus",
     .edit = xasExpandedBy<xasEditTacacsCfgFile, "tacplustmpl">,
     .missingLog = "Error determining tacplus config file\n",
     .editLog = "Error editing %s\n"},
    {.type = "nsswitch",
     .edit = XAS_NSSWITCH_EDIT,
     .missingLog = "Error determining nsswitch.conf config file\n",
     .editLog = "Error editing nsswitch.conf config file\n",
     .lookedUpLater = true},
    {.type = "system-auth",
     .edit = xasRefreshedBy<XasTacacsPayload, xasEditTacacsSysAuthCfgFile>,
     .missingLog = "Error determining system-auth config file\n",
     .editLog = "Error editing pam.d/system-auth config file\n"},
};

constexpr XasFilesUpdate xasUpdateTacacsCfg{
    .msgtype = XMSG_TACACS, .files = FILES, .onFailure = XasOnFailure::goOn, .lookUp = XasLookUp::together};
