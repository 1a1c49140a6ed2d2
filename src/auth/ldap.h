/**
 * LDAP: the client file of name service and login ("ldap.conf", expanded from a template, 0600 because it may
 * hold the bind password), and the directory tools' own file (ldap.conf(5)), of which the lines HOST and BASE
 * are ours.
 */
#ifndef XAS_AUTH_LDAP_H
#define XAS_AUTH_LDAP_H

#include "auth/ldap_message.h"
#include "core/appmgr.h"
#include "core/reply.h"

#include <string>
#include <string_view>

/** The directory tools' file: our lines replaced by new ones at the end, or only removed when disabled. */
std::string xasOpenLdapText(std::string_view oldText, const XasLdapPayload &cfgLDAP);

/** The template with its placeholders replaced. A setting that is not given has its line commented out. */
std::string xasLdapTemplateText(std::string templateText, const XasLdapPayload &cfgLDAP);

/** What stands behind it, up to the TLS material. */
std::string xasLdapBindText(const XasLdapPayload &cfgLDAP);

/** What stands behind the TLS material. */
std::string xasLdapMapText(const XasLdapPayload &cfgLDAP);

/** Edits the directory tools' file, which must exist. Returns 0, or 1 with the failure in `reply`. */
int xasEditOpenLdapCfgFile(const char *cfgFileName, const XasLdapPayload *cfgLDAP, XasReplyStatus *reply);

/** Writes the client file, or removes it when disabled. Returns 0, or 1 with the failure, if it has a
 * reason, in `reply`. */
int xasEditLdapCfgFileBC(const char *cfgTemplateFileName, const char *cfgFileName,
                         const XasLdapPayload *cfgLDAP, XasReplyStatus *reply);

/** The handler of XMSG_LDAP. Needs the files "openldap", "ldap", "ldaptmpl", "nsswitch" and "system-auth". */
int xasUpdateLdapCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

#endif
