/** TACACS+: the client's file, expanded from a template. It holds the shared secret and is 0600. */
#ifndef XAS_AUTH_TACACS_H
#define XAS_AUTH_TACACS_H

#include "auth/tacacs_message.h"
#include "core/appmgr.h"
#include "core/reply.h"

#include <string>

/** The template with its placeholders replaced. An IPv6 address stands in square brackets. */
std::string xasTacacsText(std::string templateText, const XasTacacsPayload &cfgTacacs);

/** Writes the file, enabled or not. Returns 0, or 1 with the failure, if it has a reason, in `reply`. */
int xasEditTacacsCfgFile(const char *cfgTemplateFileName, const char *cfgFileName,
                         const XasTacacsPayload *cfgTacacs, XasReplyStatus *reply);

/** The handler of XMSG_TACACS. Needs "tacplustmpl" and "tacplus" and, once they are done, "nsswitch" and
 * "system-auth". */
int xasUpdateTacacsCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

#endif
