// The fields of XMSG_NFS.
#include "msg/fields.h"

#include "msg/values.h"
#include "support/fields.h"

TEST(NfsFields, ThereAreThreeMounts)
{
    EXPECT_FALSE(xasFindField(*msgFieldsOf(XMSG_NFS), "mount0.rem_dir"));
    EXPECT_FALSE(xasFindField(*msgFieldsOf(XMSG_NFS), "mount4.rem_dir"));
}

TEST(NfsFields, StandWhereTheHandlerReadsThem)
{
    xasExpectFields(XMSG_NFS, {{"mount1.rem_dir", 120, 129},
                               {"mount1.local_dir", 249, 131},
                               {"mount1.read_write", 380, 4},
                               {"mount1.mount", 384, 4},
                               {"mount2.rem_dir", 388, 129},
                               {"mount2.local_dir", 517, 131},
                               {"mount2.read_write", 648, 4},
                               {"mount2.mount", 652, 4},
                               {"mount3.rem_dir", 656, 129},
                               {"mount3.local_dir", 785, 131},
                               {"mount3.read_write", 916, 4},
                               {"mount3.mount", 920, 4}});
}

TEST(NfsFields, NothingIsMountedUntilItIsNamed)
{
    xasExpectDefaults(XMSG_NFS, {{"mount1.rem_dir", ""},
                                 {"mount1.local_dir", ""},
                                 {"mount1.read_write", "no"},
                                 {"mount1.mount", "no"},
                                 {"mount2.rem_dir", ""},
                                 {"mount2.local_dir", ""},
                                 {"mount2.read_write", "no"},
                                 {"mount2.mount", "no"},
                                 {"mount3.rem_dir", ""},
                                 {"mount3.local_dir", ""},
                                 {"mount3.read_write", "no"},
                                 {"mount3.mount", "no"}});
}

TEST(NfsFields, AMountThatIsNamedIsMountedReadOnly)
{
    XasMessage record{};
    const auto bytes = std::as_writable_bytes(std::span{&record, 1});
    const XasMsgFields &nfs = *msgFieldsOf(XMSG_NFS);
    const XasMsgFieldAt mount = *xasFindField(nfs, "mount2.mount");
    msgSetElementDefaults(bytes, nfs, *mount.field->group, 1);
    EXPECT_EQ(msgValueText(bytes, mount), "yes");
    EXPECT_EQ(msgValueText(bytes, *xasFindField(nfs, "mount2.read_write")), "no");
    EXPECT_EQ(msgValueText(bytes, *xasFindField(nfs, "mount1.mount")), "no");
    EXPECT_EQ(msgValueText(bytes, *xasFindField(nfs, "mount3.mount")), "no");
}
