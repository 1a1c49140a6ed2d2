// What the editors of the SNMP agent and of the shares do when the disk fills up under them.
#include "auth/cifs.h"
#include "auth/nfs.h"
#include "auth/snmp.h"

#include "support/hosts.h"
#include "support/log.h"
#include "support/reply.h"
#include "support/small_disk.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

const XasLogLine NOT_PRINTED = xasErrorLine("Error printing line to file\n");

/** Comments that fill the disk's share of one file to its last byte. */
std::string filledText()
{
    std::string text;
    while (text.size() < XasSmallDisk::FILE_SIZE)
        text += "#" + std::string(62, 'c') + "\n";
    return text;
}

class SharesFullDisk : public testing::Test {
  protected:
    /** What every editor leaves behind; the comments all came to the disk, what was appended to them did not.
     */
    void expectUntouched(const char *answer) const
    {
        EXPECT_EQ(xasReplyText(reply), answer);
        EXPECT_EQ(disk.read("file"), text);
        EXPECT_EQ(disk.read("file.tmp"), text);
        EXPECT_FALSE(disk.has("file.old"));
    }

    const std::string text = filledText();
    XasSmallDisk disk;
    std::string path = disk.write("file", text);
    XasLogCapture log;
    XasReplyStatus reply;
};

} // namespace

TEST_F(SharesFullDisk, LeavesTheAgentsFileWithItsModeAndGivesNoReason)
{
    const XasSnmpPayload snmpCfg{};
    EXPECT_EQ(xasEditSNMPCfgFile(path.c_str(), &snmpCfg, &reply), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(NOT_PRINTED, xasErrorLine("Error printing line to SNMP config file\n")));
    expectUntouched(XAS_NO_REPLY);
    EXPECT_EQ(xasModeOf(path), 0644U);
}

TEST_F(SharesFullDisk, LeavesTheFileSystemTableAndGivesNoReason)
{
    const XasNfsShares shares = {
        XasNfsShare{.remote = "s:/a", .local = "/m/a", .readWrite = true, .used = true}, {}, {}};
    EXPECT_EQ(xasEditNFSCfgFile(path.c_str(), shares, &reply), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(NOT_PRINTED, xasErrorLine("Error printing line to NFS config file\n")));
    expectUntouched(XAS_NO_REPLY);
}

TEST_F(SharesFullDisk, LeavesTheServersFileAndGivesItsOwnReason)
{
    const std::string other = disk.write("other", "old\n");
    EXPECT_EQ(xasEditNFSServersFile(other.c_str(), {1, 2, 3}, &reply), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(NOT_PRINTED, xasErrorLine("Error printing line to NFS servers file\n")));
    EXPECT_EQ(xasReplyText(reply), "3 Error writing to NFS servers file");
    EXPECT_EQ(disk.read("other"), "old\n");
    EXPECT_EQ(disk.read("other.tmp"), "");
    EXPECT_FALSE(disk.has("other.old"));
}

TEST_F(SharesFullDisk, LeavesSmbConfAndGivesNoReason)
{
    const std::string old = "interfaces=\n" + text.substr(12);
    ASSERT_EQ(old.size(), 4096U);
    path = disk.write("file", old);
    XasCifsPayload cifs{};
    EXPECT_EQ(xasEditSMBCfgFile(path.c_str(), &cifs, &reply), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(NOT_PRINTED, xasErrorLine("Error printing line to SMB config file\n")));
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_EQ(disk.read("file"), old);
    EXPECT_FALSE(disk.has("file.old"));
}

TEST_F(SharesFullDisk, ShowsInThePasswordFileOnlyWhenItIsSaved)
{
    XasCifsPayload cifs{};
    cifs.enabled = 1;
    xasSetFieldText(cifs.lanman_pwd, "L");
    xasSetFieldText(cifs.nt_pwd, "N");
    xasSetFieldText(cifs.lct_field, "C");
    EXPECT_EQ(xasEditSMBPassCfgFile(path.c_str(), &cifs, &reply), 1);
    EXPECT_THAT(log.lines(), ElementsAre(NOT_PRINTED));
    expectUntouched("3 Error saving new smbpasswd config file");
}
