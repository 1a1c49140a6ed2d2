#include "auth/ldap.h"

#include "auth/auth_steps.h"
#include "auth/ldap_tls.h"
#include "auth/nsswitch.h"
#include "auth/sys_auth.h"
#include "core/assert.h"
#include "core/text.h"
#include "core/utils.h"
#include "files/editor.h"
#include "files/template.h"

#include <unistd.h>

namespace {

constexpr XasEditTexts OPENLDAP_TEXTS{
    .openReason = "Error opening openldap/ldap.conf config file",
    .writeLog = nullptr,
    .saveReason = "Error saving new openldap config file",
};

constexpr XasTemplateTexts LDAP_TEXTS{
    .templateReason = "Error opening ldap.conf.tempalte file for read",
    .openReason = "Error opening ldap.conf file for write",
    .writeReason = "Error writing to ldap.conf file",
    .access = XasFileAccess::owner,
};

constexpr const char *COMMENT = "#";

/** Fills in a setting, or comments its line out when it is empty; the placeholder then stays in it. */
void replaceOptional(std::string &text, const char *mark, const char *placeholder, const std::string &value)
{
    xasReplaceString(text, mark, value.empty() ? COMMENT : nullptr);
    if (!value.empty())
        xasReplaceString(text, placeholder, value.c_str());
}

} // namespace

std::string xasOpenLdapText(std::string_view oldText, const XasLdapPayload &cfgLDAP)
{
    std::string newText;
    xasForEachLine(oldText, [&](std::string_view line) {
        if (!line.starts_with("HOST") && !line.starts_with("BASE"))
            newText += line;
    });
    if (cfgLDAP.enabled != 0) {
        newText += xasFormatLine("HOST %s \n", xasHostToStr(cfgLDAP.server).c_str());
        newText += xasFormatLine("BASE %s \n", xasFieldString(cfgLDAP.base).c_str());
    }
    return newText;
}

std::string xasLdapTemplateText(std::string templateText, const XasLdapPayload &cfgLDAP)
{
    std::string text = std::move(templateText);
    const std::string hosts = xasHostToStr(cfgLDAP.server) + " " + xasHostToStr(cfgLDAP.server2);
    const std::string port = cfgLDAP.port != 0 ? xasFormat("%d", static_cast<int>(cfgLDAP.port)) : "";
    xasReplaceString(text, "$(HOST)", hosts.c_str());
    xasReplaceString(text, "$(BASE)", xasFieldString(cfgLDAP.base).c_str());
    replaceOptional(text, "$(NO_BINDDN)", "$(BINDDN)", xasFieldString(cfgLDAP.bind_name));
    replaceOptional(text, "$(NO_BINDPW)", "$(BINDPW)", xasFieldString(cfgLDAP.bind_passwd));
    replaceOptional(text, "$(NO_LDAP_PORT)", "$(LDAP_PORT)", port);
    xasReplaceString(text, "$(ISMS)", cfgLDAP.ad_support != 0 ? nullptr : COMMENT);
    xasReplaceString(text, "$(ENCRYPT)", COMMENT);
    return text;
}

std::string xasLdapBindText(const XasLdapPayload &cfgLDAP)
{
    std::string text;
    if (cfgLDAP.bind_with_login != 0)
        text += "\n# Non-standard option: insert current login into bind name\nbind_with_login yes\n";
    if (cfgLDAP.encrypt == 1)
        text += xasFormat("\nssl %s\n", cfgLDAP.port == XAS_LDAPS_PORT ? "on" : "start_tls");
    return text;
}

std::string xasLdapMapText(const XasLdapPayload &cfgLDAP)
{
    const std::string uid = xasFieldString(cfgLDAP.map_uid);
    const std::string group = xasFieldString(cfgLDAP.map_posix_group);
    const std::string member = xasFieldString(cfgLDAP.map_member);
    std::string text;
    if (!uid.empty())
        text += xasFormat("\nnss_map_attribute uid %s\n", uid.c_str());
    if (!group.empty())
        text += xasFormat("\nnss_map_objectclass posixGroup %s\n", group.c_str());
    if (!member.empty())
        text += xasFormat("\nnss_map_attribute %s %s\n",
                          cfgLDAP.map_member_type == 1 ? "memberUID" : "uniqueMember", member.c_str());
    return text;
}

int xasEditOpenLdapCfgFile(const char *cfgFileName, const XasLdapPayload *cfgLDAP, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(cfgLDAP, "cfgLDAP");
    return xasEditFile(cfgFileName, OPENLDAP_TEXTS, reply,
                       [&](std::string_view oldText) { return xasOpenLdapText(oldText, *cfgLDAP); });
}

int xasEditLdapCfgFileBC(const char *cfgTemplateFileName, const char *cfgFileName,
                         const XasLdapPayload *cfgLDAP, XasReplyStatus *reply)
{
    xasAssertGiven(cfgTemplateFileName, "cfgTemplateFileName");
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(cfgLDAP, "cfgLDAP");
    if (cfgLDAP->enabled == 0) {
        ::unlink(cfgFileName);
        return 0;
    }
    return xasGenerateFromTemplate(
        cfgTemplateFileName, cfgFileName, LDAP_TEXTS, reply,
        [&](std::string text) { return xasLdapTemplateText(std::move(text), *cfgLDAP); },
        [&] { return xasLdapBindText(*cfgLDAP) + xasLdapTlsText() + xasLdapMapText(*cfgLDAP); });
}

int xasUpdateLdapCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    xasAssertGiven(msg, "msg");
    xasAssert(XMSG_LDAP == msg->xH.msgtype, "XMSG_LDAP == msg->xH.msgtype");
    xasAssertGiven(cfgFiles, "cfgFiles");
    constexpr std::array FILES = {
        XasNeededFile{"openldap", "Error determining openldap config file\n"},
        XasNeededFile{"ldap", "Error determining ldap config file\n"},
        XasNeededFile{"ldaptmpl", "Error determining ldap config template file\n"},
        XasNeededFile{"nsswitch", "Error determining nsswitch.conf config file\n"},
        XasNeededFile{"system-auth", "Error determining ldap SysAuth config file\n"},
    };
    std::array<const char *, FILES.size()> paths{};
    if (!xasFindNeededFiles(*cfgFiles, FILES, paths))
        return 1;
    const auto [openLdapFile, ldapFile, templateFile, nsswitchFile, pamFile] = paths;

    const auto cfgLDAP = xasReadPayload<XasLdapPayload>(*msg);
    int result = xasLogFailure(xasEditOpenLdapCfgFile(openLdapFile, &cfgLDAP, reply),
                               "Error editing openldap config file\n");
    result =
        xasLastFailure(result, xasLogFailure(xasEditLdapCfgFileBC(templateFile, ldapFile, &cfgLDAP, reply),
                                             "Error editing ldap config file\n"));
    xasLogFailure(xasEditLdapSysAuthCfgFile(pamFile, &cfgLDAP), "Error editing nsswitch.conf config file\n");
    return xasLastFailure(result, xasLogFailure(xasEditNsswitchCfgFile(nsswitchFile, reply),
                                                "Error editing nsswitch.conf config file\n"));
}
