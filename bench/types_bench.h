/** Every message type on the built daemon: what its answer takes, and what of it is not the work on its
 * files. */
#ifndef XAS_BENCH_TYPES_BENCH_H
#define XAS_BENCH_TYPES_BENCH_H

/** Measures and prints a row for each setting. */
void benchTypes();

#endif
