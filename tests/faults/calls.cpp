#include "faults/calls.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <sys/syscall.h>

namespace {

constexpr int OPENING[] = {EIO, ENOSPC, EINTR, ENOMEM, EMFILE, EACCES};
constexpr int LOOKING[] = {EIO, ENOMEM, EACCES};
constexpr int READING[] = {EIO, EINTR, ENOMEM};
constexpr int WRITING[] = {EIO, ENOSPC, EINTR, ENOMEM};
constexpr int SYNCING[] = {EIO, ENOSPC, EINTR};
constexpr int CLOSING[] = {EIO, ENOSPC, EINTR};
constexpr int NAMING[] = {EIO, ENOSPC, ENOMEM, EACCES};
constexpr int OWNING[] = {EIO, ENOMEM, EACCES};
constexpr int MAPPING[] = {ENOMEM};
constexpr int FORKING[] = {ENOMEM, EAGAIN};
constexpr int EXECUTING[] = {EIO, ENOMEM, EMFILE, EACCES};
constexpr int WAITING[] = {EINTR};
constexpr int POLLING[] = {EINTR, ENOMEM};
constexpr int CONNECTING[] = {ENOMEM, EMFILE, EACCES};
constexpr int SENDING[] = {EINTR, ENOMEM, EACCES};
constexpr int RECEIVING[] = {EINTR, EACCES};
constexpr int QUEUEING[] = {ENOMEM, EACCES};
constexpr int SIGNALLING[] = {EACCES};
constexpr int CONTROLLING[] = {EIO, ENOMEM};

struct Call {
    long number;
    const char *name;
    std::span<const int> errors;
};

constexpr Call CALLS[] = {
    {SYS_openat, "openat", OPENING},
    {SYS_newfstatat, "newfstatat", LOOKING},
    {SYS_faccessat, "faccessat", LOOKING},
    {SYS_readlinkat, "readlinkat", LOOKING},
    {SYS_getdents64, "getdents64", LOOKING},
    {SYS_fstat, "fstat", LOOKING},
    {SYS_read, "read", READING},
    {SYS_write, "write", WRITING},
    {SYS_fsync, "fsync", SYNCING},
    {SYS_close, "close", CLOSING},
    {SYS_renameat2, "renameat2", NAMING},
    {SYS_linkat, "linkat", NAMING},
    {SYS_unlinkat, "unlinkat", NAMING},
    {SYS_symlinkat, "symlinkat", NAMING},
    {SYS_mkdirat, "mkdirat", NAMING},
    {SYS_fchmod, "fchmod", OWNING},
    {SYS_fchmodat, "fchmodat", OWNING},
    {SYS_fchown, "fchown", OWNING},
    {SYS_mmap, "mmap", MAPPING},
    {SYS_mremap, "mremap", MAPPING},
    {SYS_brk, "brk", MAPPING},
    {SYS_clone, "clone", FORKING},
    {SYS_execve, "execve", EXECUTING},
    {SYS_wait4, "wait4", WAITING},
    {SYS_ppoll, "ppoll", POLLING},
    {SYS_socket, "socket", CONNECTING},
    {SYS_connect, "connect", CONNECTING},
    {SYS_sendto, "sendto", SENDING},
    {SYS_msgrcv, "msgrcv", RECEIVING},
    {SYS_msgsnd, "msgsnd", QUEUEING},
    {SYS_kill, "kill", SIGNALLING},
    {SYS_ioctl, "ioctl", CONTROLLING},
    {SYS_fcntl, "fcntl", {}},
    {SYS_lseek, "lseek", {}},
    {SYS_munmap, "munmap", {}},
    {SYS_umask, "umask", {}},
    {SYS_getpid, "getpid", {}},
    {SYS_getpgid, "getpgid", {}},
    {SYS_exit_group, "exit_group", {}},
    {SYS_close_range, "close_range", {}},
    {SYS_set_robust_list, "set_robust_list", {}},
    {SYS_rt_sigaction, "rt_sigaction", {}},
    {SYS_rt_sigprocmask, "rt_sigprocmask", {}},
    {SYS_rt_sigreturn, "rt_sigreturn", {}},
    {SYS_sched_getparam, "sched_getparam", {}},
    {SYS_clock_gettime, "clock_gettime", {}},
    {SYS_gettimeofday, "gettimeofday", {}},
#ifdef __x86_64__ // newer machines have the ones above alone
    {SYS_open, "open", OPENING},
    {SYS_stat, "stat", LOOKING},
    {SYS_lstat, "lstat", LOOKING},
    {SYS_access, "access", LOOKING},
    {SYS_readlink, "readlink", LOOKING},
    {SYS_rename, "rename", NAMING},
    {SYS_link, "link", NAMING},
    {SYS_unlink, "unlink", NAMING},
    {SYS_symlink, "symlink", NAMING},
    {SYS_mkdir, "mkdir", NAMING},
    {SYS_chmod, "chmod", OWNING},
    {SYS_getpgrp, "getpgrp", {}},
    {SYS_time, "time", {}},
#endif
};

const Call *find(long number)
{
    const auto *const found = std::ranges::find(CALLS, number, &Call::number);
    return found != std::end(CALLS) ? found : nullptr;
}

} // namespace

std::string xasCallName(long number)
{
    const Call *call = find(number);
    return call != nullptr ? call->name : "call " + std::to_string(number);
}

std::span<const int> xasPlausibleErrors(long number)
{
    const Call *call = find(number);
    return call != nullptr ? call->errors : std::span<const int>{};
}

std::string xasErrorName(int error)
{
    const char *name = ::strerrorname_np(error);
    return name != nullptr ? name : std::to_string(error);
}
