// The handler of XMSG_CIFS: order of work, failures, what is left how, and when the share is offered again.
#include "auth/cifs.h"

#include "support/reply.h"
#include "support/share_files.h"

namespace {

constexpr const char *NEW_SMB = "[global]\n   workgroup = ENG\n   interfaces = 127.0.0.1 eth0 eth1\n";
constexpr const char *NEW_PASSWORDS = "# passwords\ncifsuser:100:LANMAN:NT:[U          ]:LCT-1:Cifs User\n";

XasMessageBuilder cifsMessage()
{
    return XasMessageBuilder{XMSG_CIFS}.id(77).set(
        "enabled=1 eth1=1 eth2=1 lanman_pwd=LANMAN nt_pwd=NT lct_field=LCT-1 workgroup=ENG");
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

TEST_F(UpdateSamba, NeedsButTouchesNeitherFileWhenTheShareIsOff)
{
    EXPECT_EQ(update(xasUpdateSambaCfg, cifsMessage().set("enabled", 0), {"smb"}), 1);
    EXPECT_THAT(log.take(), ElementsAre(xasErrorLine("Error determining smbpasswd config file\n")));
    EXPECT_EQ(updateSamba(cifsMessage().set("enabled", 0)), 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.take(), IsEmpty());
    expectUntouched();
    EXPECT_FALSE(files.has("smb.tmp"));
    EXPECT_FALSE(files.has("smbpasswd.tmp"));
}

TEST_F(UpdateSamba, DoesNotRunFromATextThatFillsItsFieldIntoTheNext)
{
    EXPECT_EQ(updateSamba(cifsMessage()
                              .set("lanman_pwd", std::string(33, 'L'))
                              .set("nt_pwd", std::string(33, 'N'))
                              .set("lct_field", std::string(17, 'C'))),
              0);
    EXPECT_EQ(files.read("smb"), NEW_SMB);
    EXPECT_EQ(files.read("smbpasswd"), "# passwords\ncifsuser:100:" + std::string(33, 'L') + ":" +
                                           std::string(33, 'N') + ":[U          ]:" + std::string(17, 'C') +
                                           ":Cifs User\n");
}

TEST_F(DispatchSamba, TheShareIsStoppedWhenItIsSwitchedOff)
{
    prepare("samba", {"smb", "smbpasswd"});
    EXPECT_EQ(outcome(cifsMessage().set("enabled", 0)), XAS_APPLIED);
    EXPECT_THAT(programs(), ElementsAre("stop-samba"));
    EXPECT_EQ(files.read("smb"), XasShareFiles::SMB);
}

TEST_F(DispatchSamba, TheShareIsOfferedAgainWithItsNewFilesAndAlsoWithItsOldOnes)
{
    prepare("samba", {"smb", "smbpasswd"});
    EXPECT_EQ(outcome(cifsMessage()), XAS_APPLIED);
    EXPECT_EQ(outcome(cifsMessage().set("lanman_pwd", "")), "0 1 Invalid samba password");
    EXPECT_THAT(programs(), ElementsAre("stop-samba", "start-samba", "stop-samba", "start-samba"));
    EXPECT_EQ(files.read("smb"), NEW_SMB);
    EXPECT_EQ(files.read("smbpasswd"), NEW_PASSWORDS);
}
