/** Module options (modprobe.d(5)): the bonding driver and its alias, and IPv6 switched off. */
#ifndef XAS_CONFIG_MODPROBE_H
#define XAS_CONFIG_MODPROBE_H

#include "core/reply.h"
#include "files/editor.h"
#include "wire/eth_message.h"

/** The text of the file; empty without bonding and with IPv6 on. A bonding mode that has no options is logged
 * and ends the text. */
XasNewText xasModProbeCfgText(const XasEthPayload &eth);

/** Writes the file anew. A bonding mode without options leaves the reply as it is. */
extern const XasEditor<XasEthPayload> xasEditModProbeCfgFile;

#endif
