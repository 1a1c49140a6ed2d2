/** Whether a line costs an editor the same however long the file is. */
#ifndef XAS_BENCH_GROWTH_BENCH_H
#define XAS_BENCH_GROWTH_BENCH_H

/** Prints a table of its own. */
void benchGrowth();

#endif
