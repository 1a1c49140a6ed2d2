#include "config/modprobe.h"

#include "core/log.h"
#include "core/text.h"
#include "core/utils.h"

XasNewText xasModProbeCfgText(const XasEthPayload &eth)
{
    std::string text;
    if (eth.bonding != 0) {
        text += "alias netdev-bond0 bonding\n";
        std::string options;
        if (xasGetBondingOptions(eth.bonding, options) != 0) {
            xasLogError("Error getting Ethernet bonding options string\n");
            return {std::move(text), false};
        }
        text += xasFormatLine("options bond0 %s\n", options.c_str());
    }
    if (eth.ipv6_enabled == 0)
        text += "options ipv6 disable=1\n";
    return text;
}

constexpr XasEditor<XasEthPayload> xasEditModProbeCfgFile{
    .argument = "eth",
    .texts = {.openReason = "Error opening modprobe config file",
              .writeLog = "Error printing line to modprobe config file\n",
              .saveReason = "Error saving new modprobe config file",
              .anew = true},
    .text = xasMadeBy<xasModProbeCfgText>};
