#include "config/dns.h"

#include "core/assert.h"
#include "core/text.h"
#include "files/editor.h"
#include "files/update.h"
#include "platform/config_library.h"

#include <array>

namespace {

constexpr XasEditTexts DNS_TEXTS{
    .openReason = "Error opening DNS config file",
    .writeLog = "Error printing line to DNS config file\n",
    .saveReason = "Error saving new DNS config file",
};

constexpr XasEditTexts PRECEDENCE_TEXTS{
    .openReason = "Error opening DNS precedence config file",
    .writeLog = "Error printing line to DNS precedence config file\n",
    .saveReason = "Error saving new DNS precedence config file",
};

} // namespace

std::string xasDnsText(const XasDnsPayload &dnsInfo)
{
    std::string text;
    for (const XasIpAddr *server : {&dnsInfo.dns1, &dnsInfo.dns2, &dnsInfo.dns3}) {
        const char *address = xmlIPv4Or6ToStr(server);
        if (address != nullptr && *address != '\0')
            text += xasFormatLine("%s\n", address);
    }
    return text;
}

std::string xasDnsPrecText(bool preferIPv4)
{
    return xasFormatLine("%s=%s", "IPV4_PRECEDENCE", preferIPv4 ? "yes" : "no");
}

int xasEditDNSCfgFile(const char *cfgFileName, const XasDnsPayload *dnsInfo, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(dnsInfo, "dnsInfo");
    return xasEditFile(cfgFileName, DNS_TEXTS, reply,
                       [&](std::string_view /*oldText*/) { return xasDnsText(*dnsInfo); });
}

int xasEditDnsPrecCfgFile(const char *cfgFileName, bool preferIPv4, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    return xasRegenerateFile(cfgFileName, PRECEDENCE_TEXTS, reply,
                             [&] { return xasDnsPrecText(preferIPv4); });
}

int xasUpdateDnsCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    xasAssertGiven(msg, "msg");
    xasAssert(XMSG_DNS == msg->xH.msgtype, "XMSG_DNS == msg->xH.msgtype");
    xasAssertGiven(cfgFiles, "cfgFiles");
    const auto dnsInfo = xasReadPayload<XasDnsPayload>(*msg);
    const std::array<XasFileStep, 2> steps = {{
        {.type = "resolv",
         .missingLog = "Error determining config file for dns\n",
         .missingReason = "Error determining dns config file",
         .editLog = "Error editing DNS config file\n",
         .edit = [&](const char *path) { return xasEditDNSCfgFile(path, &dnsInfo, reply); },
         .restoreIfMissing = {},
         .restoreIfEditFails = {}},
        {.type = "dnsprec",
         .missingLog = "Error determining precedence config file for dns\n",
         .missingReason = "Error determining dns precedence config file",
         .editLog = "Error editing DNS precedence config file\n",
         .edit =
             [&](const char *path) { return xasEditDnsPrecCfgFile(path, dnsInfo.prefer_ipv4 != 0, reply); },
         .restoreIfMissing = {"resolv"},
         .restoreIfEditFails = {"resolv"}},
    }};
    return xasRunFileSteps(*cfgFiles, reply, steps);
}
