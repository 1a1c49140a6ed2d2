#include "files/sync.h"

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace {

std::vector<std::string> touched;

void syncPath(const char *path, int flags)
{
    const int fd = ::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | flags);
    if (fd < 0)
        return;
    ::fsync(fd);
    ::close(fd);
}

} // namespace

void xasNoteTouched(const std::string &path)
{
    std::string directory = path.substr(0, path.find_last_of('/') + 1);
    if (directory.empty())
        directory = "./";
    if (std::ranges::find(touched, directory) == touched.end())
        touched.push_back(std::move(directory));
}

void xasSyncFile(const char *path)
{
    syncPath(path, 0);
    xasNoteTouched(path);
}

void xasSyncTouched()
{
    for (const std::string &directory : touched)
        syncPath(directory.c_str(), O_DIRECTORY);
    touched.clear();
}
