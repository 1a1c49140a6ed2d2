// The handler of XMSG_NFS: order of work, failures, what is left how, and when the mounts are made again.
#include "auth/nfs.h"

#include "support/reply.h"
#include "support/share_files.h"

namespace {

const XasLogLine NO_HOST = xasWarningLine("Error extracting host from NFS remote path\n");
const XasLogLine NO_ADDRESS = xasWarningLine("Error determining NFS server network address\n");

/** A message that mounts these, read-only. */
XasMessageBuilder nfsMessage(const std::vector<std::pair<std::string, std::string>> &mounts)
{
    XasMessageBuilder builder{XMSG_NFS};
    builder.id(77);
    for (std::size_t i = 0; i < mounts.size(); ++i) {
        const std::string mount = "mount" + std::to_string(i + 1);
        builder.set(mount + ".rem_dir", mounts[i].first).set(mount + ".local_dir", mounts[i].second);
        builder.set(mount + ".mount", 1);
    }
    return builder;
}

class UpdateNfs : public XasUpdateSharesTest {
  protected:
    int updateNfs(const XasMessageBuilder &builder)
    {
        return update(xasUpdateNFSCfg, builder, {"fstab", "nfsServers"});
    }

    void expectUntouched() const
    {
        EXPECT_EQ(files.read("nfsServers"), XasShareFiles::SERVERS);
        EXPECT_EQ(files.read("fstab"), XasShareFiles::TABLE);
    }
};

using DispatchNfs = XasDispatchSharesTest;

} // namespace

TEST_F(UpdateNfs, FailsWhenAMountPointCannotBeMadeAndLeavesTheFiles)
{
    xasWriteFile("/var/nfsmounts/b", "a file");
    EXPECT_EQ(updateNfs(nfsMessage({{"nas:/a", "/a"}, {"nas:/b", "/b/below"}, {"nas:/c", "/c"}})), 1);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.take(),
                ElementsAre(xasErrorLine("Error making directory /var/nfsmounts/b\n"),
                            xasErrorLine("Error creating local mount point /var/nfsmounts/b/below\n")));
    expectUntouched();
    EXPECT_TRUE(std::filesystem::is_directory("/var/nfsmounts/a"));
    EXPECT_FALSE(xasExists("/var/nfsmounts/c"));
}

TEST_F(UpdateNfs, WarnsOfServersThatHaveNoAddressAndMountsThemAllTheSame)
{
    EXPECT_EQ(updateNfs(nfsMessage({{"unknown.invalid:/a", "/a"}, {":/b", "/b"}, {"[fd00::20]:/c", "/c"}})),
              0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.take(), ElementsAre(NO_ADDRESS, NO_HOST, NO_ADDRESS));
    EXPECT_EQ(files.read("nfsServers"), "NFS_SERVERS=\"\"\n");
    EXPECT_EQ(files.read("fstab"),
              "proc /proc proc defaults 0 0\n"
              "unknown.invalid:/a\t /var/nfsmounts/a\t nfs\t defaults,nodev,soft,intr,nolock,ro 0 0\n"
              ":/b\t /var/nfsmounts/b\t nfs\t defaults,nodev,soft,intr,nolock,ro 0 0\n"
              "[fd00::20]:/c\t /var/nfsmounts/c\t nfs\t defaults,nodev,soft,intr,nolock,ro 0 0\n");
}

TEST_F(UpdateNfs, WritesNothingBehindAShareWithoutARemoteDirectoryButGoesOnToItsEnd)
{
    EXPECT_EQ(updateNfs(nfsMessage({{"nas:/a", "/a"}, {"", "/b"}, {"10.0.0.1:/c", "/c"}})), 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.take(), ElementsAre(NO_HOST, xasWarningLine("Ignoring NFS mount with empty path\n")));
    EXPECT_EQ(files.read("nfsServers"), "NFS_SERVERS=\"192.168.10.20 10.0.0.1\"\n");
    EXPECT_EQ(files.read("fstab"),
              "proc /proc proc defaults 0 0\n"
              "nas:/a\t /var/nfsmounts/a\t nfs\t defaults,nodev,soft,intr,nolock,ro 0 0\n");
    EXPECT_TRUE(std::filesystem::is_directory("/var/nfsmounts/b"));
    EXPECT_TRUE(std::filesystem::is_directory("/var/nfsmounts/c"));
}

