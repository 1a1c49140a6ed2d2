#include "faults/tracee.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <elf.h>
#include <stdexcept>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <unistd.h>

namespace {

[[noreturn]] void giveUp(const char *what)
{
    if (errno == ESRCH)
        throw XasTraceeGone{what};
    throw std::runtime_error{std::string{what} + ": " + std::strerror(errno)};
}

user_regs_struct registersOf(pid_t pid)
{
    user_regs_struct registers{};
    if (::ptrace(PTRACE_GETREGS, pid, nullptr, &registers) != 0)
        giveUp("cannot read registers");
    return registers;
}

void setRegisters(pid_t pid, user_regs_struct registers)
{
    if (::ptrace(PTRACE_SETREGS, pid, nullptr, &registers) != 0)
        giveUp("cannot write registers");
}

/** The process ids in paths are others every time. */
std::string withoutPid(const std::string &path)
{
    constexpr std::string_view PROC = "/proc/";
    if (!path.starts_with(PROC))
        return path;
    const std::size_t end = path.find('/', PROC.size());
    return "/proc/N" + (end != std::string::npos ? path.substr(end) : "");
}

/** The first path that a call is about. */
std::string firstPath(pid_t pid, long number, const std::array<std::uint64_t, 6> &words)
{
    switch (number) {
    case SYS_rename:
    case SYS_link:
    case SYS_symlink:
    case SYS_open:
    case SYS_unlink:
    case SYS_mkdir:
    case SYS_chmod:
    case SYS_stat:
    case SYS_access:
    case SYS_readlink:
    case SYS_execve:
        return xasReadText(pid, words[0]);
    case SYS_openat:
    case SYS_newfstatat: {
        const std::string path = xasReadText(pid, words[1]);
        return path.empty() ? xasPathOf(pid, static_cast<int>(words[0])) : path;
    }
    case SYS_read:
    case SYS_write:
    case SYS_fsync:
    case SYS_close:
    case SYS_fstat:
    case SYS_fchmod:
    case SYS_fchown:
        return xasPathOf(pid, static_cast<int>(words[0]));
    default:
        return {};
    }
}

} // namespace

std::pair<std::string, std::string> xasPathsOf(pid_t pid, long number,
                                               const std::array<std::uint64_t, 6> &words)
{
    const bool hasTwo = number == SYS_rename || number == SYS_link || number == SYS_symlink;
    return {withoutPid(firstPath(pid, number, words)), hasTwo ? xasReadText(pid, words[1]) : ""};
}

XasCallStop xasCallStopOf(pid_t pid)
{
    __ptrace_syscall_info info{};
    if (::ptrace(PTRACE_GET_SYSCALL_INFO, pid, sizeof info, &info) <= 0)
        giveUp("cannot tell the call");
    XasCallStop stop{};
    stop.isEntry = info.op == PTRACE_SYSCALL_INFO_ENTRY;
    if (stop.isEntry) {
        stop.number = static_cast<long>(info.entry.nr);
        std::copy_n(info.entry.args, stop.words.size(), stop.words.begin());
    } else {
        stop.result = info.exit.rval;
    }
    return stop;
}

void xasSkipCall(pid_t pid)
{
    user_regs_struct registers = registersOf(pid);
    registers.orig_rax = ~0ULL;
    setRegisters(pid, registers);
}

void xasSetResult(pid_t pid, std::int64_t result)
{
    user_regs_struct registers = registersOf(pid);
    registers.rax = static_cast<unsigned long long>(result);
    setRegisters(pid, registers);
}

void xasSetFirstWord(pid_t pid, std::uint64_t word)
{
    user_regs_struct registers = registersOf(pid);
    registers.rdi = word;
    setRegisters(pid, registers);
}

void xasReadMemory(pid_t pid, std::uint64_t address, void *to, std::size_t size)
{
    const iovec here{.iov_base = to, .iov_len = size};
    const iovec there{.iov_base = reinterpret_cast<void *>(address), .iov_len = size}; // of the other process
    if (::process_vm_readv(pid, &here, 1, &there, 1, 0) != static_cast<ssize_t>(size))
        giveUp("cannot read memory");
}

void xasWriteMemory(pid_t pid, std::uint64_t address, const void *from, std::size_t size)
{
    const iovec here{.iov_base = const_cast<void *>(from), .iov_len = size}; // it is only read
    const iovec there{.iov_base = reinterpret_cast<void *>(address), .iov_len = size};
    if (::process_vm_writev(pid, &here, 1, &there, 1, 0) != static_cast<ssize_t>(size))
        giveUp("cannot write memory");
}

std::string xasReadText(pid_t pid, std::uint64_t address)
{
    constexpr std::size_t PIECE = 64;
    std::string text;
    while (text.size() < PATH_MAX) {
        const std::uint64_t at = address + text.size();
        std::array<char, PIECE> piece{};
        const std::size_t size = PIECE - at % PIECE; // never into a page that may not be there
        xasReadMemory(pid, at, piece.data(), size);
        const std::size_t length = ::strnlen(piece.data(), size);
        text.append(piece.data(), length);
        if (length < size)
            break;
    }
    return text;
}

std::string xasPathOf(pid_t pid, int fd)
{
    std::array<char, PATH_MAX> path{};
    const std::string link = "/proc/" + std::to_string(pid) + "/fd/" + std::to_string(fd);
    const ssize_t size = ::readlink(link.c_str(), path.data(), path.size());
    const std::string target{path.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0))};
    return target.substr(0, target.find(":[")); // the numbers of sockets are others every time
}

void xasHideKernelClock(pid_t pid)
{
    constexpr std::uint64_t WORD = sizeof(std::uint64_t);
    std::uint64_t at = registersOf(pid).rsp;
    at += WORD * (xasReadValue<std::uint64_t>(pid, at) + 2); // the count, the arguments, their end
    while (xasReadValue<std::uint64_t>(pid, at) != 0)
        at += WORD; // the environment
    for (at += WORD;; at += 2 * WORD) {
        const auto type = xasReadValue<std::uint64_t>(pid, at);
        if (type == AT_NULL)
            return;
        if (type == AT_SYSINFO_EHDR) {
            constexpr std::uint64_t IGNORED = AT_IGNORE;
            xasWriteMemory(pid, at, &IGNORED, WORD);
        }
    }
}
