#include "dispatch/ipfilter_enable.h"

#include "core/log.h"
#include "core/shell.h"
#include "platform/config_library.h"
#include "wire/message.h"

namespace {

bool filterEnabled = true;

} // namespace

int xasIPFilterEnable(bool enabled, XasReplyStatus *reply)
{
    if (enabled == filterEnabled)
        return 0;
    if (!enabled) {
        if (xasIPFilterDisable() == 0)
            return 0;
        xasSetReply(*reply, XAS_FILTER_SWITCHING_FAILED);
        return 1;
    }
    xasTrySystem(XasShellCommand{
        "XTABLES_LIBDIR=/libexec/xtables;export XTABLES_LIBDIR;/bin/iptables -D INPUT -j ACCEPT"});
    filterEnabled = true;
    xasLogInfo("IP Filter enabled.\n");
    return 0;
}

bool xasIPFilterIsEnabled()
{
    return filterEnabled;
}

void xasIPFilterNoteReset()
{
    filterEnabled = true;
}

int xasIPFilterApplySettings()
{
    XasMessage stored{};
    XasReplyStatus ownReply;
    if (xmlGetMsg(stdout, XMSG_FIREWALL, &stored) != 0)
        return 1;
    return xasIPFilterEnable(xasPayloadWord<0>(stored) != 0, &ownReply);
}

int xasIPFilterDisable()
{
    const XasShellCommand acceptAll{
        "XTABLES_LIBDIR=/libexec/xtables;export XTABLES_LIBDIR;/bin/iptables -I INPUT 1 -j ACCEPT"};
    if (!xasSystem(acceptAll).exitedWell())
        return xasLogFailure("Error disabling IP Filter.\n");
    filterEnabled = false;
    xasLogInfo("IP Filter disabled.\n");
    return 0;
}
