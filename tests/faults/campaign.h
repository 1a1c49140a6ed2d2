/** All cuts of a case, tried one after the other. */
#ifndef XAS_TEST_FAULTS_CAMPAIGN_H
#define XAS_TEST_FAULTS_CAMPAIGN_H

#include "faults/checks.h"

#include <functional>

/** Which of the cuts are tried: those in whose description `at` stands, of these every `every`th, and of
 * these every `shares`th, beginning with number `share`. */
struct XasShare {
    std::string at = {};
    unsigned every = 1;
    unsigned shares = 1;
    unsigned share = 0;
};

struct XasFaultsCount {
    unsigned calls =
        0; /**< between arrival and acknowledgement, those of children up to their programs included */
    unsigned kills = 0;
    unsigned errors = 0;
    unsigned signals = 0; /**< deaths of other daemons included */
    unsigned blocks = 0;
    unsigned violations = 0;
};

/** Tries the case and tells of each violation. */
XasFaultsCount xasTryCase(const XasFaultsCase &faultsCase, const XasShare &share,
                          const std::function<void(const std::string &)> &tell);

#endif
