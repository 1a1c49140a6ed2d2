#include "config/dns.h"

#include "core/text.h"
#include "platform/config_library.h"

std::string xasDnsText(const XasDnsPayload &dns)
{
    std::string text;
    for (const XasIpAddr *server : {&dns.dns1, &dns.dns2, &dns.dns3}) {
        const char *address = xmlIPv4Or6ToStr(server);
        if (address != nullptr && *address != '\0')
            text += xasFormatLine("%s\n", address);
    }
    return text;
}

std::string xasDnsPrecText(const XasDnsPayload &dns)
{
    return xasFormatLine("%s=%s", "IPV4_PRECEDENCE", dns.prefer_ipv4 != 0 ? "yes" : "no");
}

constexpr XasEditor<XasDnsPayload> xasEditDNSCfgFile{
    .argument = "dnsInfo",
    .texts = {.openReason = "Error opening DNS config file",
              .writeLog = "Error printing line to DNS config file\n",
              .saveReason = "Error saving new DNS config file"},
    .text = xasMadeBy<xasDnsText>};

constexpr XasEditor<XasDnsPayload> xasEditDnsPrecCfgFile{
    .argument = "dnsInfo",
    .texts = {.openReason = "Error opening DNS precedence config file",
              .writeLog = "Error printing line to DNS precedence config file\n",
              .saveReason = "Error saving new DNS precedence config file",
              .anew = true},
    .text = xasMadeBy<xasDnsPrecText>};

constexpr XasFileRow FILES[] = {
    {.type = "resolv",
     .edit = xasEditedBy<xasEditDNSCfgFile>,
     .missingLog = "Error determining config file for dns\n",
     .missingReason = "Error determining dns config file",
     .editLog = "Error editing DNS config file\n"},
    {.type = "dnsprec",
     .edit = xasEditedBy<xasEditDnsPrecCfgFile>,
     .missingLog = "Error determining precedence config file for dns\n",
     .missingReason = "Error determining dns precedence config file",
     .editLog = "Error editing DNS precedence config file\n"},
};

constexpr XasFilesUpdate xasUpdateDnsCfg{.msgtype = XMSG_DNS, .files = FILES};
