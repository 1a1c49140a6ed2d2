/**
 * The parameters that the dispatcher writes into the scripts of three applications, in place, so that the
 * next stop and start use them; they stay there until the next such message.
 *
 * "eth": both scripts end in three one-character codes separated by blanks: Ethernet 1, Ethernet 2, bonding.
 * "nat": the start script reads: path, "add" or "del", "0" or "1" (router running), address.
 * "netlink": the start script reads: path, "linkup" or "linkdn", Ethernet 1 code, Ethernet 2 code.
 *
 * Each function returns 0, or 1 after logging; a script may then keep what was written so far.
 */
#ifndef XAS_DISPATCH_SCRIPT_PARAMS_H
#define XAS_DISPATCH_SCRIPT_PARAMS_H

#include "core/appmgr.h"
#include "wire/eth_message.h"

/** The script code of a link mode: '1' to '7' for 0 to 6; -1 after logging for another. */
[[nodiscard]] int xasGetEthModeCode(std::uint32_t mode);

/** The script code of a port: '0' when it is not in use and `force` is off, else its mode's code. */
[[nodiscard]] int xasGetNetScriptCode(const XasEthPort *eth, bool force);

/** Sets the codes of the "eth" scripts; nothing is done when either script is missing or empty.
 * `lastBonding` is the bonding word of the last Ethernet message that was applied completely. */
[[nodiscard]] int xasSetNetScriptOpts(XasApp &app, const XasEthPayload &eth, std::uint32_t lastBonding);

/** Sets the parameters of the "nat" start script, which must be there, from an XMSG_NAT_NOTIFY. */
[[nodiscard]] int xasSetNatScriptOpts(const XasMessage *msg, XasApp *app, XasAppList &apps);

/** Sets the parameters of the "netlink" start script from an XMSG_NOTIFY. */
[[nodiscard]] int xasSetLinkScriptOpts(const XasMessage &msg, std::string &startScript);

#endif
