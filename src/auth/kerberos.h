/**
 * Kerberos: the client's file (krb5.conf(5)), expanded from a template, and a line for the key distribution
 * centre in the hosts file.
 */
#ifndef XAS_AUTH_KERBEROS_H
#define XAS_AUTH_KERBEROS_H

#include "auth/kerberos_message.h"
#include "files/template.h"

#include <string>
#include <string_view>

/** The template with its placeholders replaced. */
std::string xasKerberosText(std::string templateText, const XasKerberosPayload &kerberos);

/**
 * The hosts file with a line for a host at its end. Every other line that holds `canonicalName` anywhere, but
 * for comments, goes.
 */
std::string xasHostsTextWithLine(std::string_view oldText, const char *address, const char *canonicalName,
                                 const char *alias);

/** Writes the client's file, or removes it when disabled. */
extern const XasTemplateEditor<XasKerberosPayload> xasEditKerberosCfgFile;

/** Edits the hosts file, which must exist. Returns 0, or 1 with the failure in `reply`. */
[[nodiscard]] int xasAddLinetoHostsFile(const char *cfgFileName, const char *address,
                                        const char *canonicalName, const char *alias, XasReplyStatus *reply);

/** The handler of XMSG_KERBEROS. */
extern const XasFilesUpdate xasUpdateKerberosCfg;

#endif
