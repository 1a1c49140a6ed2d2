#include "support/faults.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <expat.h>
#include <fcntl.h>
#include <map>
#include <netdb.h>
#include <sched.h>
#include <stdexcept>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <sys/msg.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct Fault {
    int error;
    unsigned skip;
    unsigned times;
    unsigned calls = 0;
    std::string only = {}; /**< stands in what the call is about; empty: every call */
};

std::map<std::string, Fault, std::less<>> &faults()
{
    static std::map<std::string, Fault, std::less<>> active;
    return active;
}

/** Counts a call of `function`; true, and errno set, when it is to fail. */
bool fails(const char *function, std::string_view about = {})
{
    const auto found = faults().find(std::string_view{function});
    if (found == faults().end() || about.find(found->second.only) == std::string_view::npos)
        return false;
    Fault &fault = found->second;
    const unsigned number = fault.calls++;
    if (number < fault.skip || number - fault.skip >= fault.times)
        return false;
    errno = fault.error;
    return true;
}

std::vector<std::string> *callOrder = nullptr;

void note(const std::string &call)
{
    if (callOrder != nullptr)
        callOrder->push_back(call);
}

std::string pathOf(int fd)
{
    std::array<char, 4096> path{};
    const ssize_t size =
        ::readlink(("/proc/self/fd/" + std::to_string(fd)).c_str(), path.data(), path.size());
    return {path.data(), size > 0 ? static_cast<std::size_t>(size) : 0};
}

/** The C library's function behind one of those defined below. */
template <class Function>
Function *real(Function * /*own*/, const char *name)
{
    auto *const found = reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
    if (found == nullptr)
        std::abort();
    return found;
}

} // namespace

XasFault::XasFault(std::string_view function, int error, unsigned skip, unsigned times) : name{function}
{
    if (!faults().try_emplace(name, Fault{error, skip, times}).second)
        throw std::logic_error{"two faults of " + name};
}

XasFault::XasFault(std::string_view function, int error, std::string_view onlyRenames)
    : XasFault{function, error}
{
    faults().at(name).only = onlyRenames;
}

XasFault::~XasFault()
{
    faults().erase(name);
}

XasCallOrder::XasCallOrder()
{
    callOrder = &noted;
}

XasCallOrder::~XasCallOrder()
{
    callOrder = nullptr;
}

unsigned XasFault::calls() const
{
    return faults().at(name).calls;
}

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): the C library's names are reserved ones
extern "C" {

pid_t fork() noexcept
{
    return fails("fork") ? -1 : real(fork, "fork")();
}

pid_t waitpid(pid_t pid, int *status, int options)
{
    return fails("waitpid") ? -1 : real(waitpid, "waitpid")(pid, status, options);
}

int kill(pid_t pid, int signal) noexcept
{
    return fails("kill") ? -1 : real(kill, "kill")(pid, signal);
}

int sched_getparam(pid_t pid, sched_param *parameters) noexcept
{
    return fails("sched_getparam") ? -1 : real(sched_getparam, "sched_getparam")(pid, parameters);
}

int eventfd(unsigned count, int flags) noexcept
{
    return fails("eventfd") ? -1 : real(eventfd, "eventfd")(count, flags);
}

int msgget(key_t key, int flags) noexcept
{
    return fails("msgget") ? -1 : real(msgget, "msgget")(key, flags);
}

ssize_t msgrcv(int queue, void *record, std::size_t size, long type, int flags)
{
    return fails("msgrcv") ? -1 : real(msgrcv, "msgrcv")(queue, record, size, type, flags);
}

int msgsnd(int queue, const void *record, std::size_t size, int flags)
{
    note("msgsnd");
    return fails("msgsnd") ? -1 : real(msgsnd, "msgsnd")(queue, record, size, flags);
}

int socket(int domain, int type, int protocol) noexcept
{
    return fails("socket") ? -1 : real(socket, "socket")(domain, type, protocol);
}

int ioctl(int fd, unsigned long request, ...) noexcept
{
    va_list arguments;
    va_start(arguments, request);
    void *const argument = va_arg(arguments, void *);
    va_end(arguments);
    return fails("ioctl") ? -1 : real(ioctl, "ioctl")(fd, request, argument);
}

int rename(const char *from, const char *to) noexcept
{
    if (faults().empty() && callOrder == nullptr) // nothing that costs time: measurements run with this too
        return real(rename, "rename")(from, to);
    const std::string about = std::string{from}.append(" -> ").append(to);
    note("rename " + about);
    return fails("rename", about) ? -1 : real(rename, "rename")(from, to);
}

int link(const char *from, const char *to) noexcept
{
    return fails("link") ? -1 : real(link, "link")(from, to);
}

int unlink(const char *path) noexcept
{
    return fails("unlink") ? -1 : real(unlink, "unlink")(path);
}

int mkdir(const char *path, mode_t mode) noexcept
{
    return fails("mkdir") ? -1 : real(mkdir, "mkdir")(path, mode);
}

int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const auto mode = va_arg(arguments, mode_t);
    va_end(arguments);
    return fails("open") ? -1 : real(open, "open")(path, flags, mode);
}

