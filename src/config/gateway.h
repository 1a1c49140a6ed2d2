/**
 * Gateways beside the default one: which port's DHCP gateway wins, and the alternate gateway that takes over
 * when an address stops answering pings. Both files are KEY=value lines that the network scripts source.
 */
#ifndef XAS_CONFIG_GATEWAY_H
#define XAS_CONFIG_GATEWAY_H

#include "files/editor.h"
#include "wire/eth_message.h"

#include <string>
#include <string_view>

/** The whole precedence file: port 1, port 2, or 0 for any other value. */
std::string xasGWPrecText(const XasEthPayload &eth);

/** The new text of the alternate-gateway file: the lines of its keys replaced, missing ones not added. */
std::string xasAltGWText(std::string_view oldText, const XasEthPayload &eth);

/** The editors. The files must exist. */
extern const XasEditor<XasEthPayload> xasEditGWPrecFile;
extern const XasEditor<XasEthPayload> xasEditAltGWFile;

#endif
