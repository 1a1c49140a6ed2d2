#include "dispatch/ipfilter_assign.h"

#include "core/assert.h"
#include "core/log.h"
#include "core/shell.h"
#include "core/text.h"
#include "dispatch/ipfilter_message.h"
#include "dispatch/ipfilter_script.h"
#include "files/new_file.h"

#include <array>

namespace {

constexpr const char *LISTING = "/tmp/xas_ipfilter.txt";

/** The longest line of the listing that is read in one piece. */
constexpr std::size_t LISTED_MAX = 255;

/** "eth0" for Ethernet port 1, "ppp1" for PPP link 1. */
std::string interfaceName(const XasIpFilterAssignPayload &assignment)
{
    if (assignment.iface_type == XAS_IFACE_ETHERNET)
        return xasFormat("%s%d", "eth", assignment.iface_id - 1);
    return xasFormat("%s%d", "ppp", assignment.iface_id);
}

/** The rules of the INPUT chain that name the interface. False when they cannot be had. */
bool listInputRules(const std::string &interface, std::string &listing)
{
    if (xasMakeWorkingFile(LISTING, {}) != 0) // the shell writes into it
        return false;
    XasShellCommand command{
        "XTABLES_LIBDIR=/libexec/xtables; export XTABLES_LIBDIR; /bin/iptables -L INPUT -v -n |grep "};
    command.word(interface).text(" > /tmp/xas_ipfilter.txt");
    xasTrySystem(command);
    return xasReadWhole(LISTING, listing) == XasReading::whole;
}

/** "-A" or "-D" of one jump rule. Returns true when iptables did it. */
bool changeJumpRule(XasLiteral action, std::string_view interface, std::string_view target)
{
    XasShellCommand command{"XTABLES_LIBDIR=/libexec/xtables; export XTABLES_LIBDIR; /bin/iptables "};
    command.text(action).text(" INPUT -i ").word(interface).text(" -j ").word(target);
    return command.fit(XAS_FILTER_COMMAND_SIZE) && xasSystem(command).exitedWell();
}

/** The third and the sixth column of a line of the listing: where the rule jumps, and its input interface. */
struct ListedRule {
    std::string target;
    std::string interface;
};

ListedRule readListedRule(std::string_view line)
{
    constexpr std::string_view BLANKS = " \t\n\v\f\r";
    std::array<std::string_view, 6> columns;
    for (std::string_view &column : columns)
        column = xasNextToken(line, BLANKS);
    return {std::string{columns[2]}, std::string{columns[5]}};
}

void removeJumpRules(std::string_view listing, const std::string &interface)
{
    const auto remove = [&](std::string_view line) {
        const ListedRule rule = readListedRule(line);
        if (rule.interface == interface && !changeJumpRule("-D", rule.interface, rule.target))
            xasLogError("Cannot remove IP Filter %s for interface %s from INPUT chain.\n",
                        rule.target.c_str(), interface.c_str());
    };
    xasForEachLine(listing, remove, LISTED_MAX);
}

} // namespace

int xasIPFilterAssign(const XasMessage *msg, XasReplyStatus *reply)
{
    xasAssertGiven(msg, "msg");
    const auto assignment = xasReadPayload<XasIpFilterAssignPayload>(*msg);
    const std::string interface = interfaceName(assignment);
    std::string listing;
    if (!listInputRules(interface, listing)) {
        xasSetReply(*reply, XAS_FILTER_LISTING_FAILED);
        return 1;
    }
    removeJumpRules(listing, interface);
    const std::string filterName{xasFieldText(assignment.filterName)};
    if (filterName.empty() || changeJumpRule("-A", interface, filterName))
        return 0;
    return xasLogFailure("Cannot add IP Filter %s for interface %s from INPUT chain.\n", filterName.c_str(),
                         interface.c_str());
}
