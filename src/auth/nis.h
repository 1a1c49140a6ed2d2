/**
 * NIS: the client's file (yp.conf(5)), the NIS domain in the network settings file, and the running domain
 * name.
 */
#ifndef XAS_AUTH_NIS_H
#define XAS_AUTH_NIS_H

#include "auth/nis_message.h"
#include "files/update.h"

#include <string>
#include <string_view>

/** The client's file. The master always has its line; a slave has none when it is an empty name. */
std::string xasYpText(const XasNisPayload &nis);

/**
 * The network settings with their NISDOMAIN line replaced by one at the end, which has no line feed; an empty
 * domain leaves no such line.
 */
std::string xasNisNetworkText(std::string_view oldText, std::string_view domain);

/** Rewrites the client's file, which must exist. */
extern const XasEditor<XasNisPayload> xasEditYpCfgFile;

/** Edits the NIS domain in the network settings. (Host name and gateways in that file have an editor of their
 * own, xasEditNetCfgFile in config/network_file.h.) A domain that is not empty is then made the running one,
 * by a child that is not waited for, whether or not the file could be saved. Returns 0, or 1 with the failure
 * in `reply`. */
[[nodiscard]] int xasEditNetworkCfgFile(const char *cfgFileName, const XasNisPayload *nis,
                                        XasReplyStatus *reply);

/** The handler of XMSG_NIS. */
extern const XasFilesUpdate xasUpdateNisCfg;

#endif
