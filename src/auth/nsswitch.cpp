#include "auth/nsswitch.h"

#include "core/text.h"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace {

struct Database {
    std::string_view key;
    std::string_view column; /**< what the new line begins with */
};

constexpr Database DATABASES[] = {
    {"passwd:", "passwd:     "},    {"shadow:", "shadow:     "},   {"group:", "group:      "},
    {"protocols:", "protocols:  "}, {"services:", "services:   "}, {"netgroup:", "netgroup:   "},
    {"automount:", "automount:  "},
};

} // namespace

std::string xasNsswitchSources(const XasAuthOrder &order, bool isPasswd)
{
    std::string sources;
    bool hasFiles = false;
    for (std::uint32_t position = 1; position <= XAS_AUTH_POSITIONS; ++position) {
        if (isPasswd && order.radius == position) {
            sources += "files radius ";
            hasFiles = true;
        }
        if (isPasswd && order.securid == position)
            sources += "securid ";
        if (order.local == position && !hasFiles) {
            sources += "files ";
            hasFiles = true;
        }
        if (order.nis == position)
            sources += "nis ";
    }
    if (!hasFiles)
        sources += "files ";
    sources.back() = '\n';
    return sources;
}

std::string xasNsswitchText(std::string_view oldText, const XasAuthOrder &order)
{
    std::string newText = xasBeginNewText(oldText);
    xasForEachLine(oldText, [&](std::string_view line) {
        const auto *const database = std::ranges::find_if(
            DATABASES, [&](const Database &candidate) { return line.starts_with(candidate.key); });
        if (database == std::end(DATABASES))
            newText += line;
        else
            newText.append(database->column).append(xasNsswitchSources(order, database->key == "passwd:"));
    });
    return newText;
}

constexpr XasEditTexts XAS_NSSWITCH_TEXTS{.openReason = "Error opening pam.d/system-auth config file",
                                          .saveReason = "Error saving new firewall config file"};

int xasEditNsswitchCfgFile(const char *cfgFileName, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    XasAuthOrder order{};
    if (xasReadAuthenOrder(order) == XAS_ORDER_UNKNOWN)
        return 0;
    std::ignore = // never the message's failure
        xasEditFile(cfgFileName, XAS_NSSWITCH_TEXTS, reply,
                    [&](std::string_view oldText) { return XasNewText{xasNsswitchText(oldText, order)}; });
    return 0;
}
