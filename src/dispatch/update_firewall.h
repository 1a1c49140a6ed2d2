/** The handler that the three filter types share. */
#ifndef XAS_DISPATCH_UPDATE_FIREWALL_H
#define XAS_DISPATCH_UPDATE_FIREWALL_H

#include "files/update.h"

/** The handler of XMSG_FIREWALL (switching and test timer), XMSG_IPFILTER_SET and XMSG_IPFILTER_ASSIGN. Logs
 * the reply's reason, an empty one too, when the operation fails. */
[[nodiscard]] int xasUpdateFirewall(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

/** What the three may say; they have no files in the list. */
extern const XasFilesUpdate xasFirewallReasons;
extern const XasFilesUpdate xasFilterSetReasons;
extern const XasFilesUpdate xasFilterAssignReasons;

#endif
