#include "faults/tolerated.h"

#include <algorithm>

namespace {

/** A file, or all files below a directory, of a message type. */
struct Tolerated {
    const char *type; /**< empty: whatever the type is */
    const char *path;
};

/** The message is applied whatever becomes of these; what failed is logged. */
constexpr Tolerated WITHOUT[] = {
    {"", "/etc/pam.d/system-auth"}, // the two that follow from the order of login methods
    {"", "/etc/nsswitch.conf"},
    {"vpn", "/etc/ipsec.secrets"}, // changed by commands of the appliance, whose result nobody looks at
    {"vpn", "/etc/ipsec.conf"},    // the host key, appended by another one
    {"localusers", "/etc/.lusers"},
    {"localusers", "/etc/passwd"}, // an account that cannot be made
    {"localusers", "/etc/zel/"},   // the last user's result counts
    {"user", "/etc/.lusers"},
    {"user", "/etc/passwd"},
};

/** What is read for other files, and does not fail them. */
struct Source {
    const char *path;
    const char *derived;
};

constexpr Source SOURCES[] = {
    {"/www/xml/network.xml", "/etc/sysconfig/network-scripts/"},
    {"/etc/sysconfig/r58authconfig", "/etc/pam.d/system-auth"},
    {"/etc/sysconfig/r58authconfig", "/etc/nsswitch.conf"},
    {"/etc/tacplus.conf", "/etc/pam.d/system-auth"},
    {"/etc/krb5.conf", "/etc/pam.d/system-auth"},
};

std::string pathOfCut(const XasUndisturbed &undisturbed, const XasCut &cut)
{
    const auto &calls = undisturbed.run.calls;
    const auto call = std::ranges::find_if(calls, [&](const XasCall &one) {
        return cut.kind == XasCutKind::error && one.process == cut.process && one.index == cut.call;
    });
    return call != calls.end() ? call->path : "";
}

} // namespace

XasIgnored xasToleratedWhenUnread(const XasUndisturbed &undisturbed, const XasCut &cut)
{
    const bool isBlock = cut.kind == XasCutKind::block; // of which nobody knows whose it is
    return [isBlock, source = pathOfCut(undisturbed, cut)](const std::string &path) {
        return std::ranges::any_of(SOURCES, [&](const Source &one) {
            return (isBlock || source == one.path) && path.starts_with(one.derived);
        });
    };
}

bool xasMayRunOtherwise(const XasUndisturbed &undisturbed, const XasCut &cut)
{
    // New name servers are applied whatever becomes of the time daemon, which is started again because of
    // them.
    return undisturbed.faultsCase.type == "dns" || pathOfCut(undisturbed, cut) == "/etc/ntp/step-tickers";
}

XasIgnored xasToleratedWhenApplied(const XasUndisturbed &undisturbed, const XasCut &cut)
{
    const std::string type = undisturbed.faultsCase.type;
    // A file that is to be removed may stay.
    const bool isRemoval = pathOfCut(undisturbed, cut) == "/etc/sysconfig/network-scripts/ifcfg-bond0";
    return [=, unread = xasToleratedWhenUnread(undisturbed, cut)](const std::string &path) {
        const bool isWithout = std::ranges::any_of(WITHOUT, [&](const Tolerated &one) {
            return path.starts_with(one.path) && (*one.type == '\0' || type == one.type);
        });
        return isWithout || unread(path) || (isRemoval && path.ends_with("/ifcfg-bond0"));
    };
}
