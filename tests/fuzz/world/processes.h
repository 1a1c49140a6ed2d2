/**
 * Processes that are recorded instead of run, inside one process. fork() returns twice, as ever: first 0, for
 * what the child does up to its exec or _exit, then, with the stack as it was, the child's pid. What the
 * child would have executed is handed to whoever decides what becomes of it. Until xasFakeProcesses() is
 * called everything is real.
 *
 * What the child allocates is forgotten with it. A signal goes to processes of ours alone: one to any other
 * ends the program.
 */
#ifndef XAS_FUZZ_WORLD_PROCESSES_H
#define XAS_FUZZ_WORLD_PROCESSES_H

#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

/** The wait status with which it ends at once; none: it lives. */
using XasFate = std::optional<int>;

/** Decides what becomes of a program that is executed. A shell's words are "sh", "-c" and the line. */
using XasExecute = std::function<XasFate(pid_t pid, const std::vector<std::string> &words)>;

/** From now on. Forgets all earlier processes. */
void xasFakeProcesses(XasExecute execute);

/** The place on the stack above everything that forks: of the function that calls the daemon's. */
void xasSetStackBase(void *base);

/** A living process ends; SIGCHLD is raised. */
void xasEndProcess(pid_t pid, int status);

bool xasIsLiving(pid_t pid);
std::vector<pid_t> xasLivingProcesses();

/** How many ended ones have not been collected. */
std::size_t xasZombies();

/** A living process lets the next SIGTERM pass. */
void xasIgnoreNextTerm(pid_t pid);

#endif
