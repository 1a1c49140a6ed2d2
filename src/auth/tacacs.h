/** TACACS+: the client's file, expanded from a template. It holds the shared secret and is 0600. */
#ifndef XAS_AUTH_TACACS_H
#define XAS_AUTH_TACACS_H

#include "auth/tacacs_message.h"
#include "files/template.h"

#include <string>

/** The template with its placeholders replaced. An IPv6 address stands in square brackets. */
std::string xasTacacsText(std::string templateText, const XasTacacsPayload &tacacs);

/** Writes the file, enabled or not. */
extern const XasTemplateEditor<XasTacacsPayload> xasEditTacacsCfgFile;

/** The handler of XMSG_TACACS. */
extern const XasFilesUpdate xasUpdateTacacsCfg;

#endif
