/** The states that a disk or flash had, or could have had, when its power was cut. */
#ifndef XAS_POWERCUT_STATES_H
#define XAS_POWERCUT_STATES_H

#include "log.h"

#include <functional>

struct XasState {
    std::size_t number;
    const XasGroup *group;
    std::string how; // which of the group's writes are there, a character each; see xasForEachState
};

/**
 * Calls `look` with each state and the whole content in it, in the order of time.
 *
 * Of a disk: of every group of writes each beginning, also with half of its next write, when that has several
 * blocks; and, since the disk may write in another order, all other subsets of small groups; of larger ones
 * all but one write, one alone, and some chosen at random, the same at every run. 1 stands for a write that
 * is there, 0 for one that is not, h for its first half.
 *
 * Of a flash: each program and erase done (1), and cut: of a program the first half of what it changes (h),
 * or some of its bits, chosen at random (r); of an erase the first half of the block (h), or the last one
 * (l), or the block with all bits programmed, as a flash does first (z). Before the first one after a mark
 * nothing has changed but what is promised (0).
 *
 * `isWanted` spares the work for states that nobody looks at. Groups before the first message are only
 * applied.
 */
void xasForEachState(std::string content, const XasMedium &medium, const std::vector<XasGroup> &groups,
                     const std::function<bool(std::size_t)> &isWanted,
                     const std::function<void(const XasState &, const std::string &)> &look);

#endif
