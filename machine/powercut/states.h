/** The states that a disk had, or could have had, when its power was cut. */
#ifndef XAS_POWERCUT_STATES_H
#define XAS_POWERCUT_STATES_H

#include "log.h"

#include <functional>

struct XasState {
    std::size_t number;
    const XasGroup *group;
    std::string
        how; // which of the group's writes are there, a character each: 1 there, 0 not, h its first half
};

/**
 * Calls `look` with each state and the disk's content in it, in the order of time: of every group of writes
 * each beginning, also with half of its next write, when that has several blocks; and, since the disk may
 * write in another order, all other subsets of small groups; of larger ones all but one write, one alone, and
 * some chosen at random, the same at every run. `isWanted` spares the work for states that nobody looks at.
 * Groups before the first message are only applied.
 */
void xasForEachState(std::string disk, const std::vector<XasGroup> &groups,
                     const std::function<bool(std::size_t)> &isWanted,
                     const std::function<void(const XasState &, const std::string &)> &look);

#endif
