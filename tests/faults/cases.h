/** The messages that the daemon is disturbed at: every type that it acts upon, and what it refuses. */
#ifndef XAS_TEST_FAULTS_CASES_H
#define XAS_TEST_FAULTS_CASES_H

#include "faults/run.h"

struct XasFaultsCase {
    std::string name;                /**< the message type's, then what is special */
    std::string type;                /**< as the message tool calls it */
    std::vector<std::string> before; /**< settings that are applied first, as the message tool takes them */
    std::string setting;
    XasFileStates more = {}; /**< further files that are there */
};

const std::vector<XasFaultsCase> &xasFaultsCases();

/** The messages of a case; the last one is the case's own. Another daemon is started first, to be watched
 * over. */
XasSession xasSessionOf(const XasFaultsCase &faultsCase);

/** Its own message alone, as it is sent again after a new start. */
XasSession xasSecondSessionOf(const XasFaultsCase &faultsCase);

/** The files that a run of it begins with. */
XasFileStates xasFilesOf(const XasFaultsCase &faultsCase);

#endif