TEST_F(UpdateNfs, LeavesAnOverLongShareOutAndSaysSoThoughItSucceeds)
{
    // Both texts fill their fields: no NUL follows them.
    const std::string remote = "192.168.10.20:/" + std::string(114, 'r');
    const std::string local = "/" + std::string(130, 'l');
    ASSERT_EQ(remote.size(), 129U);
    ASSERT_EQ(local.size(), 131U);
    EXPECT_EQ(updateNfs(nfsMessage({{remote, local}, {"10.0.0.1:/b", "/b"}})), 0);
    EXPECT_EQ(xasReplyText(reply), "4 NFS entry exceeds memory limmits");
    EXPECT_THAT(log.take(), ElementsAre(xasErrorLine("NFS entry exceeds memory limits")));
    EXPECT_EQ(files.read("nfsServers"), "NFS_SERVERS=\"192.168.10.20 10.0.0.1\"\n");
    EXPECT_EQ(files.read("fstab"),
              "proc /proc proc defaults 0 0\n"
              "10.0.0.1:/b\t /var/nfsmounts/b\t nfs\t defaults,nodev,soft,intr,nolock,ro 0 0\n");
    EXPECT_TRUE(std::filesystem::is_directory("/var/nfsmounts" + local));
}

TEST_F(UpdateNfs, NamesAServerOfTwoMountsOnce)
{
    EXPECT_EQ(updateNfs(nfsMessage({{"nas.example.org:/a", "/a"}, {"192.168.10.20:/b", "/deep/er/b/"}})
                            .set("mount2.read_write", 0x100)),
              0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(files.read("nfsServers"), "NFS_SERVERS=\"192.168.10.20\"\n");
    EXPECT_EQ(files.read("fstab"),
              "proc /proc proc defaults 0 0\n"
              "nas.example.org:/a\t /var/nfsmounts/a\t nfs\t defaults,nodev,soft,intr,nolock,ro 0 0\n"
              "192.168.10.20:/b\t /var/nfsmounts/deep/er/b/\t nfs\t defaults,nodev,soft,intr,nolock 0 0\n");
    EXPECT_EQ(files.read("fstab.old"), XasShareFiles::TABLE);
    EXPECT_TRUE(std::filesystem::is_directory("/var/nfsmounts/deep/er/b"));
    EXPECT_EQ(xasModeOf("/var/nfsmounts/deep"), 0755U);
}

TEST_F(UpdateNfs, TakesATextWithoutAColonForAHostAndAppendsALocalDirectoryAsItIs)
{
    EXPECT_EQ(updateNfs(nfsMessage({{"nas", "logs"}})), 0);
    EXPECT_EQ(files.read("nfsServers"), "NFS_SERVERS=\"192.168.10.20\"\n");
    EXPECT_EQ(files.read("fstab"),
              "proc /proc proc defaults 0 0\n"
              "nas\t /var/nfsmountslogs\t nfs\t defaults,nodev,soft,intr,nolock,ro 0 0\n");
    EXPECT_TRUE(std::filesystem::is_directory("/var/nfsmountslogs"));
    std::filesystem::remove("/var/nfsmountslogs");
}

TEST_F(UpdateNfs, TakesNoNoteOfMountsThatAreNotUsed)
{
    EXPECT_EQ(updateNfs(nfsMessage({{"nas:/a", "/a"}, {"", ""}, {"unknown.invalid:/c", "/c"}})
                            .set("mount1.mount=0 mount2.mount=0 mount3.mount=0")),
              0);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(files.read("nfsServers"), "NFS_SERVERS=\"\"\n");
    EXPECT_EQ(files.read("fstab"), "proc /proc proc defaults 0 0\n");
    EXPECT_FALSE(xasExists("/var/nfsmounts"));
}

TEST_F(DispatchNfs, TheMountsAreMadeAgainWhateverTheMessageHolds)
{
    prepare("nfs", {"nfsServers", "fstab"});
    EXPECT_EQ(outcome(nfsMessage({})), XAS_APPLIED);
    EXPECT_THAT(programs(), ElementsAre("stop-nfs", "start-nfs"));
    EXPECT_EQ(files.read("fstab"), "proc /proc proc defaults 0 0\n");
}

TEST_F(DispatchNfs, AMountThatFailsFailsTheMessage)
{
    prepare("nfs", {"nfsServers", "fstab"}, 30);
    EXPECT_EQ(outcome(nfsMessage({{"nas:/a", "/a"}})), "0 1 Mount/unmount of NFS share failed");
}

TEST_F(DispatchNfs, AnOverLongMountTravelsInAnAnswerOfSuccess)
{
    prepare("nfs", {"nfsServers", "fstab"});
    EXPECT_EQ(outcome(nfsMessage({{"nas:/" + std::string(124, 'r'), "/" + std::string(130, 'l')}})),
              "1 4 NFS entry exceeds memory limmits");
}
