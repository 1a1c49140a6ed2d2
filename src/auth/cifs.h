/**
 * The share that the appliance offers: workgroup and interfaces in smb.conf (smb.conf(5)), and its single
 * user "cifsuser" in the SMB password file (smbpasswd(5)), which is 0600.
 */
#ifndef XAS_AUTH_CIFS_H
#define XAS_AUTH_CIFS_H

#include "auth/cifs_message.h"
#include "core/appmgr.h"
#include "core/reply.h"
#include "files/editor.h"

#include <string>
#include <string_view>

/** The new smb.conf. */
std::string xasSmbText(std::string_view oldText, const XasCifsPayload &cifs);

/** The new password file; incomplete, logged and refused in `reply`, when a part of the password is missing.
 */
XasNewText xasSmbPassText(std::string_view oldText, const XasCifsPayload &cifs, XasReplyStatus *reply);

/** The editors: each returns 0, or 1 with the failure in `reply`. The files must exist. */
int xasEditSMBCfgFile(const char *cfgFileName, const XasCifsPayload *cifs, XasReplyStatus *reply);
int xasEditSMBPassCfgFile(const char *cfgFileName, const XasCifsPayload *cfgSmbPassCfg,
                          XasReplyStatus *reply);

/** The handler of XMSG_CIFS. Needs the files "smb" and "smbpasswd"; touches neither when sharing is off. */
int xasUpdateSambaCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

#endif
