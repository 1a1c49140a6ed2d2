/**
 * Kerberos: the client's file (krb5.conf(5)), expanded from a template, and a line for the key distribution
 * centre in the hosts file.
 */
#ifndef XAS_AUTH_KERBEROS_H
#define XAS_AUTH_KERBEROS_H

#include "auth/kerberos_message.h"
#include "core/appmgr.h"
#include "core/reply.h"

#include <string>
#include <string_view>

/** The template with its placeholders replaced. */
std::string xasKerberosText(std::string templateText, const XasKerberosPayload &cfgKerberos);

/**
 * The hosts file with a line for a host at its end. Every other line that holds `canonicalName` anywhere, but
 * for comments, goes.
 */
std::string xasHostsTextWithLine(std::string_view oldText, const char *address, const char *canonicalName,
                                 const char *alias);

/** Writes the client's file, or removes it when disabled. Returns 0, or 1 with the failure, if it has a
 * reason, in `reply`. */
int xasEditKerberosCfgFile(const char *cfgTemplateFileName, const char *cfgFileName,
                           const XasKerberosPayload *cfgKerberos, XasReplyStatus *reply);

/** Edits the hosts file, which must exist. Returns 0, or 1 with the failure in `reply`. */
int xasAddLinetoHostsFile(const char *cfgFileName, const char *address, const char *canonicalName,
                          const char *alias, XasReplyStatus *reply);

/** The handler of XMSG_KERBEROS. Needs the files "krb5tmpl", "krb5", "nsswitch", "system-auth" and "hosts".
 */
int xasUpdateKerberosCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

#endif
