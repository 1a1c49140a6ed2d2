#include "config/gateway.h"

#include "core/assert.h"
#include "core/text.h"
#include "core/utils.h"
#include "files/editor.h"
#include "files/key_lines.h"

#include <array>

namespace {

constexpr XasEditTexts PRECEDENCE_TEXTS{
    .openReason = "Error opening dhcp gateway precedenc config file",
    .writeLog = "Error printing line to dhcp gateway precedence config file\n",
    .saveReason = "Error saving new hostname config file",
};

constexpr XasEditTexts ALT_GATEWAY_TEXTS{
    .openReason = "Error opening alternate gateway config file",
    .writeLog = "Error printing line to Alternate Gateway config file\n",
    .saveReason = "Error saving new altenate gateway config file",
};

constexpr std::uint8_t PING_ETH0 = 1;

XasKeyLine textLine(const char *key, const char *value)
{
    return {key, xasFormatLine("%s=%s\n", key, value)};
}

XasKeyLine numberLine(const char *key, int value)
{
    return {key, xasFormatLine("%s=%d\n", key, value)};
}

} // namespace

std::string xasGWPrecText(std::uint32_t precedence)
{
    const bool namesPort = precedence == 1 || precedence == 2;
    return numberLine("DHCP_GW_PRECEDENCE", namesPort ? static_cast<int>(precedence) : 0).line;
}

std::string xasAltGWText(std::string_view oldText, const XasAltGateway &altGateway)
{
    const std::array keyLines = {
        textLine("DGD_GATEWAY", xasIPv4ToStr(altGateway.gateway)),
        textLine("DGD_PING_IP", xasIPv4ToStr(altGateway.pingAddress)),
        textLine("DGD_PING_IFC", altGateway.pingInterface == PING_ETH0 ? "eth0" : "eth1"),
        numberLine("DGD_PING_DELAY", altGateway.pingDelay),
        numberLine("DGD_PING_FAILED", altGateway.pingFailures),
    };
    return xasReplaceKeyLines(oldText, "=", keyLines);
}

int xasEditGWPrecFile(const char *cfgFileName, std::uint32_t precedence, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    return xasEditFile(cfgFileName, PRECEDENCE_TEXTS, reply,
                       [&](std::string_view /*oldText*/) { return xasGWPrecText(precedence); });
}

int xasEditAltGWFile(const char *cfgFileName, const XasAltGateway &altGateway, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    return xasEditFile(cfgFileName, ALT_GATEWAY_TEXTS, reply,
                       [&](std::string_view oldText) { return xasAltGWText(oldText, altGateway); });
}
