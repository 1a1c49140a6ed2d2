#include "core/link_watch.h"
#include "wire/notify_message.h"

#include "core/log.h"
#include "core/text.h"
#include "core/utils.h"
#include "core/wait.h"
#include "wire/eth_message.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

using namespace std::chrono_literals;

namespace {

/** A change is believed when it lasts this long: before the configuration is read, and after. */
constexpr auto SETTLE_WAIT = 1000ms;
constexpr auto CONFIRM_WAIT = 500ms;

struct LinkWatch {
    int socket = -1;
    bool ethConfigured = false;
    std::array<std::uint32_t, XAS_ETH_PORTS> up{};
    timeval lastPoll{};
};

LinkWatch watch;

/** About a second has passed, or the clock has gone backwards. */
bool isPollDue(const timeval &now, const timeval &last)
{
    const auto seconds = now.tv_sec - last.tv_sec;
    return seconds > 1 || (seconds > 0 && now.tv_usec > last.tv_usec) || seconds < 0;
}

void makeNotification(XasMessage &msg, unsigned port, bool up)
{
    msg = xasNewMessage(XMSG_NOTIFY, XAS_ACTION_SET);
    XasNotifyPayload payload{};
    payload.code = up ? XAS_LINK_UP : XAS_LINK_DOWN;
    xasSetFieldText(payload.text, xasFormat("Eth%u Link %s", port + 1, up ? "Up" : "Down"));
    xasWritePayload(msg, payload);
}

/** Looks at one port; `failed` stops the watch for this poll. */
XasIdleResult watchPort(XasMessage &msg, unsigned port)
{
    std::uint32_t up = 0;
    if (xasGetLinkState(port, up) != 0)
        return XasIdleResult::failed;
    if (up == watch.up[port])
        return XasIdleResult::nothing;
    xasWait(SETTLE_WAIT);
    std::uint32_t enabled = 0;
    std::uint32_t source = 0;
    if (xasGetEthPortState(port, enabled, source) != 0)
        return XasIdleResult::failed;
    if (enabled == 0) {
        watch.up[port] = up;
        return XasIdleResult::nothing;
    }
    xasWait(CONFIRM_WAIT);
    if (xasGetLinkState(port, up) != 0)
        return XasIdleResult::failed;
    if (up == watch.up[port])
        return XasIdleResult::nothing;
    watch.up[port] = up;
    makeNotification(msg, port, up != 0);
    return XasIdleResult::message;
}

} // namespace

int xasOpenLinkSocket()
{
    watch.socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (watch.socket < 0)
        return xasLogFailure("error creating socket for link state: %s\n", std::strerror(errno));
    return 0;
}

int xasGetLinkState(unsigned port, std::uint32_t &up)
{
    ethtool_value link{.cmd = ETHTOOL_GLINK, .data = 0};
    ifreq request{};
    std::snprintf(request.ifr_name, sizeof request.ifr_name, "eth%u", port);
    request.ifr_data = reinterpret_cast<char *>(&link); // how the request passes its data
    up = ::ioctl(watch.socket, SIOCETHTOOL, &request) == 0 && link.data != 0 ? 1 : 0;
    return 0;
}

void xasNoteEthConfigured()
{
    watch.ethConfigured = true;
}

int xasEnableNetPort(unsigned port)
{
    if (port >= XAS_ETH_PORTS)
        return xasLogFailure("Invalid network port %d to enable\n", static_cast<int>(port));
    watch.up[port] = 1;
    return 0;
}

XasIdleResult xasPollLinks(XasMessage &msg, bool bondingOn)
{
    timeval now{};
    if (xasWallTime(now) != 0)
        return XasIdleResult::failed;
    if (!isPollDue(now, watch.lastPoll))
        return XasIdleResult::nothing;
    XasIdleResult result = XasIdleResult::nothing;
    const bool awake = !bondingOn && watch.ethConfigured && watch.socket > 0;
    for (unsigned port = 0; awake && port < XAS_ETH_PORTS && result == XasIdleResult::nothing; ++port)
        result = watchPort(msg, port);
    watch.lastPoll = now;
    return result == XasIdleResult::message ? result : XasIdleResult::nothing;
}
