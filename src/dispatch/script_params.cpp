#include "dispatch/script_params.h"
#include "wire/notify_message.h"

#include "core/assert.h"
#include "core/link_watch.h"
#include "core/log.h"
#include "core/text.h"
#include "core/utils.h"

#include <algorithm>

namespace {

constexpr std::uint32_t ETH_MODES = 7;

/** Where the codes stand in the "eth" scripts, counted from the end. */
constexpr std::size_t ETH1_FROM_END = 5;
constexpr std::size_t ETH2_FROM_END = 3;
constexpr std::size_t BONDING_FROM_END = 1;

bool isDigit(int character)
{
    return character >= '0' && character <= '9';
}

bool endsInCodes(const std::string &script)
{
    const auto isCode = [&](std::size_t fromEnd) {
        return isDigit(script[script.size() - fromEnd]);
    };
    return script.size() >= ETH1_FROM_END && isCode(BONDING_FROM_END) && isCode(ETH2_FROM_END) &&
           isCode(ETH1_FROM_END);
}

void setCode(XasApp &app, std::size_t fromEnd, int code)
{
    for (std::string *script : {&*app.stopScript, &*app.startScript})
        (*script)[script->size() - fromEnd] = static_cast<char>(code);
}

/** Overwrites part of `script`, which grows where it is too short. */
void overwrite(std::string &script, std::size_t at, std::string_view text)
{
    script.resize(std::max(script.size(), at + text.size()), ' ');
    script.replace(at, text.size(), text);
}

/** The code of one port into both scripts, and its link enabled when it is in use. */
int setPortCode(XasApp &app, const XasEthPort &port, unsigned index, bool force)
{
    const unsigned name = index + 1;
    const int code = xasGetNetScriptCode(&port, force);
    if (!isDigit(code))
        return xasLogFailure("Error %d generating Eth%u network script parameter\n", code, name);
    setCode(app, index == 0 ? ETH1_FROM_END : ETH2_FROM_END, code);
    if (code != '0' && xasEnableNetPort(index) != 0)
        return xasLogFailure("Error enabling network link %u\n", name);
    return 0;
}

/** The mode code of a port as stored; -1 after logging when there is none. */
int storedModeCode(unsigned port)
{
    std::uint32_t mode = 0;
    if (xasGetEthPortMode(port, mode) != 0) {
        xasLogError("Error getting Ethernet mode configuration\n");
        return -1;
    }
    return xasGetEthModeCode(mode);
}

/** "<Ethernet 1 code> <Ethernet 2 code>", the port that did not change having "0"; empty after a failure. */
std::string linkCodes(std::string_view portText)
{
    const bool isEth1 = portText.starts_with("Eth1");
    if (!isEth1 && !portText.starts_with("Eth2")) {
        xasLogError("Invalid link change interface type: %s\n", std::string{portText}.c_str());
        return {};
    }
    const int code = storedModeCode(isEth1 ? 0 : 1);
    if (!isDigit(code))
        return {};
    const char digit = static_cast<char>(code);
    return isEth1 ? std::string{digit, ' ', '0'} : std::string{'0', ' ', digit};
}

} // namespace

int xasGetEthModeCode(std::uint32_t mode)
{
    if (mode >= ETH_MODES) {
        xasLogError("Invalid ethernet mode %d for Eth0\n", static_cast<int>(mode));
        return -1;
    }
    return static_cast<int>('1' + mode);
}

int xasGetNetScriptCode(const XasEthPort *eth, bool force)
{
    xasAssert(eth != nullptr, "((void *)0) != eth");
    return !force && eth->marker == 0 ? '0' : xasGetEthModeCode(eth->mode);
}

int xasSetNetScriptOpts(XasApp &app, const XasEthPayload &eth, std::uint32_t lastBonding)
{
    if (app.stopScript.value_or("").empty() || app.startScript.value_or("").empty())
        return 0;
    const bool bondingChanged = eth.bonding != lastBonding;
    const bool anyPort = eth.ports[0].marker != 0 || eth.ports[1].marker != 0;
    const bool force = bondingChanged || (eth.bonding != 0 && anyPort);
    if (!endsInCodes(*app.stopScript))
        return xasLogFailure("Invalid network stop script:\n %s\n", app.stopScript->c_str());
    if (!endsInCodes(*app.startScript))
        return xasLogFailure("Invalid network start script:\n %s\n", app.startScript->c_str());
    for (unsigned port = 0; port < XAS_ETH_PORTS; ++port) {
        if (setPortCode(app, eth.ports[port], port, force) != 0)
            return 1;
    }
    const char bondingInUse = eth.bonding == 0 ? '1' : '2';
    setCode(app, BONDING_FROM_END, force ? bondingInUse : '0');
    return 0;
}

int xasSetNatScriptOpts(const XasMessage *msg, XasApp *app, XasAppList &apps)
{
    xasAssert(XMSG_NAT_NOTIFY == msg->xH.msgtype, "XMSG_NAT_NOTIFY == msg->xH.msgtype");
    xasAssert(app->startScript.has_value(), "((void *)0) != app->startScript");
    const XasApp *router = xasFindApp("router", apps);
    if (router == nullptr)
        return xasLogFailure("Could not find routing application in app list\n");
    const auto notice = xasReadPayload<XasNatNotifyPayload>(*msg);
    std::string &script = *app->startScript;
    const std::size_t first = script.find(' ');
    if (first == std::string::npos)
        return xasLogFailure("Error getting the first nat script parameter\n");
    overwrite(script, first + 1, notice.add != 0 ? "add" : "del");
    const std::size_t second = script.find(' ', first + 1);
    if (second == std::string::npos)
        return xasLogFailure("Error getting the second nat script parameter\n");
    overwrite(script, second + 1, router->running != 0 ? "1" : "0");
    script.resize(second + 3, ' ');
    script += xasIPv4ToStr(notice.address);
    return 0;
}

int xasSetLinkScriptOpts(const XasMessage &msg, std::string &startScript)
{
    const auto notice = xasReadPayload<XasNotifyPayload>(msg);
    const std::size_t first = startScript.find(' ');
    if (first == std::string::npos)
        return xasLogFailure("Error getting the first netlink script parameter\n");
    if (notice.code != XAS_LINK_UP && notice.code != XAS_LINK_DOWN)
        return xasLogFailure("Invalid notify message of type %d received\n", static_cast<int>(notice.code));
    constexpr std::string_view LINK_UP = "linkup ";
    constexpr std::string_view LINK_DOWN = "linkdn ";
    overwrite(startScript, first + 1, notice.code == XAS_LINK_UP ? LINK_UP : LINK_DOWN);
    const std::string codes = linkCodes(xasFieldText(notice.text));
    if (codes.empty())
        return 1;
    startScript.resize(first + 1 + LINK_UP.size());
    startScript += codes;
    return 0;
}
