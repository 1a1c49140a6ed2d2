/**
 * Interface files: one for each of eth0, eth1 and bond0, KEY=value lines that the network scripts source. A
 * port that is a slave of the bonding interface has only that in its file.
 */
#ifndef XAS_CONFIG_INTERFACE_FILE_H
#define XAS_CONFIG_INTERFACE_FILE_H

#include "files/editor.h"
#include "wire/eth_message.h"

#include <string>
#include <string_view>

/** The device whose file tells of bonding. */
inline constexpr std::string_view XAS_BOND_DEVICE = "bond0";

/** Of a port whose address source is not a known one. */
inline constexpr XasReason XAS_INVALID_SOURCE{XAS_RCODE_MISSING, "Invalid address source"};

/** What an interface file is written from. */
struct XasEthInterface {
    const XasEthPort &port;
    std::string_view device;
    bool isSlave;          /**< of the bonding interface; the port's own settings are then ignored */
    std::uint32_t bonding; /**< the bonding mode; only the file of XAS_BOND_DEVICE holds its options */
};

/** The text of an interface file. `dhcpHostname` is the name to ask a DHCP server with, empty for none. An
 * unknown address source (its reason goes into `reply`) and a bonding mode without options (logged) end the
 * text. */
XasNewText xasEthCfgText(const XasEthInterface &interface, const std::string &dhcpHostname,
                         XasReplyStatus *reply);

/** The new text of an interface file that comes up at boot or does not: its ONBOOT line is replaced. */
std::string xasEthEnableText(std::string_view oldText, bool enabled);

/** Writes an interface file anew. The name to ask with is read from the web front end's settings. A bonding
 * mode without options leaves the reply as it is. */
extern const XasEditor<XasEthInterface> xasEditEthCfgFile;

/** Edits the ONBOOT line of an interface file, which must exist. */
extern const XasEditor<bool> xasEditEthEnableCfgFile;

#endif
