/** The payload of XMSG_NFS: up to three remote directories to mount. */
#ifndef XAS_AUTH_NFS_MESSAGE_H
#define XAS_AUTH_NFS_MESSAGE_H

#include "wire/field.h"

struct XasNfsMount {
    char rem_dir[129];        /**< host, ":", path */
    char local_dir[131];      /**< below "/var/nfsmounts" */
    std::uint32_t read_write; /**< zero: read-only */
    std::uint32_t mount;      /**< non-zero: in use */
};

inline constexpr std::size_t XAS_NFS_MOUNTS = 3;

struct XasNfsPayload {
    XasNfsMount mounts[XAS_NFS_MOUNTS];
};

namespace xasNfsFields {

inline constexpr XasMsgGroup MOUNTS = XAS_GROUP("mount", XasNfsPayload, mounts, "the remote directories");

inline bool isMounted(const XasMessage &msg, std::size_t mount)
{
    return xasReadPayload<XasNfsPayload>(msg).mounts[mount].mount != 0;
}

inline constexpr XasMsgField FIELDS[] = {
    XAS_FIELD_OF(XasNfsPayload, mounts[0], rem_dir, text, "remote directory: host, a colon, its path")
        .readIf(isMounted)
        .in(MOUNTS),
    XAS_FIELD_OF(XasNfsPayload, mounts[0], local_dir, text,
                 "where it is mounted: a path that begins with / and is taken below /var/nfsmounts")
        .holding(XasTextRule::path)
        .readIf(isMounted)
        .in(MOUNTS),
    XAS_FIELD_OF(XasNfsPayload, mounts[0], read_write, flag, "the appliance may write there").in(MOUNTS),
    XAS_FIELD_OF(XasNfsPayload, mounts[0], mount, flag, "it is mounted").byDefault("yes").in(MOUNTS),
};
static_assert(xasFieldsAreSound<XasNfsPayload>(FIELDS));

} // namespace xasNfsFields

inline constexpr XasMsgFields XAS_NFS_MESSAGE = {
    .msgtype = XMSG_NFS, .meaning = "remote directories that are mounted", .fields = xasNfsFields::FIELDS};

#endif
