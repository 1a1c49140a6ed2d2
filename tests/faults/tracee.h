/** One process stopped under ptrace: its registers and its memory. Of x86-64 alone. */
#ifndef XAS_TEST_FAULTS_TRACEE_H
#define XAS_TEST_FAULTS_TRACEE_H

#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <sys/types.h>
#include <utility>

/** The process was stopped, and killed before all was asked of it. It is still to be waited for. */
class XasTraceeGone : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/** A system call at which a process is stopped: before it or behind it. */
struct XasCallStop {
    bool isEntry;
    long number;                        /**< at the entry */
    std::array<std::uint64_t, 6> words; /**< its arguments, at the entry */
    std::int64_t result;                /**< behind it; negative: an error */
};

XasCallStop xasCallStopOf(pid_t pid);

/** Keeps the call at whose entry the process is stopped from being made. */
void xasSkipCall(pid_t pid);

/** Sets what the call gives behind which the process is stopped. */
void xasSetResult(pid_t pid, std::int64_t result);

/** Sets the first argument of the call at whose entry the process is stopped. */
void xasSetFirstWord(pid_t pid, std::uint64_t word);

void xasReadMemory(pid_t pid, std::uint64_t address, void *to, std::size_t size);
void xasWriteMemory(pid_t pid, std::uint64_t address, const void *from, std::size_t size);

template <class T>
T xasReadValue(pid_t pid, std::uint64_t address)
{
    T value{};
    xasReadMemory(pid, address, &value, sizeof value);
    return value;
}

/** A text of the process, as far as 4096 bytes. */
std::string xasReadText(pid_t pid, std::uint64_t address);

/** The one or two paths that the call is about at whose entry the process is stopped. */
std::pair<std::string, std::string> xasPathsOf(pid_t pid, long number,
                                               const std::array<std::uint64_t, 6> &words);

/** What a descriptor of the process leads to. */
std::string xasPathOf(pid_t pid, int fd);

/** To be called when a program has just been executed: it asks the kernel for the time instead of reading it.
 */
void xasHideKernelClock(pid_t pid);

#endif
