/** The least that a safe replacement of a file can cost, in C: what the daemon is measured beside. */
#ifndef XAS_BENCH_LEAST_H
#define XAS_BENCH_LEAST_H

#ifdef __cplusplus
extern "C" {
#endif

/** Gives a file another first line, as safely as the daemon does: the new content beside it, synced, with the
 * mode and the owner of the old one; the old content as "<path>.old"; one rename. Returns 0, or 1. */
int leastReplace(const char *path, const char *firstLine);

/** Syncs a directory. */
int leastSync(const char *directory);

#ifdef __cplusplus
}
#endif

#endif
