#include "dispatch/update_firewall.h"

#include "core/assert.h"
#include "core/log.h"
#include "dispatch/ipfilter_assign.h"
#include "dispatch/ipfilter_enable.h"
#include "dispatch/ipfilter_set.h"
#include "dispatch/ipfilter_timer.h"

namespace {

int applyByType(const XasMessage *msg, XasReplyStatus *reply)
{
    switch (msg->xH.msgtype) {
    case XMSG_FIREWALL:
        return xasIPFilterTestTimer(msg, reply);
    case XMSG_IPFILTER_SET:
        return xasIPFilterSet(msg, reply);
    case XMSG_IPFILTER_ASSIGN:
        return xasIPFilterAssign(msg, reply);
    default:
        return 0;
    }
}

} // namespace

int xasUpdateFirewall(XasMessage *msg, const XasCfgFileList * /*cfgFiles*/, XasReplyStatus *reply)
{
    xasAssertGiven(msg, "msg");
    const int result = applyByType(msg, reply);
    if (result != 0)
        xasLogError("%s\n", reply->rstr.c_str());
    return result;
}

constexpr XasFilesUpdate xasFirewallReasons{.msgtype = XMSG_FIREWALL,
                                            .reasons = {&XAS_FILTER_SWITCHING_FAILED, 1}};
constexpr XasFilesUpdate xasFilterSetReasons{.msgtype = XMSG_IPFILTER_SET, .reasons = XAS_FILTER_SET_REASONS};
constexpr XasFilesUpdate xasFilterAssignReasons{.msgtype = XMSG_IPFILTER_ASSIGN,
                                                .reasons = {&XAS_FILTER_LISTING_FAILED, 1}};
