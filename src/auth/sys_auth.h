/**
 * Refreshing the PAM file after a login method's own settings changed. Every method has an editor of its own
 * name; the values are only asserted, everything comes from the files on disk. They never fail: a file that
 * cannot be written is logged, the result is 0.
 */
#ifndef XAS_AUTH_SYS_AUTH_H
#define XAS_AUTH_SYS_AUTH_H

#include "core/assert.h"
#include "files/update.h"

struct XasNisPayload;
struct XasLdapPayload;
struct XasRadiusPayload;
struct XasKerberosPayload;
struct XasTacacsPayload;

/** After XMSG_AUTH, and after local users changed. */
[[nodiscard]] int xasEditSysAuthCfgFile(const char *cfgFileName, XasReplyStatus *reply);
[[nodiscard]] int xasEditLocalUsersSysAuthCfgFile(const char *cfgFileName);

/** The editor of a method: editor(path, &values). */
template <class Values>
struct XasSysAuthEditor {
    const char *argument; /**< the name of the values in the assertion that they are given */

    [[nodiscard]] int operator()(const char *cfgFileName, const Values *values) const
    {
        xasAssertGiven(values, argument);
        return xasEditLocalUsersSysAuthCfgFile(cfgFileName);
    }
};

inline constexpr XasSysAuthEditor<XasNisPayload> xasEditNisSysAuthCfgFile{"cfgNIS"};
inline constexpr XasSysAuthEditor<XasLdapPayload> xasEditLdapSysAuthCfgFile{"cfgLDAP"};
inline constexpr XasSysAuthEditor<XasRadiusPayload> xasEditRadiusSysAuthCfgFile{"cfgRadius"};
inline constexpr XasSysAuthEditor<XasKerberosPayload> xasEditKerberosSysAuthCfgFile{"cfgKerberos"};
inline constexpr XasSysAuthEditor<XasTacacsPayload> xasEditTacacsSysAuthCfgFile{"cfgTacacs"};

/** Such an editor as the edit of a row. */
template <class Values, const XasSysAuthEditor<Values> &editor>
constexpr XasFileEdit xasRefreshedBy{.run = [](const XasEditCall &call) {
    const auto values = xasReadPayload<Values>(call.msg);
    return editor(call.path, &values);
}};

#endif
