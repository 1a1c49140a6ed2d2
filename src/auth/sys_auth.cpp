#include "auth/sys_auth.h"

#include "auth/pam.h"
#include "core/assert.h"

namespace {

/** The order is read here and once more by the builder: an order file that is missing is logged for each. */
int refreshPam(const char *cfgFileName)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    XasAuthOrder order{};
    xasReadAuthenOrder(order);
    XasPamModuleData moduleData;
    xasGetPamModuleData(&moduleData);
    xasBuildPamSystemAuth(cfgFileName, &moduleData);
    return 0;
}

} // namespace

int xasEditSysAuthCfgFile(const char *cfgFileName, XasReplyStatus * /*reply*/)
{
    return refreshPam(cfgFileName);
}

int xasEditLocalUsersSysAuthCfgFile(const char *cfgFileName)
{
    return refreshPam(cfgFileName);
}

int xasEditNisSysAuthCfgFile(const char *cfgFileName, const XasNisPayload *cfgNIS)
{
    xasAssertGiven(cfgNIS, "cfgNIS");
    return refreshPam(cfgFileName);
}

int xasEditLdapSysAuthCfgFile(const char *cfgFileName, const XasLdapPayload *cfgLDAP)
{
    xasAssertGiven(cfgLDAP, "cfgLDAP");
    return refreshPam(cfgFileName);
}

int xasEditRadiusSysAuthCfgFile(const char *cfgFileName, const XasRadiusPayload *cfgRadius)
{
    xasAssertGiven(cfgRadius, "cfgRadius");
    return refreshPam(cfgFileName);
}

int xasEditKerberosSysAuthCfgFile(const char *cfgFileName, const XasKerberosPayload *cfgKerberos)
{
    xasAssertGiven(cfgKerberos, "cfgKerberos");
    return refreshPam(cfgFileName);
}

int xasEditTacacsSysAuthCfgFile(const char *cfgFileName, const XasTacacsPayload *cfgTacacs)
{
    xasAssertGiven(cfgTacacs, "cfgTacacs");
    return refreshPam(cfgFileName);
}
