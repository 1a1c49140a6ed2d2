#include "dispatch/ipfilter_timer.h"
#include "wire/reply_message.h"

#include "core/assert.h"
#include "core/log.h"
#include "core/msgqueue.h"
#include "core/text.h"
#include "core/wait.h"
#include "dispatch/ipfilter_enable.h"
#include "files/new_file.h"

#include <ctime>
#include <tuple>
#include <unistd.h>

namespace {

constexpr const char *TIMER_FILE = "/tmp/.save/ipfilter-timer.txt";
constexpr double SECONDS_PER_MINUTE = 60;

struct TestTimer {
    bool running = false;
    std::int32_t minutes = 0;
    std::time_t start = 0; /**< seconds since the epoch */
};

TestTimer timer;

std::time_t secondsNow()
{
    timeval now{};
    std::ignore = xasWallTime(now); // without a clock the test does not end
    return now.tv_sec;
}

void startTimer(std::int32_t minutes)
{
    timer = {.running = true, .minutes = minutes, .start = secondsNow()};
    std::ignore = // the test runs without its file, too
        xasMakeWorkingFile(TIMER_FILE,
                           xasFormat("%d %lu\n", minutes, static_cast<unsigned long>(timer.start)));
    xasLogInfo("IP Filter Test Timer started for %d minute(s).\n", minutes);
}

void clearTimer()
{
    timer = {};
    ::unlink(TIMER_FILE);
}

int startTest(bool enabled, std::int32_t minutes, XasReplyStatus *reply)
{
    if (!enabled)
        return xasLogFailure("Failed to start IP Filter Test Timer: must enable IP Filter first.\n");
    if (xasIPFilterEnable(enabled, reply) != 0)
        return xasLogFailure("Failed to start IP Filter Test Timer.\n");
    startTimer(minutes);
    return 0;
}

/** Tells XMS that the filter is off. Returns 0 when it accepts. */
int reportDisabled()
{
    const XasMessage update = xasNewMessage(XMSG_FIREWALL, XAS_ACTION_SET);
    std::ignore = xasSendMessage(&update); // what is not sent is not answered

    XasMessage answer{};
    const bool received = xasGetMessage(&answer, true) == 0;
    const bool isAcknowledgement = received && answer.xH.msgtype == XMSG_ACKNAK;
    const auto reply = xasReadPayload<XasReplyPayload>(answer);
    if (isAcknowledgement && answer.xH.orig_id == update.xH.id && reply.success != 0)
        return 0;
    const std::string reason{isAcknowledgement ? xasFieldText(reply.rstr) : std::string_view{}};
    return xasLogFailure("Cannot update IP Filter settings (%s).\n",
                         reason.empty() ? "message queue error" : reason.c_str());
}

} // namespace

int xasIPFilterTestTimer(const XasMessage *msg, XasReplyStatus *reply)
{
    xasAssertGiven(msg, "msg");
    const bool enabled = xasPayloadWord<0>(*msg) != 0;
    const auto testTime = xasPayloadValue<std::int32_t, 124>(*msg);
    if (testTime > 0)
        return startTest(enabled, testTime, reply);
    if (timer.running)
        xasLogInfo("IP Filter Test Timer stopped.\n");
    clearTimer();
    return xasIPFilterEnable(enabled, reply);
}

int xasIPFilterTimerTick()
{
    if (!timer.running || !xasIPFilterIsEnabled() || timer.minutes == 0)
        return 0;
    const double elapsed = std::difftime(secondsNow(), timer.start);
    if (elapsed < SECONDS_PER_MINUTE * timer.minutes)
        return 0;
    xasLogInfo("IP Filter Test Timer reached %d minute(s).\n", timer.minutes);
    clearTimer();
    return xasIPFilterDisable() != 0 ? 1 : reportDisabled();
}
