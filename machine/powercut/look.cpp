#include "look.h"

#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <mtd/ubi-user.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <unistd.h>

namespace {

constexpr const char *DISK_PATH = "/dev/ram0";
constexpr const char *MOUNT_POINT = "/mnt/state";
constexpr int ALIGNED = 192;            // where UBI's second header is, as machine/init makes it
constexpr std::size_t PIECE = 64 << 10; // is compared and written as one

struct Guard {
    std::function<void()> atEnd;
    ~Guard() { atEnd(); }
};

[[noreturn]] void fail(const std::string &what)
{
    throw std::runtime_error{what + ": " + std::strerror(errno)};
}

XasTree readMounted(const char *device, const char *kind)
{
    if (::mount(device, MOUNT_POINT, kind, MS_NOATIME, "") != 0)
        fail("the file system cannot be mounted");
    const Guard guard{[] {
        if (::umount(MOUNT_POINT) != 0)
            std::abort();
    }};
    return xasReadTree(MOUNT_POINT);
}

XasTree readAttached()
{
    const int control = ::open("/dev/ubi_ctrl", O_RDONLY | O_CLOEXEC);
    ubi_attach_req request{};
    request.mtd_num = 0;
    request.vid_hdr_offset = ALIGNED;
    std::int32_t number = 0;
    const bool isAttached = ::ioctl(control, UBI_IOCATT, &request) == 0;
    const Guard guard{[&] {
        if (isAttached && ::ioctl(control, UBI_IOCDET, &number) != 0)
            std::abort();
        ::close(control);
    }};
    if (!isAttached)
        fail("the flash cannot be attached");
    return readMounted("ubi0:data", "ubifs");
}

} // namespace

XasDevice xasOpenDevice(const std::string &path, const XasMedium &medium)
{
    const int fd = ::open(path.c_str(), O_RDWR | O_CLOEXEC | (medium.isFlash ? 0 : O_DIRECT));
    if (fd < 0)
        fail("cannot open " + path);
    return {medium, fd};
}

void xasWriteDevice(const XasDevice &device, const std::string &content)
{
    alignas(4096) static char piece[PIECE];
    for (std::size_t place = 0; place < device.medium.end; place += PIECE) {
        if (::pread(device.fd, piece, PIECE, static_cast<off_t>(place)) != PIECE)
            fail("cannot read the device");
        if (std::memcmp(piece, content.data() + place, PIECE) == 0)
            continue;
        std::memcpy(piece, content.data() + place, PIECE);
        if (::pwrite(device.fd, piece, PIECE, static_cast<off_t>(place)) != PIECE)
            fail("cannot write the device");
    }
}

XasTree xasReadMounted(const XasDevice &device)
{
    return device.medium.isFlash ? readAttached() : readMounted(DISK_PATH, "ext4");
}
