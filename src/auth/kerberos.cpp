#include "auth/kerberos.h"

#include "auth/auth_steps.h"
#include "auth/nsswitch.h"
#include "auth/sys_auth.h"
#include "core/assert.h"
#include "core/text.h"
#include "files/editor.h"
#include "files/template.h"
#include "platform/config_library.h"

#include <unistd.h>

namespace {

constexpr XasTemplateTexts KRB5_TEXTS{
    .templateReason = "Error opening krb5.conf.tempalte file for read",
    .openReason = "Error opening krb5.conf file for write",
    .writeReason = "Error writing to krb5.conf file",
};

constexpr XasEditTexts HOSTS_TEXTS{
    .openReason = "Error opening /etc/hosts file",
    .writeLog = nullptr,
    .saveReason = "Error saving new /etc/hosts file",
};

/** Gives the key distribution centre its line, when both its name and its address are given. */
int addKdcToHosts(const char *hostsFile, const XasKerberosPayload &cfgKerberos, XasReplyStatus *reply)
{
    const std::string kdc = xasFieldString(cfgKerberos.kdc);
    const char *address = xmlIPv4Or6ToStr(&cfgKerberos.kdc_ip);
    if (kdc.empty() || address == nullptr || *address == '\0')
        return 0;
    return xasLogFailedPath(xasAddLinetoHostsFile(hostsFile, address, kdc.c_str(), kdc.c_str(), reply),
                            hostsFile);
}

} // namespace

std::string xasKerberosText(std::string templateText, const XasKerberosPayload &cfgKerberos)
{
    const std::array replacements = {
        XasReplacement{"$(REALM)", xasFieldString(cfgKerberos.realm)},
        XasReplacement{"$(KDC_FQDN)", xasFieldString(cfgKerberos.kdc)},
        XasReplacement{"$(KDC_PORT)", xasFormat("%d", cfgKerberos.kdc_port)},
        XasReplacement{"$(USE_LDAP)", xasFormat("%d", static_cast<int>(cfgKerberos.use_ldap))},
    };
    return xasExpandPlaceholders(std::move(templateText), replacements);
}

std::string xasHostsTextWithLine(std::string_view oldText, const char *address, const char *canonicalName,
                                 const char *alias)
{
    std::string newText;
    xasForEachLine(oldText, [&](std::string_view line) {
        if (line.starts_with('#') || line.find(canonicalName) == std::string_view::npos)
            newText += line;
    });
    return newText + xasFormat("%s    %s  %s\n", address, canonicalName, alias);
}

int xasEditKerberosCfgFile(const char *cfgTemplateFileName, const char *cfgFileName,
                           const XasKerberosPayload *cfgKerberos, XasReplyStatus *reply)
{
    xasAssertGiven(cfgTemplateFileName, "cfgTemplateFileName");
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(cfgKerberos, "cfgKerberos");
    if (cfgKerberos->enabled == 0) {
        ::unlink(cfgFileName);
        return 0;
    }
    return xasGenerateFromTemplate(
        cfgTemplateFileName, cfgFileName, KRB5_TEXTS, reply,
        [&](std::string text) { return xasKerberosText(std::move(text), *cfgKerberos); });
}

int xasAddLinetoHostsFile(const char *cfgFileName, const char *address, const char *canonicalName,
                          const char *alias, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(canonicalName, "canonical_name");
    xasAssertGiven(alias, "alias");
    xasAssertGiven(address, "address");
    return xasEditFile(cfgFileName, HOSTS_TEXTS, reply, [&](std::string_view oldText) {
        return xasHostsTextWithLine(oldText, address, canonicalName, alias);
    });
}

int xasUpdateKerberosCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    xasAssertGiven(msg, "msg");
    xasAssert(XMSG_KERBEROS == msg->xH.msgtype, "XMSG_KERBEROS == msg->xH.msgtype");
    xasAssertGiven(cfgFiles, "cfgFiles");
    constexpr std::array FILES = {
        XasNeededFile{"krb5tmpl", "Error determining kerberos config template file\n"},
        XasNeededFile{"krb5", "Error determining kerberos config file\n"},
        XasNeededFile{"nsswitch", "Error determining nsswitch.conf config file\n"},
        XasNeededFile{"system-auth", "Error determining system-auth config file\n"},
        XasNeededFile{"hosts", "Error determining system hosts file\n"},
    };
    std::array<const char *, FILES.size()> paths{};
    if (!xasFindNeededFiles(*cfgFiles, FILES, paths))
        return 1;
    const auto [templateFile, krb5File, nsswitchFile, pamFile, hostsFile] = paths;

    const auto cfgKerberos = xasReadPayload<XasKerberosPayload>(*msg);
    int result =
        xasLogFailedPath(xasEditKerberosCfgFile(templateFile, krb5File, &cfgKerberos, reply), krb5File);
    result =
        xasLastFailure(result, xasLogFailedPath(xasEditNsswitchCfgFile(nsswitchFile, reply), nsswitchFile));
    result = xasLastFailure(result, addKdcToHosts(hostsFile, cfgKerberos, reply));
    return xasLastFailure(result, xasLogFailure(xasEditKerberosSysAuthCfgFile(pamFile, &cfgKerberos),
                                                "Error editing pam.d/system-auth config file\n"));
}