/** What a fortified program calls instead. */
int __open_2(const char *path, int flags)
{
    return open(path, flags);
}

int fsync(int fd)
{
    if (callOrder != nullptr)
        note("fsync " + pathOf(fd));
    return fails("fsync") ? -1 : real(fsync, "fsync")(fd);
}

int close_range(unsigned first, unsigned last, int flags) noexcept
{
    return fails("close_range") ? -1 : real(close_range, "close_range")(first, last, flags);
}

int chmod(const char *path, mode_t mode) noexcept
{
    return fails("chmod") ? -1 : real(chmod, "chmod")(path, mode);
}

int fchmod(int fd, mode_t mode) noexcept
{
    return fails("fchmod") ? -1 : real(fchmod, "fchmod")(fd, mode);
}

int fchown(int fd, uid_t user, gid_t group) noexcept
{
    return fails("fchown") ? -1 : real(fchown, "fchown")(fd, user, group);
}

FILE *fopen(const char *path, const char *mode)
{
    return fails("fopen") ? nullptr : real(fopen, "fopen")(path, mode);
}

FILE *fdopen(int fd, const char *mode) noexcept
{
    return fails("fdopen") ? nullptr : real(fdopen, "fdopen")(fd, mode);
}

std::size_t fread(void *buffer, std::size_t size, std::size_t count, FILE *file)
{
    return fails("fread") ? 0 : real(fread, "fread")(buffer, size, count, file);
}

/** A failed read shows in the stream's state alone. */
int ferror(FILE *file) noexcept
{
    return fails("ferror") ? 1 : real(ferror, "ferror")(file);
}

std::size_t fwrite(const void *buffer, std::size_t size, std::size_t count, FILE *file)
{
    return fails("fwrite") ? 0 : real(fwrite, "fwrite")(buffer, size, count, file);
}

int fputs(const char *text, FILE *file)
{
    return fails("fputs") ? EOF : real(fputs, "fputs")(text, file);
}

int fflush(FILE *file)
{
    return fails("fflush") ? EOF : real(fflush, "fflush")(file);
}

pid_t setsid() noexcept
{
    return fails("setsid") ? -1 : real(setsid, "setsid")();
}

hostent *gethostbyname(const char *name)
{
    return fails("gethostbyname") ? nullptr : real(gethostbyname, "gethostbyname")(name);
}

const char *inet_ntop(int family, const void *address, char *text, socklen_t size) noexcept
{
    return fails("inet_ntop") ? nullptr : real(inet_ntop, "inet_ntop")(family, address, text, size);
}

XML_Parser XML_ParserCreate(const XML_Char *encoding)
{
    return fails("XML_ParserCreate") ? nullptr : real(XML_ParserCreate, "XML_ParserCreate")(encoding);
}
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
