#include "dispatch/ipfilter_script.h"

#include "core/assert.h"
#include "core/log.h"
#include "core/text.h"
#include "core/utils.h"
#include "files/new_file.h"
#include "platform/config_library.h"

#include <algorithm>
#include <span>
#include <unistd.h>

namespace {

constexpr const char *WORKING_SCRIPT = "/tmp/xas_iptables.sh";

enum Protocol : std::uint32_t { PROTOCOL_NONE = 0, PROTOCOL_ALL = 1, PROTOCOL_ICMP = 6, PROTOCOL_ECHO = 7 };

/** The iptables options of the protocol codes from 1 on; a higher code takes those of PROTOCOL_ECHO. */
constexpr XasLiteral PROTOCOL_OPTIONS[] = {
    " -p ALL ",
    " -p tcp ",
    " -p tcp --syn ",
    " -p tcp ! --syn ",
    " -p udp ",
    " -p icmp ",
    " -p icmp --icmp-type echo-request ",
    " -p 50 ",
};

constexpr unsigned ETHERNET_PORTS = 2;
constexpr unsigned PPP_LINKS = 51;

XasLiteral protocolOption(std::uint32_t protocol)
{
    return PROTOCOL_OPTIONS[protocol <= std::size(PROTOCOL_OPTIONS) ? protocol - 1 : PROTOCOL_ECHO - 1];
}

XasLiteral targetOption(std::uint32_t target)
{
    constexpr XasLiteral TARGETS[] = {" -j ACCEPT", " -j REJECT", " -j DROP"};
    return TARGETS[std::min<std::size_t>(target, std::size(TARGETS) - 1)];
}

/** Adds a line; one that is too long is cut, or left out where a cut would change its meaning. */
void addLine(XasFilterLines &lines, XasShellCommand command)
{
    if (command.fit(XAS_FILTER_COMMAND_SIZE - 1))
        lines.text += command.str() + "\n";
    else
        lines.complete = false;
}

void addChainLine(XasFilterLines &lines, XasLiteral action, std::string_view chain)
{
    XasShellCommand command{"${IPTABLES} "};
    addLine(lines, command.text(action).text(" ").word(chain));
}

void appendSource(XasShellCommand &command, const XasIpFilterRule &rule)
{
    if (!rule.range_end.isNone()) {
        command.text("-m iprange --src-range ").word(xasIPv4ToStr(rule.ip));
        command.text("-").word(xasIPv4ToStr(rule.range_end));
    } else {
        command.text("-s ").word(xasIPv4ToStr(rule.ip)).text("/").number(static_cast<int>(rule.masklength));
    }
}

/** One rule line; `port` empty: whatever the port. */
void addRuleLine(XasFilterLines &lines, std::string_view chain, const XasIpFilterRule &rule,
                 std::string_view port)
{
    XasShellCommand command{"${IPTABLES} -A "};
    command.word(chain).text(protocolOption(rule.protocol));
    appendSource(command, rule);
    if (!port.empty())
        command.text(" --destination-port ").word(port);
    addLine(lines, command.text(targetOption(rule.target)));
}

bool hasPorts(const XasIpFilterRule &rule)
{
    const std::uint32_t protocol = rule.protocol;
    const bool portless = protocol == PROTOCOL_ALL || protocol == PROTOCOL_ICMP || protocol == PROTOCOL_ECHO;
    return !portless && !xasFieldText(rule.portrange).empty();
}

void addRule(XasFilterLines &lines, std::string_view chain, const XasIpFilterRule &rule)
{
    if (rule.protocol == PROTOCOL_NONE)
        return;
    if (!hasPorts(rule))
        return addRuleLine(lines, chain, rule, {});
    std::string_view ports = xasFieldText(rule.portrange);
    for (auto port = xasNextToken(ports, ","); !port.empty(); port = xasNextToken(ports, ","))
        addRuleLine(lines, chain, rule, port);
}

/** The rules that the message really holds. */
std::span<const XasIpFilterRule> rulesOf(const XasIpFilterSetPayload &set)
{
    if (set.num_rules > XAS_FILTER_RULES_MAX)
        xasLogWarning("IP Filter set has %u rules, only %u are taken\n", set.num_rules, XAS_FILTER_RULES_MAX);
    return std::span{set.rules}.first(std::min(set.num_rules, XAS_FILTER_RULES_MAX));
}

/** Adds the jump rule of one interface as stored, if it has a set. `kind` and `number` name the device. */
void addInputLine(XasFilterLines &lines, std::uint32_t ifaceType, unsigned ifaceId, XasLiteral kind,
                  unsigned number)
{
    XasMessage request{};
    XasIpFilterAssignPayload assignment{};
    assignment.iface_type = ifaceType;
    assignment.iface_id = static_cast<std::uint8_t>(ifaceId);
    xasWritePayload(request, assignment);
    if (xmlGetMsg(stdout, XMSG_IPFILTER_ASSIGN, &request) != 0)
        return;
    assignment = xasReadPayload<XasIpFilterAssignPayload>(request);
    const std::string_view filterName = xasFieldText(assignment.filterName);
    if (filterName.empty())
        return;
    XasShellCommand command{"${IPTABLES} -A INPUT -i "};
    addLine(lines, command.text(kind).number(number).text(" -j ").word(filterName));
}

int append(const XasFilterLines &lines, FILE *script)
{
    std::fputs(lines.text.c_str(), script);
    return lines.complete ? 0 : 1;
}

} // namespace

