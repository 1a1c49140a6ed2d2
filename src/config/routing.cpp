#include "config/routing.h"

#include "core/assert.h"
#include "core/log.h"
#include "core/text.h"
#include "core/utils.h"
#include "files/editor.h"

#include <algorithm>
#include <array>

namespace {

/** Both editors save with the firewall's text. */
constexpr XasEditTexts ZEBRA_TEXTS{
    .openReason = "Error opening zebra config file",
    .writeLog = nullptr,
    .saveReason = "Error saving new firewall config file",
};

constexpr XasEditTexts RIPD_TEXTS{
    .openReason = "Error opening routing config file",
    .writeLog = nullptr,
    .saveReason = "Error saving new firewall config file",
};

/** Whole lines, line feed included: the same words with anything behind them are other lines. */
constexpr std::array<std::string_view, 3> RIP_SECTIONS = {"interface eth0\n", "interface eth1\n",
                                                          "router rip\n"};
constexpr std::string_view LINE_VTY = "line vty\n";

std::string_view beforeEquals(std::string_view line)
{
    return xasNextToken(line, "=");
}

std::string routeLine(const XasRoute &route)
{
    std::string line = "ip route";
    for (const std::uint32_t address : {route.destination, route.mask, route.gateway})
        line.append(" ").append(xasIPv4ToStr(address));
    return line + "\n";
}

/** The RIP versions that are sent and received. */
const char *versionText(std::uint32_t ripVersion)
{
    constexpr std::array VERSIONS = {"version 1\n", "version 2\n"};
    return ripVersion < VERSIONS.size() ? VERSIONS[ripVersion] : "version 1 2\n";
}

std::string ripSections(std::uint32_t ripVersion)
{
    const std::string version = versionText(ripVersion);
    std::string sections;
    for (const char *interface : {"interface eth0\n", "interface eth1\n"})
        sections.append(interface)
            .append("  ip rip send " + version)
            .append("  ip rip receive " + version)
            .append("!\n");
    return sections + "router rip\n  network eth0\n  network eth1\n!\n";
}

} // namespace

std::string xasZebraText(std::string_view oldText, const XasRoutingPayload &routerCfg)
{
    std::string newText;
    xasForEachLine(oldText, [&](std::string_view line) {
        if (!beforeEquals(line).starts_with("ip route"))
            newText += line;
    });
    if (routerCfg.static_enabled != 0) {
        for (const XasRoute &route : routerCfg.routes)
            newText += routeLine(route);
    }
    return newText;
}

std::string xasRipdText(std::string_view oldText, const XasRoutingPayload &routerCfg)
{
    std::string newText;
    bool inRipSection = false;
    xasForEachLine(oldText, [&](std::string_view line) {
        const std::string_view command = beforeEquals(line);
        if (inRipSection) {
            inRipSection = !line.starts_with('!');
        } else if (std::ranges::find(RIP_SECTIONS, command) != RIP_SECTIONS.end()) {
            inRipSection = true;
        } else {
            if (command == LINE_VTY && routerCfg.rip_enabled != 0)
                newText += ripSections(routerCfg.rip_version);
            newText += line;
        }
    });
    return newText;
}

int xasEditZebraCfgFile(const char *cfgFileName, const XasRoutingPayload *routerCfg, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(routerCfg, "routerCfg");
    return xasEditFile(cfgFileName, ZEBRA_TEXTS, reply,
                       [&](std::string_view oldText) { return xasZebraText(oldText, *routerCfg); });
}

int xasEditRipdCfgFile(const char *cfgFileName, const XasRoutingPayload *routerCfg, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(routerCfg, "routerCfg");
    return xasEditFile(cfgFileName, RIPD_TEXTS, reply,
                       [&](std::string_view oldText) { return xasRipdText(oldText, *routerCfg); });
}

int xasUpdateRoutingCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    xasAssertGiven(msg, "msg");
    xasAssert(XMSG_ROUTING == msg->xH.msgtype, "XMSG_ROUTING == msg->xH.msgtype");
    xasAssertGiven(cfgFiles, "cfgFiles");

    const char *zebraFile = xasGetCfgFilePath("zebra", *cfgFiles);
    const char *ripdFile = xasGetCfgFilePath("ripd", *cfgFiles);
    if (zebraFile == nullptr || ripdFile == nullptr) {
        xasLogError("Error determining router config file\n");
        return 1;
    }
    const auto routerCfg = xasReadPayload<XasRoutingPayload>(*msg);
    const int zebraResult = xasEditZebraCfgFile(zebraFile, &routerCfg, reply);
    if (zebraResult != 0)
        xasLogError("Error editing Zebra config file\n");
    if (xasEditRipdCfgFile(ripdFile, &routerCfg, reply) != 0) {
        xasLogError("Error editing Ripd config file\n");
        return 1;
    }
    return zebraResult;
}
