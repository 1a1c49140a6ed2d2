/** The processor time of a process. */
#ifndef XAS_BENCH_PROCESSOR_H
#define XAS_BENCH_PROCESSOR_H

#include <ctime>
#include <stdexcept>
#include <sys/types.h>

/** In seconds, of all its threads, its children not counted. */
inline double benchProcessorSeconds(pid_t pid)
{
    clockid_t clock{};
    timespec used{};
    if (::clock_getcpuclockid(pid, &clock) != 0 || ::clock_gettime(clock, &used) != 0)
        throw std::runtime_error{"no processor time"};
    return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1e-9;
}

#endif
