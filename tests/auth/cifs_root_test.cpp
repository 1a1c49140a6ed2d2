// The handler of XMSG_CIFS: order of work, failures, what is left how, and when the share is offered again.
#include "auth/cifs.h"

#include "support/share_files.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char *NEW_SMB = "[global]\n   workgroup = ENG\n   interfaces = 127.0.0.1 eth0 eth1\n";
constexpr const char *NEW_PASSWORDS = "# passwords\ncifsuser:100:LANMAN:NT:[U          ]:LCT-1:Cifs User\n";

XasMessageBuilder cifsMessage()
{
    return XasMessageBuilder{XMSG_CIFS}
        .id(77)
        .word(120, 1)
        .word(124, 1)
        .word(128, 1)
        .bytes(132, "LANMAN")
        .bytes(165, "NT")
        .bytes(198, "LCT-1")
        .bytes(215, "ENG");
}

class UpdateSamba : public XasUpdateSharesTest {
  protected:
    int updateSamba(const XasMessageBuilder &builder)
    {
        return update(xasUpdateSambaCfg, builder, {"smbpasswd", "smb"});
    }

    void expectUntouched() const
    {
        EXPECT_EQ(files.read("smb"), XasShareFiles::SMB);
        EXPECT_EQ(files.read("smbpasswd"), XasShareFiles::PASSWORDS);
        EXPECT_FALSE(files.has("smb.old"));
        EXPECT_FALSE(files.has("smbpasswd.old"));
    }
};

using DispatchSamba = XasDispatchSharesTest;

} // namespace

TEST_F(UpdateSamba, FailsWithoutOneOfItsFilesInTheListEvenWhenTheShareIsOff)
{
    for (const std::uint32_t enabled : {0U, 1U}) {
        const auto msg = cifsMessage().word(120, enabled);
        EXPECT_EQ(update(xasUpdateSambaCfg, msg, {}), 1);
        EXPECT_THAT(log.take(), ElementsAre(xasErrorLine("Error determining SMB fstab config file\n")));
        EXPECT_EQ(update(xasUpdateSambaCfg, msg, {"smbpasswd"}), 1);
        EXPECT_THAT(log.take(), ElementsAre(xasErrorLine("Error determining SMB fstab config file\n")));
        EXPECT_EQ(update(xasUpdateSambaCfg, msg, {"smb"}), 1);
        EXPECT_THAT(log.take(), ElementsAre(xasErrorLine("Error determining smbpasswd config file\n")));
        expectReply(0, "");
    }
    expectUntouched();
}

TEST_F(UpdateSamba, RestoresSmbConfWhenThePasswordLacksAPart)
{
    EXPECT_EQ(updateSamba(cifsMessage().bytes(165, std::string(2, '\0'))), 1);
    expectReply(1, "Invalid samba password");
    EXPECT_THAT(log.take(),
                ElementsAre(xasErrorLine("Invalid samba password, lanman_pwd = LANMAN, nt_pwd = , "
                                         "lct_field = LCT-1\n"),
                            xasErrorLine("Error editing smbpasswd file\n")));
    expectUntouched();
}

TEST_F(UpdateSamba, TouchesNeitherFileWhenTheShareIsOff)
{
    EXPECT_EQ(updateSamba(cifsMessage().word(120, 0)), 0);
    expectReply(0, "");
    EXPECT_THAT(log.take(), IsEmpty());
    expectUntouched();
    EXPECT_FALSE(files.has("smb.tmp"));
    EXPECT_FALSE(files.has("smbpasswd.tmp"));
}

TEST_F(UpdateSamba, WritesBothFilesThePasswordsForNobodyElse)
{
    EXPECT_EQ(updateSamba(cifsMessage()), 0);
    expectReply(0, "");
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(files.read("smb"), NEW_SMB);
    EXPECT_EQ(files.read("smb.old"), XasShareFiles::SMB);
    EXPECT_EQ(xasModeOf(files.path("smb")), 0644U);
    EXPECT_EQ(files.read("smbpasswd"), NEW_PASSWORDS);
    EXPECT_EQ(files.read("smbpasswd.old"), XasShareFiles::PASSWORDS);
    EXPECT_EQ(xasModeOf(files.path("smbpasswd")), 0600U);
}

TEST_F(UpdateSamba, DoesNotRunFromATextThatFillsItsFieldIntoTheNext)
{
    EXPECT_EQ(updateSamba(cifsMessage()
                              .bytes(132, std::string(33, 'L'))
                              .bytes(165, std::string(33, 'N'))
                              .bytes(198, std::string(17, 'C'))),
              0);
    EXPECT_EQ(files.read("smb"), NEW_SMB);
    EXPECT_EQ(files.read("smbpasswd"), "# passwords\ncifsuser:100:" + std::string(33, 'L') + ":" +
                                           std::string(33, 'N') + ":[U          ]:" + std::string(17, 'C') +
                                           ":Cifs User\n");
}

TEST_F(DispatchSamba, TheShareIsStoppedWhenItIsSwitchedOff)
{
    prepare("samba", {"smb", "smbpasswd"});
    EXPECT_EQ(outcome(cifsMessage().word(120, 0).build()), XAS_APPLIED);
    EXPECT_THAT(programs(), ElementsAre("stop-samba"));
    EXPECT_EQ(files.read("smb"), XasShareFiles::SMB);
}

TEST_F(DispatchSamba, TheShareIsOfferedAgainWithItsNewFilesAndAlsoWithItsOldOnes)
{
    prepare("samba", {"smb", "smbpasswd"});
    EXPECT_EQ(outcome(cifsMessage().build()), XAS_APPLIED);
    EXPECT_EQ(outcome(cifsMessage().bytes(132, std::string(6, '\0')).build()), "0 1 Invalid samba password");
    EXPECT_THAT(programs(), ElementsAre("stop-samba", "start-samba", "stop-samba", "start-samba"));
    EXPECT_EQ(files.read("smb"), NEW_SMB);
    EXPECT_EQ(files.read("smbpasswd"), NEW_PASSWORDS);
}
