// Programs read the files of the shares that we write: Samba's own tools smb.conf and the SMB passwords, and
// the reader that mount uses the file-system table.
#include "auth/cifs.h"
#include "auth/nfs.h"

#include "support/apps.h"
#include "support/message.h"
#include "support/programs.h"

namespace {

constexpr const char *OLD_SHARE = "[logs]\n"
                                  "   path = /var/log\n"
                                  "   read only = yes\n"
                                  "   valid users = cifsuser\n";

constexpr const char *OLD_PASSWORDS =
    "# SMB password file\n"
    "cifsuser:100:XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX:31D6CFE0D16AE931B73C59D7E0C089C0:[U          ]:LCT-00000001:"
    "Cifs User\n"
    "operator:37:XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX:0CB6948805F797BF2A82807973B89537:[U          ]:LCT-4F3A2B1C:"
    "Operator\n";

class SambaProgram : public XasFilesTest {
  protected:
    SambaProgram()
    {
        xasWriteFile("/etc/passwd", "root:x:0:0:root:/root:/bin/sh\ncifsuser:x:100:100:share:/:/bin/false\n"
                                    "operator:x:37:37:operator:/:/bin/false\n");
        cifs.enabled = 1;
        xasSetFieldText(cifs.lanman_pwd, "E52CAC67419A9A224A3B108F3FA6CB6D");
        xasSetFieldText(cifs.nt_pwd, "8846F7EAEE8FB117AD06BDD830B7586C");
        xasSetFieldText(cifs.lct_field, "LCT-4F3A2B1C");
        xasSetFieldText(cifs.workgroup, "ENGINEERING");
        dir.write("smb.conf", smbConf());
        dir.write("smbpasswd", OLD_PASSWORDS, 0600);
    }

    /** What the appliance has, and places for what the tools keep. */
    [[nodiscard]] std::string smbConf() const
    {
        std::string text = "# file sharing with desktop computers\n"
                           "[global]\n"
                           "   workgroup = WORKGROUP\n"
                           "   server string = console server\n"
                           "   interfaces = lo\n"
                           "   bind interfaces only = yes\n"
                           "   passdb backend = smbpasswd\n"
                           "   smb passwd file = " +
                           dir.path("smbpasswd") + "\n";
        for (const char *kept :
             {"private dir", "lock directory", "state directory", "cache directory", "pid directory"})
            text += "   " + std::string{kept} + " = " + dir.path() + "\n";
        return text + OLD_SHARE;
    }

    int update()
    {
        XasMessage msg = XasMessageBuilder{XMSG_CIFS}.payload(cifs);
        const XasCfgFileList list =
            xasTestCfgFiles({{"smb", dir.path("smb.conf")}, {"smbpasswd", dir.path("smbpasswd")}});
        return xasUpdateSambaCfg(&msg, &list, &reply);
    }

    /** What the checker reads for a parameter of a section. */
    [[nodiscard]] std::string parameter(const std::string &name, const std::string &section = "global") const
    {
        return xasRunShell(xasUnpackedProgram("usr/bin/testparm") + " -s --section-name=" + section +
                           " --parameter-name='" + name + "' " + dir.path("smb.conf") + " 2>/dev/null")
            .output;
    }

    [[nodiscard]] std::string check() const
    {
        return xasRunShell(xasUnpackedProgram("usr/bin/testparm") + " -s " + dir.path("smb.conf")).output;
    }

    /** The users that the password tool finds. */
    [[nodiscard]] std::string users(const std::string &options) const
    {
        return xasRunShell("TZ=UTC " + xasUnpackedProgram("usr/bin/pdbedit") + " -s " + dir.path("smb.conf") +
                           " -L " + options)
            .output;
    }

    XasCifsPayload cifs{};
    XasReplyStatus reply;
};

class MountProgram : public XasFilesTest {
  protected:
    MountProgram()
    {
        std::filesystem::remove_all("/var/nfsmounts");
        dir.write("nfs-servers", "");
    }

    int update()
    {
        XasMessage msg = XasMessageBuilder{XMSG_NFS}.set(
            "mount1.rem_dir=192.168.10.20:/export/logs mount1.local_dir=/logs mount1.mount=1 "
            "mount2.rem_dir=127.0.0.1:/ mount2.local_dir=/deep/root mount2.read_write=1 mount2.mount=1");
        const XasCfgFileList list =
            xasTestCfgFiles({{"nfsServers", dir.path("nfs-servers")}, {"fstab", dir.path("fstab")}});
        return xasUpdateNFSCfg(&msg, &list, &reply);
    }

    [[nodiscard]] std::string find(const std::string &options) const
    {
        return xasRunShell("findmnt --tab-file " + dir.path("fstab") + " " + options).output;
    }

    XasReplyStatus reply;
};

} // namespace

TEST_F(SambaProgram, SaysWhenItCannotReadALine)
{
    dir.write("smb.conf", "[global]\n   workgruop = X\n" + smbConf());
    EXPECT_THAT(check(), HasSubstr("Unknown parameter encountered: \"workgruop\""));
    std::filesystem::remove(dir.path("smb.conf"));
    EXPECT_THAT(check(), HasSubstr("Error loading services."));
}

TEST_F(SambaProgram, SaysWhenAUserOfThePasswordFileIsNoneOfTheSystem)
{
    xasWriteFile("/etc/passwd", "root:x:0:0:root:/root:/bin/sh\n");
    EXPECT_THAT(users("-w"), HasSubstr("username cifsuser with uid 100 is not in unix passwd database"));
}

