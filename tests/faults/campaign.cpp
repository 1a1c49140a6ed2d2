#include "faults/campaign.h"

#include "faults/calls.h"

#include <algorithm>
#include <csignal>
#include <cstring>

namespace {

std::vector<XasCut> cutsOf(const XasUndisturbed &undisturbed, unsigned blocks)
{
    std::vector<XasCut> cuts;
    for (const XasCall &call : undisturbed.run.calls) {
        const auto errors = xasPlausibleErrors(call.number);
        const auto add = [&](XasCutKind kind, int value = 0) {
            cuts.push_back({kind, call.process, call.index, value});
        };
        if (call.process == 0 || !errors.empty())
            add(XasCutKind::kill);
        for (const int error : errors)
            add(XasCutKind::error, error);
        if (call.process != 0)
            continue;
        for (const int signal : {SIGCHLD, SIGALRM, SIGTERM})
            add(XasCutKind::signal, signal);
        add(XasCutKind::death);
    }
    for (unsigned block = 0; block < blocks; ++block)
        cuts.push_back({.kind = XasCutKind::block, .value = static_cast<int>(block)});
    return cuts;
}

unsigned countBlocks(const XasFaultsCase &faultsCase)
{
    xasPutFiles(xasFilesOf(faultsCase));
    return xasRunDaemon(xasSessionOf(faultsCase), {.kind = XasCutKind::block, .value = -1}).blocks;
}

/** "ENOSPC at call 17, write /etc/hosts.tmp" */
std::string described(const XasUndisturbed &undisturbed, const XasCut &cut)
{
    if (cut.kind == XasCutKind::block)
        return "no memory for block " + std::to_string(cut.value);
    const auto call = std::ranges::find_if(undisturbed.run.calls, [&](const XasCall &one) {
        return one.process == cut.process && one.index == cut.call;
    });
    std::string what = "a death";
    if (cut.kind == XasCutKind::kill)
        what = "SIGKILL";
    else if (cut.kind == XasCutKind::error)
        what = xasErrorName(cut.value);
    else if (cut.kind == XasCutKind::signal)
        what = std::string{"SIG"} + ::sigabbrev_np(cut.value);
    return what + " at call " + std::to_string(cut.call) +
           (cut.process != 0 ? " of child " + std::to_string(cut.process) : "") + ", " +
           xasCallName(call->number) + " " + call->path;
}

XasComplaints tryCut(const XasUndisturbed &undisturbed, const XasCut &cut)
{
    xasPutFiles(xasFilesOf(undisturbed.faultsCase));
    const XasRun run = xasRunDaemon(xasSessionOf(undisturbed.faultsCase), cut);
    if (!run.wasCut)
        return {"it did not come to this call"};
    switch (cut.kind) {
    case XasCutKind::kill:
        return cut.process == 0 ? xasCheckKilled(undisturbed, run) : xasCheckFailed(undisturbed, run, cut);
    case XasCutKind::signal:
        return cut.value == SIGTERM ? xasCheckTerminated(undisturbed, run)
                                    : xasCheckSignalled(undisturbed, run, false);
    case XasCutKind::death:
        return xasCheckSignalled(undisturbed, run, true);
    default:
        return xasCheckFailed(undisturbed, run, cut);
    }
}

void countCut(XasFaultsCount &count, XasCutKind kind)
{
    count.kills += kind == XasCutKind::kill ? 1 : 0;
    count.errors += kind == XasCutKind::error ? 1 : 0;
    count.signals += kind == XasCutKind::signal || kind == XasCutKind::death ? 1 : 0;
    count.blocks += kind == XasCutKind::block ? 1 : 0;
}

} // namespace

XasFaultsCount xasTryCase(const XasFaultsCase &faultsCase, const XasShare &share,
                          const std::function<void(const std::string &)> &tell)
{
    XasFaultsCount count;
    const auto complain = [&](const std::string &where, const XasComplaints &complaints) {
        for (const std::string &complaint : complaints)
            tell(faultsCase.name + ": " + where + ": " + complaint);
        count.violations += complaints.empty() ? 0 : 1;
    };
    const XasUndisturbed undisturbed = xasRunUndisturbed(faultsCase);
    if (share.share == 0) {
        count.calls = static_cast<unsigned>(undisturbed.run.calls.size());
        complain("undisturbed", xasCheckUndisturbed(undisturbed));
    }
    std::vector<XasCut> cuts = cutsOf(undisturbed, countBlocks(faultsCase));
    std::erase_if(cuts, [&](const XasCut &cut) {
        return described(undisturbed, cut).find(share.at) == std::string::npos;
    });
    for (std::size_t i = 0; i < cuts.size(); ++i) {
        if (i % share.every != 0 || i / share.every % share.shares != share.share)
            continue;
        complain(described(undisturbed, cuts[i]), tryCut(undisturbed, cuts[i]));
        countCut(count, cuts[i].kind);
    }
    return count;
}
