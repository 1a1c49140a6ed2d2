/**
 * NIS: the client's file (yp.conf(5)), the NIS domain in the network settings file, and the running domain
 * name.
 */
#ifndef XAS_AUTH_NIS_H
#define XAS_AUTH_NIS_H

#include "auth/nis_message.h"
#include "core/appmgr.h"
#include "core/reply.h"

#include <string>
#include <string_view>

/** The client's file. The master always has its line; a slave has none when it is an empty name. */
std::string xasYpText(const XasNisPayload &cfgNIS);

/**
 * The network settings with their NISDOMAIN line replaced by one at the end, which has no line feed; an empty
 * domain leaves no such line.
 */
std::string xasNisNetworkText(std::string_view oldText, std::string_view domain);

/** Rewrites the client's file, which must exist. Returns 0, or 1 with the failure in `reply`. */
int xasEditYpCfgFile(const char *cfgFileName, const XasNisPayload *cfgNIS, XasReplyStatus *reply);

/**
 * Edits the network settings. A domain that is not empty is then made the running one, by a child that is not
 * waited for, whether or not the file could be saved. Returns 0, or 1 with the failure in `reply`.
 */
int xasEditNetworkCfgFile(const char *cfgFileName, const XasNisPayload *cfgNIS, XasReplyStatus *reply);

/** The handler of XMSG_NIS. Needs the files "yp", "network", "system-auth" and "nsswitch". */
int xasUpdateNisCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

#endif
