#include "auth/tacacs.h"

#include "auth/auth_steps.h"
#include "auth/nsswitch.h"
#include "auth/sys_auth.h"
#include "core/assert.h"
#include "core/text.h"
#include "core/utils.h"
#include "files/template.h"

namespace {

constexpr XasTemplateTexts TEXTS{
    .templateReason = "Error opening tacplus.conf.tempalte file for read",
    .openReason = "Error opening tacplus.conf file for write",
    .writeReason = "Error writing to tacplus.conf file",
    .access = XasFileAccess::owner,
};

/** The longest address in square brackets. */
constexpr std::size_t BRACKETED_MAX = 47;

std::string serverText(const XasHostAddr &server)
{
    const std::string text = xasHostToStr(server);
    const bool isIPv6 = server.is_name == 0 && server.is_ipv6 != 0;
    return isIPv6 ? ("[" + text + "]").substr(0, BRACKETED_MAX) : text;
}

const char *serviceName(std::uint32_t service)
{
    if (service == XAS_TACACS_LOGIN)
        return "login";
    return service == XAS_TACACS_CHAP ? "chap" : "pap";
}

} // namespace

std::string xasTacacsText(std::string templateText, const XasTacacsPayload &cfgTacacs)
{
    const std::array replacements = {
        XasReplacement{"$(SERVER_1)", serverText(cfgTacacs.servers[0])},
        XasReplacement{"$(SERVER_2)", serverText(cfgTacacs.servers[1])},
        XasReplacement{"$(SERVER_3)", serverText(cfgTacacs.servers[2])},
        XasReplacement{"$(SERVER_1_SECRET)", xasFieldString(cfgTacacs.server1_secret)},
        XasReplacement{"$(ENCRYPT)", xasFormat("%d", static_cast<int>(cfgTacacs.encrypt))},
        XasReplacement{"$(SERVICE)", serviceName(cfgTacacs.service)},
    };
    return xasExpandPlaceholders(std::move(templateText), replacements);
}

int xasEditTacacsCfgFile(const char *cfgTemplateFileName, const char *cfgFileName,
                         const XasTacacsPayload *cfgTacacs, XasReplyStatus *reply)
{
    xasAssertGiven(cfgTemplateFileName, "cfgTemplateFileName");
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(cfgTacacs, "cfgTacacs");
    return xasGenerateFromTemplate(cfgTemplateFileName, cfgFileName, TEXTS, reply, [&](std::string text) {
        return xasTacacsText(std::move(text), *cfgTacacs);
    });
}

int xasUpdateTacacsCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    xasAssertGiven(msg, "msg");
    xasAssert(XMSG_TACACS == msg->xH.msgtype, "XMSG_TACACS == msg->xH.msgtype");
    xasAssertGiven(cfgFiles, "cfgFiles");
    constexpr std::array OWN_FILES = {
        XasNeededFile{"tacplustmpl", "Error determining tacplus config template file\n"},
        XasNeededFile{"tacplus", "Error determining tacplus config file\n"},
    };
    constexpr std::array DERIVED_FILES = {
        XasNeededFile{"nsswitch", "Error determining nsswitch.conf config file\n"},
        XasNeededFile{"system-auth", "Error determining system-auth config file\n"},
    };
    std::array<const char *, 2> own{};
    if (!xasFindNeededFiles(*cfgFiles, OWN_FILES, own))
        return 1;
    const auto cfgTacacs = xasReadPayload<XasTacacsPayload>(*msg);
    const int result = xasLogFailedPath(xasEditTacacsCfgFile(own[0], own[1], &cfgTacacs, reply), own[1]);

    std::array<const char *, 2> derived{};
    if (!xasFindNeededFiles(*cfgFiles, DERIVED_FILES, derived))
        return 1;
    xasLogFailure(xasEditNsswitchCfgFile(derived[0], reply), "Error editing nsswitch.conf config file\n");
    return xasLastFailure(result, xasLogFailure(xasEditTacacsSysAuthCfgFile(derived[1], &cfgTacacs),
                                                "Error editing pam.d/system-auth config file\n"));
}
