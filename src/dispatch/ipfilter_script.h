/**
 * The IP filter's working script. Filter sets are not applied by one iptables call a rule: the shipped script
 * is copied, lines that use its variable ${IPTABLES} and a final "exit 0" are appended (iptables(8) gives
 * their form), and the copy is run with one reset argument. The working copy has a fixed path, so one
 * operation runs at a time.
 */
#ifndef XAS_DISPATCH_IPFILTER_SCRIPT_H
#define XAS_DISPATCH_IPFILTER_SCRIPT_H

#include "core/file.h"
#include "core/shell.h"
#include "dispatch/ipfilter_message.h"

#include <string>

/** The longest line of the script, its line feed included, and the longest command; both with a NUL. */
inline constexpr std::size_t XAS_FILTER_COMMAND_SIZE = 256;

/** The source part of a rule: an address range, or an address with its prefix length. */
std::string xasIPFilterSourceSpec(const XasIpFilterRule &rule);

/** Lines of the script. */
struct XasFilterLines {
    std::string text;
    bool complete =
        true; /**< false: a line is missing, its quoted words are too long; do not run the script */
};

/** The lines that fill a set's chain, the chain's creation first when `create` is set. */
XasFilterLines xasIPFilterRulesText(const XasIpFilterSetPayload &set, bool create);

/** The lines that empty and delete a set's chain. */
XasFilterLines xasIPFilterRemovalText(const XasIpFilterSetPayload &set);

/** The lines that make every interface jump to its set again, as the stored configuration assigns them. */
XasFilterLines xasIPFilterInputText();

/** Appends a set's rules to the script. Returns 0, or 1 when a line had to be left out (as the next two). */
[[nodiscard]] int xasIPFilterSetAddRules(const XasMessage *msg, FILE *fp, bool create);

/** Appends a set's removal and all jump rules, which the reset will have cleared. */
[[nodiscard]] int xasIPFilterSetRemove(const XasMessage *msg, FILE *fp);

/** Appends the jump rules of all interfaces. */
[[nodiscard]] int xasIPFilterAddInput(FILE *fp);

/** Copies the shipped script anew. Returns 0, or 1 when it cannot be copied. */
[[nodiscard]] int xasIPFilterCopyScript();

/** Opens the copy for appending, or gives none. */
XasFile xasIPFilterOpenScript();

/** Ends the script and closes it. Returns 0, or 1 when not all of it could be written. */
[[nodiscard]] int xasIPFilterEndScript(XasFile script);

/** Runs the script with "resetAll", "resetInput" or "resetNone". Returns 0, or 1 when it fails. */
[[nodiscard]] int xasIPFilterRunScript(XasLiteral reset);

#endif
