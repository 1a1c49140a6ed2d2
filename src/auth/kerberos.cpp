#include "auth/kerberos.h"

#include "auth/nsswitch.h"
#include "auth/sys_auth.h"
#include "core/text.h"
#include "platform/config_library.h"

#include <array>

std::string xasKerberosText(std::string templateText, const XasKerberosPayload &kerberos)
{
    const std::array replacements = {
        XasReplacement{"$(REALM)", xasFieldString(kerberos.realm)},
        XasReplacement{"$(KDC_FQDN)", xasFieldString(kerberos.kdc)},
        XasReplacement{"$(KDC_PORT)", xasFormat("%d", kerberos.kdc_port)},
        XasReplacement{"$(USE_LDAP)", xasFormat("%d", static_cast<int>(kerberos.use_ldap))},
    };
    return xasExpandPlaceholders(std::move(templateText), replacements);
}

std::string xasHostsTextWithLine(std::string_view oldText, const char *address, const char *canonicalName,
                                 const char *alias)
{
    std::string newText = xasBeginNewText(oldText);
    xasForEachLine(oldText, [&](std::string_view line) {
        if (line.starts_with('#') || line.find(canonicalName) == std::string_view::npos)
            newText += line;
    });
    newText += xasFormat("%s    %s  %s\n", address, canonicalName, alias);
    return newText;
}

constexpr XasTemplateEditor<XasKerberosPayload> xasEditKerberosCfgFile{
    .argument = "cfgKerberos",
    .texts = {.templateReason = "Error opening krb5.conf.tempalte file for read",
              .file = {.openReason = "Error opening krb5.conf file for write",
                       .saveReason = "Error writing to krb5.conf file"}},
    .isWanted = [](const XasKerberosPayload &kerberos) { return kerberos.enabled != 0; },
    .expand = xasKerberosText};

namespace {

constexpr XasEditTexts HOSTS_TEXTS{.openReason = "Error opening /etc/hosts file",
                                   .saveReason = "Error saving new /etc/hosts file"};

/** Gives the key distribution centre its line, when both its name and its address are given. */
int addKdcToHosts(const XasEditCall &call)
{
    const auto kerberos = xasReadPayload<XasKerberosPayload>(call.msg);
    const std::string kdc = xasFieldString(kerberos.kdc);
    const char *address = xmlIPv4Or6ToStr(&kerberos.kdc_ip);
    if (kdc.empty() || address == nullptr || *address == '\0')
        return 0;
    return xasAddLinetoHostsFile(call.path, address, kdc.c_str(), kdc.c_str(), call.reply);
}

constexpr XasFileRow FILES[] = {
    {.type = "krb5tmpl", .missingLog = "Error determining kerberos config template file\n"},
    {.type = "krb5",
     .edit = xasExpandedBy<xasEditKerberosCfgFile, "krb5tmpl">,
     .missingLog = "Error determining kerberos config file\n",
     .editLog = "Error editing %s\n"},
    {.type = "nsswitch",
     .edit = XAS_NSSWITCH_EDIT,
     .missingLog = "Error determining nsswitch.conf config file\n",
     .editLog = "Error editing %s\n"},
    {.type = "system-auth",
     .edit = xasRefreshedBy<XasKerberosPayload, xasEditKerberosSysAuthCfgFile>,
     .missingLog = "Error determining system-auth config file\n",
     .editLog = "Error editing pam.d/system-auth config file\n",
     .editedLast = true},
    {.type = "hosts",
     .edit = {addKdcToHosts, &HOSTS_TEXTS},
     .missingLog = "Error determining system hosts file\n",
     .editLog = "Error editing %s\n"},
};

} // namespace

int xasAddLinetoHostsFile(const char *cfgFileName, const char *address, const char *canonicalName,
                          const char *alias, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(canonicalName, "canonical_name");
    xasAssertGiven(alias, "alias");
    xasAssertGiven(address, "address");
    return xasEditFile(cfgFileName, HOSTS_TEXTS, reply, [&](std::string_view oldText) {
        return XasNewText{xasHostsTextWithLine(oldText, address, canonicalName, alias)};
    });
}

constexpr XasFilesUpdate xasUpdateKerberosCfg{
    .msgtype = XMSG_KERBEROS, .files = FILES, .onFailure = XasOnFailure::goOn, .lookUp = XasLookUp::together};
