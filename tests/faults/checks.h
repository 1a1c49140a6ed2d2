/** What must hold after the daemon was disturbed. Each function gives the complaints; none is as it should
 * be. */
#ifndef XAS_TEST_FAULTS_CHECKS_H
#define XAS_TEST_FAULTS_CHECKS_H

#include "faults/cases.h"

using XasComplaints = std::vector<std::string>;

/** What a case does when nothing disturbs it. */
struct XasUndisturbed {
    const XasFaultsCase &faultsCase;
    XasFileStates old; /**< at the arrival of the message */
    XasRun run;
    XasRun again; /**< of a new daemon that gets the same message once more, on the files that the run left */
    XasFileStates between = {}; /**< what the run rolled back, as it was before that */
};

/** Makes the runs. */
XasUndisturbed xasRunUndisturbed(const XasFaultsCase &faultsCase);

/** The run itself: answered and served, the same calls every time, nothing renamed that was not synced, no
 * directory left unsynced at the acknowledgement. */
XasComplaints xasCheckUndisturbed(const XasUndisturbed &undisturbed);

/** After SIGKILL: each file old or new and no more open than that; and, with the message sent again to a new
 * daemon, as if nothing had been. */
XasComplaints xasCheckKilled(const XasUndisturbed &undisturbed, const XasRun &run);

/** After a call or a block of memory that failed: alive; each file old or new, rolled back when the answer
 * says that an edit failed; "applied" only when all is as without. */
XasComplaints xasCheckFailed(const XasUndisturbed &undisturbed, const XasRun &run, const XasCut &cut);

/** After SIGCHLD or SIGALRM, or the death of another application's daemon: as without, but for that death. */
XasComplaints xasCheckSignalled(const XasUndisturbed &undisturbed, const XasRun &run, bool hasDied);

/** After SIGTERM: ended with everything that it had started, each file old or new. */
XasComplaints xasCheckTerminated(const XasUndisturbed &undisturbed, const XasRun &run);

#endif
