/** The payload of XMSG_NFS: up to three remote directories to mount. */
#ifndef XAS_AUTH_NFS_PAYLOAD_H
#define XAS_AUTH_NFS_PAYLOAD_H

#include "wire/message.h"

struct XasNfsMount {
    char rem_dir[129];        /**< host, ":", path */
    char local_dir[131];      /**< below "/var/nfsmounts" */
    std::uint32_t read_write; /**< zero: read-only */
    std::uint32_t mount;      /**< non-zero: in use */
};

static_assert(sizeof(XasNfsMount) == 268);
static_assert(offsetof(XasNfsMount, local_dir) == 129);
static_assert(offsetof(XasNfsMount, read_write) == 260 && offsetof(XasNfsMount, mount) == 264);

inline constexpr std::size_t XAS_NFS_MOUNTS = 3;

struct XasNfsPayload {
    XasNfsMount mounts[XAS_NFS_MOUNTS];
};

static_assert(offsetof(XasNfsPayload, mounts[1]) + XAS_PAYLOAD_OFFSET == 388);
static_assert(offsetof(XasNfsPayload, mounts[2]) + XAS_PAYLOAD_OFFSET == 656);

#endif
