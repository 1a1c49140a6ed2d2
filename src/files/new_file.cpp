#include "files/new_file.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t PLAIN_MODE = 0644;
constexpr mode_t SECRET_MODE = 0600;
constexpr mode_t PERMISSION_BITS = 07777;

int createExclusively(const char *path)
{
    constexpr int FLAGS = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    int fd = ::open(path, FLAGS, SECRET_MODE);
    if (fd < 0 && errno == EEXIST && ::unlink(path) == 0)
        fd = ::open(path, FLAGS, SECRET_MODE);
    return fd;
}

/** True for the error of a medium that knows no modes. */
bool hasNoModes(int error)
{
    return error == EPERM || error == EOPNOTSUPP || error == ENOSYS;
}

/** False when the mode cannot be had: a file that holds a secret may be open to others then, and any other
 * one closed to those who read it. */
bool setOwnerAndMode(int fd, const std::string &live, XasFileAccess access)
{
    mode_t mode = access == XasFileAccess::owner ? SECRET_MODE : PLAIN_MODE;
    struct stat status {};
    if (::stat(live.c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
        // Where the owner cannot be kept (no privilege for it), the content still must be replaced.
        [[maybe_unused]] const int owned = ::fchown(fd, status.st_uid, status.st_gid);
        if (access == XasFileAccess::kept)
            mode = status.st_mode & PERMISSION_BITS;
    }
    return ::fchmod(fd, mode) == 0 || (access != XasFileAccess::owner && hasNoModes(errno));
}

XasFile streamOf(int fd, const char *mode)
{
    XasFile file{::fdopen(fd, mode)};
    if (!file)
        ::close(fd);
    return file;
}

} // namespace

XasFile xasCreateFile(const std::string &path, const std::string &live, XasFileAccess access)
{
    const int fd = createExclusively(path.c_str());
    if (fd < 0)
        return nullptr;
    XasFile file = streamOf(fd, "w");
    if (file && !setOwnerAndMode(fd, live, access))
        file.reset();
    if (!file)
        ::unlink(path.c_str());
    return file;
}

std::size_t xasWriteText(FILE *file, std::string_view text)
{
    std::size_t written = 0;
    while (written < text.size()) {
        const std::string_view rest = text.substr(written);
        const ssize_t count = ::write(::fileno(file), rest.data(), rest.size());
        if (count <= 0)
            break;
        written += static_cast<std::size_t>(count);
    }
    return written;
}

bool xasCloseWritten(XasFile &file)
{
    if (!file)
        return true;
    bool isKept = std::fflush(file.get()) == 0 && std::ferror(file.get()) == 0;
    // A medium that knows no syncing counts as synced.
    if (isKept && ::fsync(::fileno(file.get())) != 0)
        isKept = errno == EINVAL || errno == ENOTSUP;
    return std::fclose(file.release()) == 0 && isKept;
}

int xasMakeWorkingFile(const std::string &path, std::string_view text)
{
    XasFile file = xasCreateFile(path, path, XasFileAccess::everybody);
    if (!file)
        return 1;
    const bool isWritten = xasWriteText(file.get(), text) == text.size();
    return std::fclose(file.release()) == 0 && isWritten ? 0 : 1;
}

XasFile xasOpenWorkingFile(const std::string &path)
{
    const int fd = ::open(path.c_str(), O_WRONLY | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return nullptr;
    struct stat status {};
    const bool isOurs = ::fstat(fd, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1 &&
                        status.st_uid == ::geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
    if (!isOurs) {
        ::close(fd);
        return nullptr;
    }
    return streamOf(fd, "a");
}
