/** What a setting does without: files whose failure is none of its message, by agreement with whoever sends
 * it. */
#ifndef XAS_TEST_FAULTS_TOLERATED_H
#define XAS_TEST_FAULTS_TOLERATED_H

#include "faults/file_checks.h"

/** Files that need not be new although the message was applied when a call or a block of memory failed. */
XasIgnored xasToleratedWhenApplied(const XasUndisturbed &undisturbed, const XasCut &cut);

/** Files that need be neither old nor new: they are derived from others, one of which could not be read. */
XasIgnored xasToleratedWhenUnread(const XasUndisturbed &undisturbed, const XasCut &cut);

/** Whether a daemon's command line may be another one: it follows from a file that could not be looked at. */
bool xasMayRunOtherwise(const XasUndisturbed &undisturbed, const XasCut &cut);

#endif
