#include "auth/sys_auth.h"

#include "auth/pam.h"

#include <tuple>

/** The order is read here and once more by the builder: an order file that is missing is logged for each. */
int xasEditLocalUsersSysAuthCfgFile(const char *cfgFileName)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    XasAuthOrder order{};
    std::ignore = xasReadAuthenOrder(order);
    XasPamModuleData moduleData;
    std::ignore = xasGetPamModuleData(&moduleData); // what was not found is left empty
    return xasBuildPamSystemAuth(cfgFileName, &moduleData);
}

int xasEditSysAuthCfgFile(const char *cfgFileName, XasReplyStatus * /*reply*/)
{
    return xasEditLocalUsersSysAuthCfgFile(cfgFileName);
}
