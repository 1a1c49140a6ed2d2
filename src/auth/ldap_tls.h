/**
 * The TLS material of the directory client: certificate authority, certificate and key, each named by a
 * symbolic link that the web front end keeps. In FIPS mode they are converted to DER files first.
 */
#ifndef XAS_AUTH_LDAP_TLS_H
#define XAS_AUTH_LDAP_TLS_H

#include <string>

/** Its lines of ldap.conf; runs the conversions. An item without link has no line, nor has one whose
 * conversion failed (logged). */
std::string xasLdapTlsText();

#endif
