#include "core/file.h"

#include "core/log.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::size_t CHUNK_SIZE = 16384;

/** 0; or what is wrong with the file, as errno has it. */
int complaintOf(int fd)
{
    struct stat status {};
    if (::fstat(fd, &status) != 0)
        return errno;
    if (S_ISDIR(status.st_mode))
        return 0;
    if (!S_ISREG(status.st_mode))
        return EINVAL;
    return status.st_size > static_cast<off_t>(XAS_FILE_MAX) ? EFBIG : 0;
}

/** The size of a file as it says itself; 0 when it does not know. */
std::size_t statedSize(int fd)
{
    struct stat status {};
    const bool isKnown = ::fstat(fd, &status) == 0 && S_ISREG(status.st_mode);
    return isKnown ? static_cast<std::size_t>(status.st_size) : 0;
}

} // namespace

XasFile xasOpenFile(const std::string &path)
{
    // A pipe that nobody writes to would be waited for at its opening.
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return nullptr;
    int complaint = complaintOf(fd);
    if (complaint == 0) {
        if (FILE *file = ::fdopen(fd, "r"))
            return XasFile{file};
        complaint = errno;
    }
    ::close(fd);
    errno = complaint;
    return nullptr;
}

std::optional<std::string> xasReadAll(FILE *file)
{
    const int fd = ::fileno(file);
    const std::size_t stated = statedSize(fd);
    std::string text(stated != 0 ? stated + 1 : CHUNK_SIZE, '\0'); // a longer one shows
    for (std::size_t size = 0;;) {
        if (size == text.size())
            text.resize(size + CHUNK_SIZE);
        const ssize_t got = ::read(fd, text.data() + size, text.size() - size);
        if (got < 0 && errno != EISDIR)
            return std::nullopt;
        size += static_cast<std::size_t>(std::max<ssize_t>(got, 0));
        if (size > XAS_FILE_MAX)
            return std::nullopt;
        if (got <= 0 || size == stated) {
            text.resize(size);
            return text;
        }
    }
}

XasReading xasReadWhole(const std::string &path, std::string &text)
{
    const XasFile file = xasOpenFile(path);
    if (!file)
        return XasReading::notOpened;
    std::optional<std::string> whole = xasReadAll(file.get());
    if (!whole) {
        xasLogError("Error reading config file \"%s\"\n", path.c_str());
        return XasReading::notRead;
    }
    text = std::move(*whole);
    return XasReading::whole;
}
