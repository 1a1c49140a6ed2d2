/**
 * Refreshing the PAM file after a login method's own settings changed. One editor for each method; the
 * payload is only asserted, everything comes from the files on disk. They never fail: a file that cannot be
 * written is logged, the result is 0.
 */
#ifndef XAS_AUTH_SYS_AUTH_H
#define XAS_AUTH_SYS_AUTH_H

#include "core/reply.h"

struct XasNisPayload;
struct XasLdapPayload;
struct XasRadiusPayload;
struct XasKerberosPayload;
struct XasTacacsPayload;

int xasEditSysAuthCfgFile(const char *cfgFileName, XasReplyStatus *reply);
int xasEditLocalUsersSysAuthCfgFile(const char *cfgFileName);
int xasEditNisSysAuthCfgFile(const char *cfgFileName, const XasNisPayload *cfgNIS);
int xasEditLdapSysAuthCfgFile(const char *cfgFileName, const XasLdapPayload *cfgLDAP);
int xasEditRadiusSysAuthCfgFile(const char *cfgFileName, const XasRadiusPayload *cfgRadius);
int xasEditKerberosSysAuthCfgFile(const char *cfgFileName, const XasKerberosPayload *cfgKerberos);
int xasEditTacacsSysAuthCfgFile(const char *cfgFileName, const XasTacacsPayload *cfgTacacs);

#endif
