/**
 * The share that the appliance offers: workgroup and interfaces in smb.conf (smb.conf(5)), and its single
 * user "cifsuser" in the SMB password file (smbpasswd(5)), which is 0600.
 */
#ifndef XAS_AUTH_CIFS_H
#define XAS_AUTH_CIFS_H

#include "auth/cifs_message.h"
#include "files/update.h"

#include <string>
#include <string_view>

/** The new smb.conf. */
std::string xasSmbText(std::string_view oldText, const XasCifsPayload &cifs);

/** The new password file; incomplete, logged and refused in `reply`, when part of the password is missing. */
XasNewText xasSmbPassText(std::string_view oldText, const XasCifsPayload &cifs, XasReplyStatus *reply);

/** The editors. The files must exist. */
extern const XasEditor<XasCifsPayload> xasEditSMBCfgFile;
extern const XasEditor<XasCifsPayload> xasEditSMBPassCfgFile;

/** The handler of XMSG_CIFS; touches neither file when sharing is off. */
extern const XasFilesUpdate xasUpdateSambaCfg;

#endif
