/** Counts what the program allocates. */
#ifndef XAS_BENCH_ALLOCATIONS_H
#define XAS_BENCH_ALLOCATIONS_H

/** Calls of malloc so far, those of operator new included. */
unsigned long allocationsSoFar();

#endif
