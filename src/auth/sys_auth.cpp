#include "auth/sys_auth.h"

#include "auth/pam.h"

/** The order is read here and once more by the builder: an order file that is missing is logged for each. */
int xasEditLocalUsersSysAuthCfgFile(const char *cfgFileName)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    XasAuthOrder order{};
    xasReadAuthenOrder(order);
    XasPamModuleData moduleData;
    xasGetPamModuleData(&moduleData);
    xasBuildPamSystemAuth(cfgFileName, &moduleData);
    return 0;
}

int xasEditSysAuthCfgFile(const char *cfgFileName, XasReplyStatus * /*reply*/)
{
    return xasEditLocalUsersSysAuthCfgFile(cfgFileName);
}