std::string xasIPFilterSourceSpec(const XasIpFilterRule &rule)
{
    XasShellCommand source{""};
    appendSource(source, rule);
    return source.str();
}

XasFilterLines xasIPFilterRulesText(const XasIpFilterSetPayload &set, bool create)
{
    const std::string_view chain = xasFieldText(set.name);
    XasFilterLines lines;
    if (create)
        addChainLine(lines, "-N", chain);
    addChainLine(lines, "-F", chain);
    for (const XasIpFilterRule &rule : rulesOf(set))
        addRule(lines, chain, rule);
    return lines;
}

XasFilterLines xasIPFilterRemovalText(const XasIpFilterSetPayload &set)
{
    const std::string_view chain = xasFieldText(set.name);
    XasFilterLines lines;
    addChainLine(lines, "-F", chain);
    addChainLine(lines, "-X", chain);
    return lines;
}

XasFilterLines xasIPFilterInputText()
{
    XasFilterLines lines;
    for (unsigned port = 1; port <= ETHERNET_PORTS; ++port)
        addInputLine(lines, XAS_IFACE_ETHERNET, port, "eth", port - 1);
    for (unsigned link = 1; link <= PPP_LINKS; ++link)
        addInputLine(lines, XAS_IFACE_PPP, link, "ppp", link);
    return lines;
}

int xasIPFilterSetAddRules(const XasMessage *msg, FILE *fp, bool create)
{
    xasAssertGiven(msg, "msg");
    xasAssertGiven(fp, "fp");
    return append(xasIPFilterRulesText(xasReadPayload<XasIpFilterSetPayload>(*msg), create), fp);
}

int xasIPFilterSetRemove(const XasMessage *msg, FILE *fp)
{
    xasAssertGiven(msg, "msg");
    xasAssertGiven(fp, "fp");
    const int removal = append(xasIPFilterRemovalText(xasReadPayload<XasIpFilterSetPayload>(*msg)), fp);
    const int input = xasIPFilterAddInput(fp);
    return removal != 0 || input != 0 ? 1 : 0;
}

int xasIPFilterAddInput(FILE *fp)
{
    xasAssertGiven(fp, "fp");
    return append(xasIPFilterInputText(), fp);
}

int xasIPFilterCopyScript()
{
    ::unlink(WORKING_SCRIPT);
    const XasShellCommand copy{"/bin/cp -af /usr/bin/xas_iptables.sh /tmp/xas_iptables.sh > /dev/null 2>&1"};
    return xasSystem(copy).exitedWell() ? 0 : 1;
}

XasFile xasIPFilterOpenScript()
{
    return xasOpenWorkingFile(WORKING_SCRIPT);
}

int xasIPFilterEndScript(XasFile script)
{
    std::fputs("exit 0\n", script.get());
    const bool written = std::ferror(script.get()) == 0;
    // Closed before anybody runs it: a script that is open for writing cannot be executed.
    const bool closed = std::fclose(script.release()) == 0;
    return written && closed ? 0 : 1;
}

int xasIPFilterRunScript(XasLiteral reset)
{
    XasShellCommand command{"/tmp/xas_iptables.sh "};
    return xasSystem(command.text(reset)).exitedWell() ? 0 : 1;
}
