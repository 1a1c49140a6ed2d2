#include "faults/checks.h"

#include "core/reply.h"
#include "faults/tolerated.h"
#include "support/message.h"
#include "wire/reply_message.h"

#include <algorithm>
#include <csignal>
#include <sys/syscall.h>
#include <sys/wait.h>

namespace {

constexpr const char *WATCHED = "/r58/sbin/xdd";

void add(XasComplaints &complaints, XasComplaints more)
{
    std::ranges::move(more, std::back_inserter(complaints));
}

std::string outcomeOf(const XasRun &run)
{
    return run.answer ? xasOutcomeIn(*run.answer) : "no answer";
}

XasReplyPayload replyOf(const XasRun &run)
{
    return run.answer ? xasReadPayload<XasReplyPayload>(*run.answer) : XasReplyPayload{};
}

std::string listed(const std::vector<std::string> &lines)
{
    std::string text;
    for (const std::string &line : lines)
        text += (text.empty() ? "" : " | ") + line.substr(0, line.find('\n'));
    return text;
}

XasComplaints checkServes(const XasRun &run)
{
    if (run.hung)
        return {"it hangs"};
    if (run.ended)
        return {"it ended, wait status " + std::to_string(*run.ended) + ": " + listed(run.log)};
    return run.servedAfterwards ? XasComplaints{} : XasComplaints{"it does not answer the next message"};
}

/** Nothing is left over within the daemon, and each of its daemons runs once. */
XasComplaints checkLeft(const XasUndisturbed &undisturbed, const XasRun &run)
{
    XasComplaints complaints;
    if (run.descriptors != undisturbed.run.descriptors)
        complaints.push_back(std::to_string(run.descriptors) + " descriptors are open instead of " +
                             std::to_string(undisturbed.run.descriptors));
    if (run.leftChildren)
        complaints.push_back("a child was not collected");
    if (std::ranges::adjacent_find(run.running) != run.running.end())
        complaints.push_back("a daemon runs twice: " + listed(run.running));
    return complaints;
}

std::string deathOf(const std::string &program)
{
    return "sw/info-PID[" + program + "] WIFSIGNALED on sig Child exited\n";
}

std::string startOf(const std::string &program)
{
    return "sw/info-[" + program + "] " + program + " started\n";
}

/** Takes the lines of one death and one new start out of the others. */
bool takeDeath(std::vector<std::string> &log)
{
    const auto ended = std::ranges::find(log, deathOf(WATCHED));
    const auto again = std::find(ended, log.end(), startOf(WATCHED));
    if (again == log.end())
        return false;
    log.erase(again);
    log.erase(ended);
    return true;
}

void compare(XasComplaints &complaints, const char *what, std::vector<std::string> found,
             std::vector<std::string> due)
{
    if (found == due)
        return;
    while (!found.empty() && !due.empty() && found.front() == due.front()) { // from the first difference on
        found.erase(found.begin());
        due.erase(due.begin());
    }
    complaints.push_back(std::string{what} + ": " + listed(found) + "; without: " + listed(due));
}

/** A message whose record, or whose answer, could not be had from or put on a queue. */
bool isAboutQueue(const XasUndisturbed &undisturbed, const XasCut &cut)
{
    return std::ranges::any_of(undisturbed.run.calls, [&](const XasCall &call) {
        return call.process == cut.process && call.index == cut.call &&
               (call.number == SYS_msgsnd || call.number == SYS_msgrcv);
    });
}

/** Syncing or closing a file failed that then took another one's place: nobody knows whether it is kept. */
bool isUnkept(const XasUndisturbed &undisturbed, const XasCut &cut)
{
    return cut.kind == XasCutKind::error &&
           std::ranges::any_of(undisturbed.run.calls, [&](const XasCall &call) {
               return call.process == cut.process && call.index == cut.call && call.path.ends_with(".tmp") &&
                      (call.number == SYS_fsync || call.number == SYS_close) &&
                      !xasToleratedWhenApplied(undisturbed, cut)(xasLivePathOf(call.path));
           });
}

XasRun runAgain(const XasFaultsCase &faultsCase, const XasFileStates &files)
{
    xasPutFiles(files);
    return xasRunDaemon(xasSecondSessionOf(faultsCase), {});
}

bool isRollBack(const XasCall &call)
{
    return call.number == SYS_rename && call.result == 0 && call.path == call.to + ".old";
}

XasRun runFirst(const XasFaultsCase &faultsCase, const XasCut &cut)
{
    xasPutFiles(xasFilesOf(faultsCase));
    return xasRunDaemon(xasSessionOf(faultsCase), cut);
}

/** Those of the daemon first, then those of each child, which may run at the same time. */
std::vector<std::string> namesOf(std::vector<XasCall> calls)
{
    std::ranges::stable_sort(calls, {}, &XasCall::process);
    std::vector<std::string> names;
    for (const XasCall &call : calls)
        names.push_back(std::to_string(call.process) + " " + std::to_string(call.number) + " " + call.path);
    return names;
}

} // namespace

XasUndisturbed xasRunUndisturbed(const XasFaultsCase &faultsCase)
{
    XasUndisturbed undisturbed{.faultsCase = faultsCase,
                               .old = runFirst(faultsCase, {.kind = XasCutKind::kill}).files,
                               .run = runFirst(faultsCase, {}),
                               .again = {}};
    undisturbed.again = runAgain(faultsCase, undisturbed.run.files);
    for (const XasCall &call : undisturbed.run.calls) {
        if (isRollBack(call))
            undisturbed.between[call.to] =
                runFirst(faultsCase, {.kind = XasCutKind::kill, .call = call.index}).files[call.to];
    }
    return undisturbed;
}

