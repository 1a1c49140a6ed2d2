/** What the built daemon costs. */
#ifndef XAS_BENCH_DAEMON_BENCH_H
#define XAS_BENCH_DAEMON_BENCH_H

/** Prints its rows: start, messages, idleness and memory. */
void benchDaemon();

#endif
