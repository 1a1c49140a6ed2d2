#include "config/kernel.h"

#include "core/text.h"
#include "files/key_lines.h"

#include <array>

namespace {

XasKeyLine parameter(const char *key, std::uint32_t value)
{
    return {key, xasFormatLine("%s = %d\n", key, static_cast<int>(value))};
}

} // namespace

std::string xasKernelCfgText(std::string_view oldText, const XasEthPayload &eth)
{
    const std::array parameters = {
        parameter("net.ipv4.ip_forward", eth.ip_forwarding),
        parameter("net.ipv4.tcp_keepalive_time", eth.timer),
        parameter("net.ipv4.tcp_keepalive_probes", eth.probes),
        parameter("net.ipv4.tcp_keepalive_intvl", eth.interval),
    };
    return xasReplaceKeyLines(oldText, " =", parameters);
}

constexpr XasEditor<XasEthPayload> xasEditKernelCfgFile{
    .argument = "kernCfg",
    .texts = {.openReason = "Error opening kernel config file",
              .writeLog = "Error printing line to Ethernet config file\n",
              .saveReason = "Error saving new kernel config file"},
    .text = xasMadeBy<xasKernelCfgText>};
