/** A device that takes one state after the other, is mounted and looked at. */
#ifndef XAS_POWERCUT_LOOK_H
#define XAS_POWERCUT_LOOK_H

#include "log.h"
#include "versions.h"

#include <string>

/** A memory disk, or a flash in memory: /dev/mtd0. */
struct XasDevice {
    XasMedium medium;
    int fd;
};

/** Throws std::runtime_error when it cannot be opened. */
XasDevice xasOpenDevice(const std::string &path, const XasMedium &medium);

/** Brings the device into a state. Mounting the last one has changed some of it: only what differs is
 * written. */
void xasWriteDevice(const XasDevice &device, const std::string &content);

/** Mounts it read and write, so that the kernel repairs what it can, and reads its files; what cannot be done
 * is thrown as std::runtime_error. */
XasTree xasReadMounted(const XasDevice &device);

#endif
