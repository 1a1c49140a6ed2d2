/** What replacing files costs. */
#ifndef XAS_BENCH_FILES_BENCH_H
#define XAS_BENCH_FILES_BENCH_H

/** Prints its rows: one file of 1, 200 and 100,000 lines and the four of a host-name message, in memory and
 * on disk. */
void benchFileWork();

#endif
