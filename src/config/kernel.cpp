#include "config/kernel.h"

#include "core/assert.h"
#include "core/text.h"
#include "files/editor.h"
#include "files/key_lines.h"

#include <array>

namespace {

constexpr XasEditTexts TEXTS{
    .openReason = "Error opening kernel config file",
    .writeLog = "Error printing line to Ethernet config file\n",
    .saveReason = "Error saving new kernel config file",
};

XasKeyLine parameter(const char *key, std::uint32_t value)
{
    return {key, xasFormatLine("%s = %d\n", key, static_cast<int>(value))};
}

} // namespace

std::string xasKernelCfgText(std::string_view oldText, const XasKernCfg &kernCfg)
{
    const std::array parameters = {
        parameter("net.ipv4.ip_forward", kernCfg.ipForwarding),
        parameter("net.ipv4.tcp_keepalive_time", kernCfg.keepaliveTime),
        parameter("net.ipv4.tcp_keepalive_probes", kernCfg.keepaliveProbes),
        parameter("net.ipv4.tcp_keepalive_intvl", kernCfg.keepaliveInterval),
    };
    return xasReplaceKeyLines(oldText, " =", parameters);
}

int xasEditKernelCfgFile(const char *cfgFileName, const XasKernCfg *kernCfg, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(kernCfg, "kernCfg");
    return xasEditFile(cfgFileName, TEXTS, reply,
                       [&](std::string_view oldText) { return xasKernelCfgText(oldText, *kernCfg); });
}
