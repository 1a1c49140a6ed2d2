/** Kernel parameters: forwarding and TCP keepalive in the file that sysctl(8) reads, "key = value" lines. */
#ifndef XAS_CONFIG_KERNEL_H
#define XAS_CONFIG_KERNEL_H

#include "core/reply.h"

#include <cstdint>
#include <string>
#include <string_view>

struct XasKernCfg {
    std::uint32_t ipForwarding;
    std::uint32_t keepaliveTime; /**< seconds */
    std::uint16_t keepaliveProbes;
    std::uint16_t keepaliveInterval; /**< seconds */
};

/** The new text of the file: the lines of the four parameters are replaced, missing ones are not added. */
std::string xasKernelCfgText(std::string_view oldText, const XasKernCfg &kernCfg);

/** Edits the file, which must exist. Returns 0, or 1 with the failure in `reply`. */
int xasEditKernelCfgFile(const char *cfgFileName, const XasKernCfg *kernCfg, XasReplyStatus *reply);

#endif
