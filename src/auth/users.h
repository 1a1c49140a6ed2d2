/**
 * The handlers of the local users' messages. No configuration file is looked up, and none of them sets code
 * or reason of the reply. Nothing is rolled back.
 */
#ifndef XAS_AUTH_USERS_H
#define XAS_AUTH_USERS_H

#include "files/update.h"

/** XMSG_LOCALUSERS: when the message includes its users, removes all listed accounts and makes the message's
 * users anew, in order, with their port files. Returns the result of the last user, 1 when a login was
 * refused or the records are missing. */
[[nodiscard]] int xasUpdateLocalUsersCfg(XasMessage *msg, const XasCfgFileList *cfgFiles,
                                         XasReplyStatus *reply);

/** XMSG_USER: adds, edits or deletes one user, or gives a new password. */
[[nodiscard]] int xasUpdateSingleLocalUsersCfg(XasMessage *msg, const XasCfgFileList *cfgFiles,
                                               XasReplyStatus *reply);

/** XMSG_USERLIST: nothing to update; the message restarts its application. */
[[nodiscard]] int xasUpdateUserListCfg(XasMessage *msg, const XasCfgFileList *cfgFiles,
                                       XasReplyStatus *reply);

#endif
