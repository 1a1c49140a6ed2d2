#include "dispatch/ipfilter_set.h"

#include "core/assert.h"
#include "core/log.h"
#include "core/msgqueue.h"
#include "dispatch/ipfilter_enable.h"
#include "dispatch/ipfilter_script.h"

#include <tuple>

namespace {

constexpr std::uint8_t SETS = 64;

int refuse(XasReplyStatus *reply, const XasReason &reason)
{
    xasSetReply(*reply, reason);
    return 1;
}

/** Both writers return 0, or 1 when the script must not be run. */
int writeSet(const XasMessage &msg, std::uint32_t action, FILE *script)
{
    if (action == XAS_FILTER_CREATE || action == XAS_FILTER_REPLACE)
        return xasIPFilterSetAddRules(&msg, script, action == XAS_FILTER_CREATE);
    return action == XAS_FILTER_REMOVE ? xasIPFilterSetRemove(&msg, script) : 0;
}

/** Asks XMS for a set; its rules go into the script when there are any. */
int writeSetOfXms(std::uint8_t number, FILE *script)
{
    XasMessage request = xasNewMessage(XMSG_IPFILTER_SET, XAS_ACTION_GET);
    XasIpFilterSetPayload wanted{};
    wanted.id = number;
    xasWritePayload(request, wanted);
    std::ignore = xasSendMessage(&request); // what is not sent is not answered
    XasMessage answer{};
    if (xasGetMessage(&answer, true) != 0 || answer.xH.orig_id != request.xH.id) {
        xasLogError("Cannot get IP Filter set (id = %d).\n", number);
        return 0;
    }
    return xasPayloadWord<0>(answer) != 0 ? xasIPFilterSetAddRules(&answer, script, true) : 0;
}

/** A removed set leaves jump rules behind: the INPUT chain is cleared and filled anew. */
int runScript(bool isRemoval)
{
    return isRemoval ? xasIPFilterRunScript("resetInput") : xasIPFilterRunScript("resetNone");
}

/** After a reset the accept-all rule is put back when the filter is stored as disabled. */
void applyAfterReset()
{
    xasIPFilterNoteReset();
    std::ignore = xasIPFilterApplySettings(); // the set itself is in force
}

} // namespace

int xasIPFilterSet(const XasMessage *msg, XasReplyStatus *reply)
{
    xasAssertGiven(msg, "msg");
    xasAssert(XMSG_IPFILTER_SET == msg->xH.msgtype, "XMSG_IPFILTER_SET == msg->xH.msgtype");
    if (xasIPFilterCopyScript() != 0)
        return refuse(reply, XAS_FILTER_SET_REASONS[0]);
    XasFile script = xasIPFilterOpenScript();
    if (!script)
        return refuse(reply, XAS_FILTER_SET_REASONS[1]);
    const std::uint32_t action = xasReadPayload<XasIpFilterSetPayload>(*msg).action;
    const bool isRemoval = action == XAS_FILTER_REMOVE;
    const bool complete = writeSet(*msg, action, script.get()) == 0;
    const bool ended = xasIPFilterEndScript(std::move(script)) == 0;
    if (!complete || !ended || runScript(isRemoval) != 0)
        return refuse(reply, XAS_FILTER_SET_REASONS[2]);
    if (isRemoval)
        applyAfterReset();
    return 0;
}

int xasIPFilterInit()
{
    if (xasIPFilterCopyScript() != 0)
        return xasLogFailure("Error initializing IP Filter (cannot copy IP Filter script).\n");
    XasFile script = xasIPFilterOpenScript();
    if (!script)
        return xasLogFailure("Error initializing IP Filter (cannot open IP Filter script).\n");
    bool complete = true;
    for (std::uint8_t number = 1; number <= SETS; ++number)
        complete = writeSetOfXms(number, script.get()) == 0 && complete;
    complete = xasIPFilterAddInput(script.get()) == 0 && complete;
    const bool ended = xasIPFilterEndScript(std::move(script)) == 0;
    if (!complete || !ended || xasIPFilterRunScript("resetAll") != 0)
        return xasLogFailure("Error initializing IP Filter (cannot run IP Filter script).\n");
    applyAfterReset();
    xasLogInfo("IP Filter initialized.\n");
    return 0;
}
