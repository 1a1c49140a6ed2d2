#include "config/gateway.h"

#include "core/text.h"
#include "core/utils.h"
#include "files/key_lines.h"

#include <array>

namespace {

constexpr std::uint8_t PING_ETH0 = 1;

XasKeyLine textLine(const char *key, const std::string &value)
{
    return {key, xasFormatLine("%s=%s\n", key, value.c_str())};
}

XasKeyLine numberLine(const char *key, int value)
{
    return {key, xasFormatLine("%s=%d\n", key, value)};
}

} // namespace

std::string xasGWPrecText(const XasEthPayload &eth)
{
    const std::uint32_t precedence = eth.gw_precedence;
    const bool namesPort = precedence == 1 || precedence == 2;
    return numberLine("DHCP_GW_PRECEDENCE", namesPort ? static_cast<int>(precedence) : 0).line;
}

std::string xasAltGWText(std::string_view oldText, const XasEthPayload &eth)
{
    const std::array keyLines = {
        textLine("DGD_GATEWAY", xasIPv4ToStr(eth.alt_gateway)),
        textLine("DGD_PING_IP", xasIPv4ToStr(eth.ping_ip)),
        textLine("DGD_PING_IFC", eth.ping_ifc == PING_ETH0 ? "eth0" : "eth1"),
        numberLine("DGD_PING_DELAY", eth.ping_delay),
        numberLine("DGD_PING_FAILED", eth.ping_failed),
    };
    return xasReplaceKeyLines(oldText, "=", keyLines);
}

constexpr XasEditor<XasEthPayload> xasEditGWPrecFile{
    .argument = "eth",
    .texts = {.openReason = "Error opening dhcp gateway precedenc config file",
              .writeLog = "Error printing line to dhcp gateway precedence config file\n",
              .saveReason = "Error saving new hostname config file"},
    .text = xasMadeBy<xasGWPrecText>};

constexpr XasEditor<XasEthPayload> xasEditAltGWFile{
    .argument = "eth",
    .texts = {.openReason = "Error opening alternate gateway config file",
              .writeLog = "Error printing line to Alternate Gateway config file\n",
              .saveReason = "Error saving new altenate gateway config file"},
    .text = xasMadeBy<xasAltGWText>};
