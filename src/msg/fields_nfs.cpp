/** XMSG_NFS: remote directories that the appliance mounts. */
#include "auth/nfs_payload.h"
#include "msg/fields_subjects.h"

namespace {

using enum XasFieldKind;

constexpr XasMsgGroup MOUNTS = {.name = "mount",
                                .place = XAS_PLACE(XasNfsPayload, mounts),
                                .stride = sizeof(XasNfsMount),
                                .meaning = "the remote directories"};

constexpr XasMsgField FIELDS[] = {
    {.name = "rem_dir",
     .place = XAS_PLACE(XasNfsPayload, mounts[0].rem_dir),
     .kind = text,
     .meaning = "remote directory: host, a colon, its path",
     .group = &MOUNTS},
    {.name = "local_dir",
     .place = XAS_PLACE(XasNfsPayload, mounts[0].local_dir),
     .kind = text,
     .meaning = "where it is mounted: a path that begins with / and is taken below /var/nfsmounts",
     .group = &MOUNTS},
    {.name = "read_write",
     .place = XAS_PLACE(XasNfsPayload, mounts[0].read_write),
     .kind = flag,
     .meaning = "the appliance may write there",
     .group = &MOUNTS},
    {.name = "mount",
     .place = XAS_PLACE(XasNfsPayload, mounts[0].mount),
     .kind = flag,
     .meaning = "it is mounted",
     .initial = "yes",
     .group = &MOUNTS},
};
static_assert(xasMsgFieldsAreSound(FIELDS));

} // namespace

const XasMsgFields XAS_NFS_FIELDS = {
    .msgtype = XMSG_NFS, .meaning = "remote directories that are mounted", .fields = FIELDS};
