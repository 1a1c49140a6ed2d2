#include "auth/ldap.h"

#include "auth/ldap_tls.h"
#include "auth/nsswitch.h"
#include "auth/sys_auth.h"
#include "core/text.h"
#include "core/utils.h"

namespace {

constexpr const char *COMMENT = "#";

/** Fills in a setting, or comments its line out when it is empty; the placeholder then stays in it. */
void replaceOptional(std::string &text, const char *mark, const char *placeholder, const std::string &value)
{
    xasReplaceString(text, mark, value.empty() ? COMMENT : nullptr);
    if (!value.empty())
        xasReplaceString(text, placeholder, value.c_str());
}

} // namespace

std::string xasOpenLdapText(std::string_view oldText, const XasLdapPayload &ldap)
{
    std::string newText = xasBeginNewText(oldText);
    xasForEachLine(oldText, [&](std::string_view line) {
        if (!line.starts_with("HOST") && !line.starts_with("BASE"))
            newText += line;
    });
    if (ldap.enabled != 0) {
        newText += xasFormatLine("HOST %s \n", xasHostToStr(ldap.server).c_str());
        newText += xasFormatLine("BASE %s \n", xasFieldString(ldap.base).c_str());
    }
    return newText;
}

std::string xasLdapTemplateText(std::string templateText, const XasLdapPayload &ldap)
{
    std::string text = std::move(templateText);
    const std::string hosts = xasHostToStr(ldap.server) + " " + xasHostToStr(ldap.server2);
    const std::string port = ldap.port != 0 ? xasFormat("%d", static_cast<int>(ldap.port)) : "";
    xasReplaceString(text, "$(HOST)", hosts.c_str());
    xasReplaceString(text, "$(BASE)", xasFieldString(ldap.base).c_str());
    replaceOptional(text, "$(NO_BINDDN)", "$(BINDDN)", xasFieldString(ldap.bind_name));
    replaceOptional(text, "$(NO_BINDPW)", "$(BINDPW)", xasFieldString(ldap.bind_passwd));
    replaceOptional(text, "$(NO_LDAP_PORT)", "$(LDAP_PORT)", port);
    xasReplaceString(text, "$(ISMS)", ldap.ad_support != 0 ? nullptr : COMMENT);
    xasReplaceString(text, "$(ENCRYPT)", COMMENT);
    return text;
}

std::string xasLdapBindText(const XasLdapPayload &ldap)
{
    std::string text;
    if (ldap.bind_with_login != 0)
        text += "\n# Non-standard option: insert current login into bind name\nbind_with_login yes\n";
    if (ldap.encrypt == 1)
        text += xasFormat("\nssl %s\n", ldap.port == XAS_LDAPS_PORT ? "on" : "start_tls");
    return text;
}

std::string xasLdapMapText(const XasLdapPayload &ldap)
{
    const std::string uid = xasFieldString(ldap.map_uid);
    const std::string group = xasFieldString(ldap.map_posix_group);
    const std::string member = xasFieldString(ldap.map_member);
    std::string text;
    if (!uid.empty())
        text += xasFormat("\nnss_map_attribute uid %s\n", uid.c_str());
    if (!group.empty())
        text += xasFormat("\nnss_map_objectclass posixGroup %s\n", group.c_str());
    if (!member.empty())
        text += xasFormat("\nnss_map_attribute %s %s\n",
                          ldap.map_member_type == 1 ? "memberUID" : "uniqueMember", member.c_str());
    return text;
}

constexpr XasEditor<XasLdapPayload> xasEditOpenLdapCfgFile{
    .argument = "cfgLDAP",
    .texts = {.openReason = "Error opening openldap/ldap.conf config file",
              .saveReason = "Error saving new openldap config file"},
    .text = xasMadeBy<xasOpenLdapText>};

constexpr XasTemplateEditor<XasLdapPayload> xasEditLdapCfgFileBC{
    .argument = "cfgLDAP",
    .texts = {.templateReason = "Error opening ldap.conf.tempalte file for read",
              .file = {.openReason = "Error opening ldap.conf file for write",
                       .saveReason = "Error writing to ldap.conf file",
                       .secrecy = XasSecrecy::secret}},
    .isWanted = [](const XasLdapPayload &ldap) { return ldap.enabled != 0; },
    .expand = xasLdapTemplateText,
    .tail =
        [](const XasLdapPayload &ldap) {
            return xasLdapBindText(ldap) + xasLdapTlsText() + xasLdapMapText(ldap);
        }};

constexpr XasFileRow FILES[] = {
    {.type = "openldap",
     .edit = xasEditedBy<xasEditOpenLdapCfgFile>,
     .missingLog = "Error determining openldap config file\n",
     .editLog = "Error editing openldap config file\n"},
    {.type = "ldap",
     .edit = xasExpandedBy<xasEditLdapCfgFileBC, "ldaptmpl">,
     .missingLog = "Error determining ldap config file\n",
     .editLog = "Error editing ldap config file\n"},
    {.type = "ldaptmpl", .missingLog = "Error determining ldap config template file\n"},
    {.type = "nsswitch",
     .edit = XAS_NSSWITCH_EDIT,
     .missingLog = "Error determining nsswitch.conf config file\n",
     .editLog = "Error editing nsswitch.conf config file\n",
     .editedLast = true},
    {.type = "system-auth",
     .edit = xasRefreshedBy<XasLdapPayload, xasEditLdapSysAuthCfgFile>,
     .missingLog = "Error determining ldap SysAuth config file\n",
     .editLog = "Error editing nsswitch.conf config file\n"},
};

constexpr XasFilesUpdate xasUpdateLdapCfg{
    .msgtype = XMSG_LDAP, .files = FILES, .onFailure = XasOnFailure::goOn, .lookUp = XasLookUp::together};
