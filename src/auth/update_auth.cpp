#include "auth/update_auth.h"

#include "auth/auth_order.h"
#include "auth/auth_steps.h"
#include "auth/nsswitch.h"
#include "auth/sys_auth.h"
#include "core/assert.h"

int xasUpdateAuthenOrderCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    xasAssertGiven(msg, "msg");
    xasAssert(XMSG_AUTH == msg->xH.msgtype, "XMSG_AUTH == msg->xH.msgtype");
    xasAssertGiven(cfgFiles, "cfgFiles");
    constexpr std::array FILES = {
        XasNeededFile{"authentication", "Error determining r58 authentication config file\n"},
        XasNeededFile{"system-auth", "Error determining Auth Order 1 system-auth config file\n"},
        XasNeededFile{"nsswitch", "Error determining nsswitch.conf config file\n"},
    };
    std::array<const char *, FILES.size()> paths{};
    if (!xasFindNeededFiles(*cfgFiles, FILES, paths))
        return 1;
    const auto [orderFile, pamFile, nsswitchFile] = paths;

    auto cfgAuth = xasReadPayload<XasAuthPayload>(*msg);
    int result = xasLogFailure(xasEditAuthenOrderCfgFile(orderFile, &cfgAuth, reply),
                               "Error editing network config file\n");
    xasWritePayload(*msg, cfgAuth);
    result = xasLastFailure(result, xasLogFailure(xasEditSysAuthCfgFile(pamFile, reply),
                                                  "Error editing Auth Order 2 system-auth config file\n"));
    return xasLastFailure(result, xasLogFailure(xasEditNsswitchCfgFile(nsswitchFile, reply),
                                                "Error editing nsswitch.conf config file\n"));
}