TEST_F(SambaProgram, ReadsTheWorkgroupAndTheRestOfTheFileAsBefore)
{
    EXPECT_EQ(parameter("workgroup"), "WORKGROUP\n");
    ASSERT_EQ(update(), 0);
    EXPECT_THAT(check(), HasSubstr("Loaded services file OK."));
    EXPECT_THAT(check(), Not(HasSubstr("Unknown parameter")));
    EXPECT_EQ(parameter("workgroup"), "ENGINEERING\n");
    EXPECT_EQ(parameter("server string"), "console server\n");
    EXPECT_EQ(parameter("bind interfaces only"), "Yes\n");
    EXPECT_EQ(parameter("path", "logs"), "/var/log\n");
    EXPECT_EQ(parameter("valid users", "logs"), "cifsuser\n");
}

TEST_F(SambaProgram, ReadsTheInterfacesWithoutRegardToABlankAtTheirEnd)
{
    const std::pair<std::pair<std::uint32_t, std::uint32_t>, const char *> cases[] = {
        {{0, 0}, "127.0.0.1\n"},
        {{1, 0}, "127.0.0.1 eth0\n"},
        {{0, 1}, "127.0.0.1 eth1\n"},
        {{1, 1}, "127.0.0.1 eth0 eth1\n"}};
    for (const auto &[ports, interfaces] : cases) {
        std::tie(cifs.eth1, cifs.eth2) = ports;
        ASSERT_EQ(update(), 0);
        EXPECT_EQ(parameter("interfaces"), interfaces);
    }
}

TEST_F(SambaProgram, FindsTheUserWithHisNewPasswordAndItsDate)
{
    constexpr const char *OPERATOR =
        "operator:37:XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX:0CB6948805F797BF2A82807973B89537:[U          ]:LCT-4F3A2B1C:\n";
    EXPECT_EQ(users("-w"), "cifsuser:100:XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX:31D6CFE0D16AE931B73C59D7E0C089C0:"
                           "[U          ]:LCT-00000001:\n" +
                               std::string{OPERATOR});
    ASSERT_EQ(update(), 0);
    // The tool does not show LAN Manager hashes any more.
    EXPECT_EQ(users("-w"),
              OPERATOR + std::string{"cifsuser:100:XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX:"
                                     "8846F7EAEE8FB117AD06BDD830B7586C:[U          ]:LCT-4F3A2B1C:\n"});
    EXPECT_THAT(users("-v -u cifsuser"), HasSubstr("Password last set:    Tue, 14 Feb 2012 09:36:28 UTC\n"));
}

TEST_F(SambaProgram, FindsTheUserWithHisOldPasswordWhenTheNewOneIsRefused)
{
    const std::string before = users("-w");
    xasSetFieldText(cifs.nt_pwd, "");
    ASSERT_EQ(update(), 1);
    EXPECT_EQ(users("-w"), before);
    EXPECT_EQ(parameter("workgroup"), "WORKGROUP\n");
}

TEST_F(MountProgram, SaysWhenAMountPointOrAFieldIsMissing)
{
    dir.write("fstab", "192.168.10.20:/export/logs\t /var/nfsmounts/logs\t nfs\t defaults 0 0\n");
    EXPECT_THAT(find("--verify"), HasSubstr("0 parse errors, 1 error, 0 warnings\n"));
    EXPECT_THAT(find("--verify"),
                HasSubstr("/var/nfsmounts/logs\n   [E] unreachable on boot required target"));
    dir.write("fstab", "192.168.10.20:/export/logs\n");
    EXPECT_THAT(find("--verify"), HasSubstr("parse error"));
}

TEST_F(MountProgram, ReadsTheTableWithItsSharesAndFindsTheirMountPoints)
{
    dir.write("fstab", "# device\t mount point\n"
                       "tmpfs /tmp tmpfs size=32m 0 0\n"
                       "192.168.10.9:/old\t /var/nfsmounts/old\t nfs\t defaults 0 0\n");
    ASSERT_EQ(update(), 0);
    EXPECT_EQ(find("--verify"), "Success, no errors or warnings detected\n");
    EXPECT_EQ(
        find("--pairs --output SOURCE,TARGET,FSTYPE,OPTIONS,FREQ,PASSNO"),
        "SOURCE=\"tmpfs\" TARGET=\"/tmp\" FSTYPE=\"tmpfs\" OPTIONS=\"size=32m\" FREQ=\"0\" PASSNO=\"0\"\n"
        "SOURCE=\"192.168.10.20:/export/logs\" TARGET=\"/var/nfsmounts/logs\" FSTYPE=\"nfs\" "
        "OPTIONS=\"defaults,nodev,soft,intr,nolock,ro\" FREQ=\"0\" PASSNO=\"0\"\n"
        "SOURCE=\"127.0.0.1:/\" TARGET=\"/var/nfsmounts/deep/root\" FSTYPE=\"nfs\" "
        "OPTIONS=\"defaults,nodev,soft,intr,nolock\" FREQ=\"0\" PASSNO=\"0\"\n");
}

TEST_F(MountProgram, AShellReadsTheListOfServers)
{
    dir.write("fstab", "");
    ASSERT_EQ(update(), 0);
    EXPECT_EQ(xasRunShell(". " + dir.path("nfs-servers") + "; for s in $NFS_SERVERS; do echo \"<$s>\"; done")
                  .output,
              "<192.168.10.20>\n<127.0.0.1>\n");
}
