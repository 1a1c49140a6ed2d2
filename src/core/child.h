/** Making a child process. */
#ifndef XAS_CORE_CHILD_H
#define XAS_CORE_CHILD_H

#include <sys/types.h>

/** What fork's caller tells by a child's exit status when a program could not be executed (_exit(-1)). */
inline constexpr int XAS_EXEC_FAILED = -1;

/** As fork, but the child begins with every signal at its default and none blocked, umask 022, and hands no
 * descriptor but the standard ones on to a program; a signal that arrives in between is never taken by the
 * parent's handlers in the child. */
pid_t xasFork();

#endif
