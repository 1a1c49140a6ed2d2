#include "support/log.h"

#include <cstdarg>
#include <cstdio>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

/** Where lines go: a file without a name that forked children share. A record is priority, length, text. */
int logFd()
{
    static const int fd = [] {
        const int made = ::memfd_create("xas-test-log", MFD_CLOEXEC);
        if (made < 0 || ::fcntl(made, F_SETFL, O_APPEND) != 0)
            throw std::runtime_error{"cannot make the log"};
        return made;
    }();
    return fd;
}

struct RecordHead {
    int priority;
    std::size_t length;
};

off_t logEnd()
{
    struct stat status {};
    ::fstat(logFd(), &status);
    return status.st_size;
}

void appendLine(int priority, const char *format, va_list arguments)
{
    std::array<char, 8192> text{};
    const int length = std::vsnprintf(text.data(), text.size(), format, arguments);
    RecordHead head{priority, std::min(static_cast<std::size_t>(std::max(length, 0)), text.size() - 1)};
    // Without any memory, which a test may have made run out.
    const std::array<iovec, 2> record{iovec{&head, sizeof head}, iovec{text.data(), head.length}};
    if (::writev(logFd(), record.data(), record.size()) < 0)
        ::abort();
}

std::optional<XasOpenedLog> &openedLog()
{
    static std::optional<XasOpenedLog> opened;
    return opened;
}

} // namespace

extern "C" {

void syslog(int priority, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    appendLine(priority, format, arguments);
    va_end(arguments);
}

/** What a fortified program calls instead. */
void __syslog_chk(int priority, int /*flag*/, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    appendLine(priority, format, arguments);
    va_end(arguments);
}

void vsyslog(int priority, const char *format, va_list arguments)
{
    appendLine(priority, format, arguments);
}

void openlog(const char *ident, int option, int facility)
{
    openedLog() = XasOpenedLog{ident, option, facility};
}
}

std::optional<XasOpenedLog> xasOpenedLog()
{
    return openedLog();
}

XasLogCapture::XasLogCapture() : from{logEnd()} {}

std::vector<XasLogLine> XasLogCapture::lines() const
{
    std::string log(static_cast<std::size_t>(logEnd() - from), '\0');
    if (::pread(logFd(), log.data(), log.size(), from) != static_cast<ssize_t>(log.size()))
        throw std::runtime_error{"cannot read the log"};
    std::vector<XasLogLine> found;
    for (std::size_t at = 0; at < log.size();) {
        RecordHead head{};
        std::memcpy(&head, log.data() + at, sizeof head);
        found.push_back({head.priority, log.substr(at + sizeof head, head.length)});
        at += sizeof head + head.length;
    }
    return found;
}

std::vector<XasLogLine> XasLogCapture::take()
{
    std::vector<XasLogLine> found = lines();
    from = logEnd();
    return found;
}
