/** Module options (modprobe.d(5)): the bonding driver and its alias, and IPv6 switched off. */
#ifndef XAS_CONFIG_MODPROBE_H
#define XAS_CONFIG_MODPROBE_H

#include "core/reply.h"
#include "files/editor.h"

#include <cstdint>

/**
 * The text of the file; empty without bonding and with IPv6 on. A bonding mode that has no options is logged
 * and ends the text.
 */
XasNewText xasModProbeCfgText(std::uint32_t bonding, bool ipv6Enabled);

/** Writes the file anew; it need not exist. Returns 0; or 1, with the failure in `reply` unless it was the
 * mode.
 */
int xasEditModProbeCfgFile(const char *cfgFileName, std::uint32_t bonding, bool ipv6Enabled,
                           XasReplyStatus *reply);

#endif
