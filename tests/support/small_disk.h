/** A disk that is soon full, for the private root. */
#ifndef XAS_TEST_SUPPORT_SMALL_DISK_H
#define XAS_TEST_SUPPORT_SMALL_DISK_H

#include "support/files.h"

#include <sys/mount.h>

/**
 * Takes two files of at most 4096 bytes. With one of them on it, writing the other fails with "no space left"
 * at the line that goes past its 4096th byte.
 */
class XasSmallDisk {
  public:
    static constexpr std::size_t FILE_SIZE = 4096;

    XasSmallDisk()
    {
        if (::mount("tmpfs", dir.path().c_str(), "tmpfs", 0, "size=8192") != 0)
            throw std::runtime_error{"cannot mount a small disk"};
    }
    ~XasSmallDisk() { ::umount2(dir.path().c_str(), MNT_DETACH); }
    XasSmallDisk(const XasSmallDisk &) = delete;
    XasSmallDisk &operator=(const XasSmallDisk &) = delete;

    /** Writes `name` there and returns its path. */
    std::string write(std::string_view name, std::string_view text) const { return dir.write(name, text); }
    [[nodiscard]] std::string path(std::string_view name) const { return dir.path(name); }
    [[nodiscard]] std::string read(std::string_view name) const { return dir.read(name); }
    [[nodiscard]] bool has(std::string_view name) const { return dir.has(name); }

  private:
    XasTestDir dir;
};

#endif
