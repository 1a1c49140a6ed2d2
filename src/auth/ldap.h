/**
 * LDAP: the client file of name service and login ("ldap.conf", expanded from a template, 0600 because it may
 * hold the bind password), and the directory tools' own file (ldap.conf(5)), of which the lines HOST and BASE
 * are ours.
 */
#ifndef XAS_AUTH_LDAP_H
#define XAS_AUTH_LDAP_H

#include "auth/ldap_message.h"
#include "files/template.h"

#include <string>
#include <string_view>

/** The directory tools' file: our lines replaced by new ones at the end, or only removed when disabled. */
std::string xasOpenLdapText(std::string_view oldText, const XasLdapPayload &ldap);

/** The template with its placeholders replaced. A setting that is not given has its line commented out. */
std::string xasLdapTemplateText(std::string templateText, const XasLdapPayload &ldap);

/** What stands behind it, up to the TLS material. */
std::string xasLdapBindText(const XasLdapPayload &ldap);

/** What stands behind the TLS material. */
std::string xasLdapMapText(const XasLdapPayload &ldap);

/** Edits the directory tools' file, which must exist. */
extern const XasEditor<XasLdapPayload> xasEditOpenLdapCfgFile;

/** Writes the client file, or removes it when disabled. */
extern const XasTemplateEditor<XasLdapPayload> xasEditLdapCfgFileBC;

/** The handler of XMSG_LDAP. */
extern const XasFilesUpdate xasUpdateLdapCfg;

#endif
