#include "config/modprobe.h"

#include "core/assert.h"
#include "core/log.h"
#include "core/text.h"
#include "core/utils.h"

namespace {

constexpr XasEditTexts TEXTS{
    .openReason = "Error opening modprobe config file",
    .writeLog = "Error printing line to modprobe config file\n",
    .saveReason = "Error saving new modprobe config file",
};

} // namespace

XasNewText xasModProbeCfgText(std::uint32_t bonding, bool ipv6Enabled)
{
    std::string text;
    if (bonding != 0) {
        text += "alias netdev-bond0 bonding\n";
        std::string options;
        if (xasGetBondingOptions(bonding, options) != 0) {
            xasLogError("Error getting Ethernet bonding options string\n");
            return {std::move(text), false};
        }
        text += xasFormatLine("options bond0 %s\n", options.c_str());
    }
    if (!ipv6Enabled)
        text += "options ipv6 disable=1\n";
    return text;
}

int xasEditModProbeCfgFile(const char *cfgFileName, std::uint32_t bonding, bool ipv6Enabled,
                           XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    return xasRegenerateFile(cfgFileName, TEXTS, reply,
                             [&] { return xasModProbeCfgText(bonding, ipv6Enabled); });
}