XasComplaints xasCheckUndisturbed(const XasUndisturbed &undisturbed)
{
    XasComplaints complaints = checkServes(undisturbed.run);
    add(complaints, checkLeft(undisturbed, undisturbed.run));
    add(complaints, xasCheckSynced(undisturbed.run));
    add(complaints, xasCheckSecrets(undisturbed));
    const XasRun other = runFirst(undisturbed.faultsCase, {});
    compare(complaints, "the calls are others the second time", namesOf(other.calls),
            namesOf(undisturbed.run.calls));
    compare(complaints, "the log is another the second time", other.log, undisturbed.run.log);
    return complaints;
}

XasComplaints xasCheckKilled(const XasUndisturbed &undisturbed, const XasRun &run)
{
    XasComplaints complaints = xasCheckOldOrNew(undisturbed, run.files);
    if (run.answer && outcomeOf(run) == XAS_APPLIED)
        add(complaints, xasCheckLive(run.files, {&undisturbed.run.files}));
    const XasRun second = runAgain(undisturbed.faultsCase, run.files);
    add(complaints, checkServes(second));
    XasFileStates steps = second.files; // what commands of the appliance change in steps is not looked at
    std::erase_if(steps, [](const auto &file) { return !xasChangesInSteps(file.first); });
    XasFileStates once = undisturbed.run.files;
    for (const auto &[path, state] : steps)
        once[path] = state;
    XasFileStates rolledBack = once; // of a refused message, to what the killed daemon had made of it
    for (const auto &[path, state] : undisturbed.between)
        rolledBack[path] = state;
    // A user whose account is there already is not added once more, and his ports are not written.
    const auto isPorts = [&](const std::string &path) {
        return undisturbed.faultsCase.type == "user" && path.starts_with("/etc/zel/");
    };
    for (std::string &complaint :
         xasCheckLive(second.files, {&once, &undisturbed.again.files, &rolledBack}, isPorts))
        complaints.push_back("after a new start " + complaint);
    if (outcomeOf(second) != outcomeOf(undisturbed.run) && outcomeOf(second) != outcomeOf(undisturbed.again))
        complaints.push_back("after a new start the answer is: " + outcomeOf(second));
    return complaints;
}

XasComplaints xasCheckFailed(const XasUndisturbed &undisturbed, const XasRun &run, const XasCut &cut)
{
    XasComplaints complaints = checkServes(run);
    add(complaints, checkLeft(undisturbed, run));
    add(complaints, xasCheckOldOrNew(undisturbed, run.files, replyOf(run).success == 0,
                                     xasToleratedWhenUnread(undisturbed, cut)));
    const bool wasAnswered = undisturbed.run.answer.has_value();
    if (wasAnswered && !run.answer && !isAboutQueue(undisturbed, cut))
        complaints.push_back("it is not answered");
    if (!run.answer)
        return complaints;
    const XasReplyPayload reply = replyOf(run);
    if (reply.success != 0) {
        add(complaints,
            xasCheckLive(run.files, {&undisturbed.run.files}, xasToleratedWhenApplied(undisturbed, cut)));
        if (isUnkept(undisturbed, cut))
            complaints.emplace_back("it is applied although nobody knows whether the file is kept");
        if (!xasMayRunOtherwise(undisturbed, cut))
            compare(complaints, "these run", run.running, undisturbed.run.running);
    } else if (cut.kind == XasCutKind::error &&
               (reply.rcode == XAS_RCODE_OPEN || reply.rcode == XAS_RCODE_SAVE)) {
        add(complaints, xasCheckRolledBack(undisturbed, run.files, cut));
    }
    return complaints;
}

XasComplaints xasCheckSignalled(const XasUndisturbed &undisturbed, const XasRun &run, bool hasDied)
{
    XasComplaints complaints = checkServes(run);
    add(complaints, checkLeft(undisturbed, run));
    add(complaints, xasCheckLive(run.files, {&undisturbed.run.files}));
    if (outcomeOf(run) != outcomeOf(undisturbed.run))
        complaints.push_back("the answer is: " + outcomeOf(run));
    std::vector<std::string> log = run.log;
    if (hasDied && !takeDeath(log))
        complaints.emplace_back("the death of a daemon, or its new start, is not logged");
    compare(complaints, "the log is", log, undisturbed.run.log);
    std::vector<std::string> commands = run.commands;
    const auto restart = std::ranges::find(commands, WATCHED);
    if (hasDied && restart != commands.end())
        commands.erase(restart);
    // Some of them run in the background.
    std::vector<std::string> due = undisturbed.run.commands;
    std::ranges::sort(commands);
    std::ranges::sort(due);
    compare(complaints, "the commands are", commands, due);
    compare(complaints, "these run", run.running, undisturbed.run.running);
    return complaints;
}

XasComplaints xasCheckTerminated(const XasUndisturbed &undisturbed, const XasRun &run)
{
    XasComplaints complaints = xasCheckOldOrNew(undisturbed, run.files);
    if (run.hung || !run.ended || !WIFSIGNALED(*run.ended) || WTERMSIG(*run.ended) != SIGKILL)
        complaints.emplace_back("it did not end itself");
    if (std::ranges::count(run.log, "sw/info-sig Terminated - kill all processes\n") != 1)
        complaints.push_back("its end is not logged: " + listed(run.log));
    if (!run.running.empty())
        complaints.push_back("these still run: " + listed(run.running));
    if (run.answer && replyOf(run).success != 0)
        add(complaints, xasCheckLive(run.files, {&undisturbed.run.files}));
    return complaints;
}
