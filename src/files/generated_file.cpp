#include "files/generated_file.h"

#include "core/log.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr mode_t PLAIN_MODE = 0644;
constexpr mode_t SECRET_MODE = 0600;

/** A descriptor of a file, and whether the file was made for it. */
struct Opened {
    int fd;
    bool isNew;
};

/** A new file is 0600 until its mode is set. */
Opened openOrMake(const std::string &path, int flags)
{
    const int fd = ::open(path.c_str(), flags | O_WRONLY | O_CLOEXEC, 0);
    if (fd >= 0 || errno != ENOENT)
        return {fd, false};
    return {::open(path.c_str(), flags | O_WRONLY | O_CLOEXEC | O_CREAT, SECRET_MODE), true};
}

/** True for what has a mode and a content of its own; a device is written as it is. */
bool isRegular(int fd)
{
    struct stat status {};
    return ::fstat(fd, &status) == 0 && S_ISREG(status.st_mode);
}

/** A secret file is closed to others before it is emptied and filled; an open one is emptied before. */
bool setModeAndEmpty(const Opened &opened, XasFileAccess access)
{
    if (!isRegular(opened.fd))
        return true;
    if (access == XasFileAccess::owner && ::fchmod(opened.fd, SECRET_MODE) != 0)
        return false;
    if (::ftruncate(opened.fd, 0) != 0)
        return false;
    if (access == XasFileAccess::everybody || (access == XasFileAccess::kept && opened.isNew))
        ::fchmod(opened.fd, PLAIN_MODE);
    return true;
}

XasFile streamOf(int fd, const char *mode)
{
    XasFile file{::fdopen(fd, mode)};
    if (!file)
        ::close(fd);
    return file;
}

} // namespace

XasFile xasOpenGeneratedFile(const std::string &path, XasFileAccess access, XasFileLink link)
{
    const Opened opened = openOrMake(path, link == XasFileLink::refused ? O_NOFOLLOW : 0);
    if (opened.fd < 0)
        return nullptr;
    if (!setModeAndEmpty(opened, access)) {
        ::close(opened.fd);
        return nullptr;
    }
    return streamOf(opened.fd, "w");
}

XasFile xasOpenGrowingFile(const std::string &path, XasFileAccess access)
{
    const Opened opened = openOrMake(path, O_APPEND);
    if (opened.fd < 0)
        return nullptr;
    const bool isSecret = access == XasFileAccess::owner;
    if ((opened.isNew || isSecret) && ::fchmod(opened.fd, isSecret ? SECRET_MODE : PLAIN_MODE) != 0) {
        ::close(opened.fd);
        return nullptr;
    }
    return streamOf(opened.fd, "a");
}

bool xasWriteGenerated(FILE *file, std::string_view text)
{
    return std::fwrite(text.data(), 1, text.size(), file) == text.size() && std::fflush(file) == 0;
}

bool xasCloseGenerated(XasFile file)
{
    return std::fclose(file.release()) == 0;
}

int xasGenerateFile(const std::string &path, std::string_view text, XasFileAccess access, XasFileLink link)
{
    XasFile file = xasOpenGeneratedFile(path, access, link);
    if (!file)
        return xasLogFailure("Error opening config file \"%s\"\n", path.c_str());
    const bool written = xasWriteGenerated(file.get(), text);
    if (!xasCloseGenerated(std::move(file)) || !written)
        return xasLogFailure("Error printing line to file\n");
    return 0;
}
