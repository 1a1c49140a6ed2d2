/**
 * Remote directories: their lines in the file-system table (fstab(5)), the one-line list of their servers,
 * and their mount points below "/var/nfsmounts".
 */
#ifndef XAS_AUTH_NFS_H
#define XAS_AUTH_NFS_H

#include "auth/nfs_message.h"
#include "files/update.h"
#include "wire/address.h"

#include <array>
#include <string>
#include <string_view>

/** A remote directory as it is mounted. */
struct XasNfsShare {
    std::string remote; /**< host, ":", path */
    std::string local;  /**< the mount point's whole path */
    bool readWrite = false;
    bool used = false;
};
using XasNfsShares = std::array<XasNfsShare, XAS_NFS_MOUNTS>;

/** Where a share has no server its address is none. */
using XasNfsServers = std::array<XasIPv4, XAS_NFS_MOUNTS>;

/** The longest line of a share in the file-system table, line feed included. */
inline constexpr std::size_t XAS_NFS_LINE_MAX = 307;

/** The list of servers: each address once. */
std::string xasNfsServersText(const XasNfsServers &servers);

/**
 * The new file-system table: its old shares are dropped, those in use appended. A line that is too long is
 * left out, logged and named in `reply`; a share without a path is logged, and those behind it are skipped.
 */
std::string xasFstabText(std::string_view oldText, const XasNfsShares &shares, XasReplyStatus *reply);

/** The editors. The files must exist. */
extern const XasEditor<XasNfsServers> xasEditNFSServersFile;
extern const XasEditor<XasNfsShares> xasEditNFSCfgFile;

/** Its files; running them only looks them up. */
extern const XasFilesUpdate xasNfsFiles;

/** The handler of XMSG_NFS. A failed file ends it; nothing is rolled back. */
[[nodiscard]] int xasUpdateNFSCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

#endif
