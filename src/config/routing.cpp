#include "config/routing.h"

#include "core/log.h"
#include "core/text.h"
#include "core/utils.h"

#include <algorithm>
#include <array>

namespace {

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
    for (const XasIPv4 address : {route.destination, route.mask, route.gateway})
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

std::string xasZebraText(std::string_view oldText, const XasRoutingPayload &routing)
{
    std::string newText = xasBeginNewText(oldText);
    xasForEachLine(oldText, [&](std::string_view line) {
        if (!beforeEquals(line).starts_with("ip route"))
            newText += line;
    });
    if (routing.static_enabled != 0) {
        for (const XasRoute &route : routing.routes)
            newText += routeLine(route);
    }
    return newText;
}

std::string xasRipdText(std::string_view oldText, const XasRoutingPayload &routing)
{
    std::string newText = xasBeginNewText(oldText);
    bool inRipSection = false;
    xasForEachLine(oldText, [&](std::string_view line) {
        const std::string_view command = beforeEquals(line);
        if (inRipSection) {
            inRipSection = !line.starts_with('!');
        } else if (std::ranges::find(RIP_SECTIONS, command) != RIP_SECTIONS.end()) {
            inRipSection = true;
        } else {
            if (command == LINE_VTY && routing.rip_enabled != 0)
                newText += ripSections(routing.rip_version);
            newText += line;
        }
    });
    return newText;
}

/** Both editors save with the firewall's text. */
constexpr XasEditor<XasRoutingPayload> xasEditZebraCfgFile{
    .argument = "routerCfg",
    .texts = {.openReason = "Error opening zebra config file",
              .saveReason = "Error saving new firewall config file"},
    .text = xasMadeBy<xasZebraText>};

constexpr XasEditor<XasRoutingPayload> xasEditRipdCfgFile{
    .argument = "routerCfg",
    .texts = {.openReason = "Error opening routing config file",
              .saveReason = "Error saving new firewall config file"},
    .text = xasMadeBy<xasRipdText>};

constexpr XasFileRow FILES[] = {
    {.type = "zebra",
     .edit = xasEditedBy<xasEditZebraCfgFile>,
     .missingLog = "Error determining router config file\n",
     .editLog = "Error editing Zebra config file\n"},
    {.type = "ripd",
     .edit = xasEditedBy<xasEditRipdCfgFile>,
     .missingLog = "Error determining router config file\n",
     .editLog = "Error editing Ripd config file\n"},
};

constexpr XasFilesUpdate xasUpdateRoutingCfg{
    .msgtype = XMSG_ROUTING, .files = FILES, .onFailure = XasOnFailure::goOn, .lookUp = XasLookUp::together};
