/** Kernel parameters: forwarding and TCP keepalive in the file that sysctl(8) reads, "key = value" lines. */
#ifndef XAS_CONFIG_KERNEL_H
#define XAS_CONFIG_KERNEL_H

#include "files/editor.h"
#include "wire/eth_message.h"

#include <string>
#include <string_view>

/** The new text of the file: the lines of the four parameters are replaced, missing ones are not added. */
std::string xasKernelCfgText(std::string_view oldText, const XasEthPayload &eth);

/** Edits the file, which must exist. */
extern const XasEditor<XasEthPayload> xasEditKernelCfgFile;

#endif
