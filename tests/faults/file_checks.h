/** What must hold of files that a disturbed daemon left. */
#ifndef XAS_TEST_FAULTS_FILE_CHECKS_H
#define XAS_TEST_FAULTS_FILE_CHECKS_H

#include "faults/checks.h"

#include <functional>

/** Which paths are not looked at. */
using XasIgnored = std::function<bool(const std::string &path)>;

/** Each file has the text that it had before or has afterwards, and nothing is more open than that. Where
 * files may be rolled back it may also have that of the backup which was there before: what was not saved by
 * this message is put back to what an earlier one left. */
XasComplaints xasCheckOldOrNew(const XasUndisturbed &undisturbed, const XasFileStates &files,
                               bool mayBeRolledBack = false, const XasIgnored &ignored = {});

/** The live files are in all as in one of these sets. */
XasComplaints xasCheckLive(const XasFileStates &files, std::initializer_list<const XasFileStates *> sets,
                           const XasIgnored &ignored = {});

/** An edit failed at this call: those in front of it are rolled back as the table of settings says. */
XasComplaints xasCheckRolledBack(const XasUndisturbed &undisturbed, const XasFileStates &files,
                                 const XasCut &cut);

/** What a power cut at any moment would show: a file is renamed only when it is synced, and at the
 * acknowledgement every directory is in which a name changed. */
XasComplaints xasCheckSynced(const XasRun &run);

/** A file that the table of settings calls secret is its owner's alone once the message has changed it. */
XasComplaints xasCheckSecrets(const XasUndisturbed &undisturbed);

/** Working files, and those that commands of the appliance change: they are not old or new, but in between.
 */
bool xasChangesInSteps(const std::string &path);

#endif
