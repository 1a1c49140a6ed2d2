// XMSG_AUTH: the order on disk and the two files that follow from it.
#include "auth/update_auth.h"

#include "auth/auth_order.h"
#include "auth/nsswitch.h"
#include "auth/pam.h"
#include "auth/sys_auth.h"
#include "support/faults.h"
#include "support/login_files.h"

namespace {

const XasLogLine ORDER_MISSING = xasErrorLine("Error opening config file \"/etc/sysconfig/r58authconfig\"\n");

class UpdateAuth : public XasLoginFilesTest {
  protected:
    UpdateAuth() { dir.write("authentication", "LOCAL=1\n"); }

    /** The order file of the list is the one that is read back. */
    int update(XasMessage &msg)
    {
        const XasCfgFileList list = xasTestCfgFiles({{"authentication", ORDER},
                                                     {"system-auth", dir.path("system-auth")},
                                                     {"nsswitch", dir.path("nsswitch")}});
        return xasUpdateAuthenOrderCfg(&msg, &list, &reply);
    }
};

} // namespace

TEST_F(UpdateAuth, MakesTheDerivedFilesFromTheEarlierOrderWhenTheNewOneCannotBeSaved)
{
    const XasFault fault{"rename", EIO, 1, 1};
    XasMessage msg = XasMessageBuilder{XMSG_AUTH}.set("ldap", 9).set("nis", 1);
    EXPECT_EQ(update(msg), 1);
    EXPECT_EQ(xasReplyText(reply), "3 Error saving new r58authconfig config file");
    EXPECT_EQ(xasReadFile(ORDER), "LOCAL=1\n");
    expectDerivedFiles();
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error renaming new config file \"" + std::string{ORDER} + "\"\n"),
                            xasErrorLine("Error editing network config file\n")));
    EXPECT_EQ(xasValueIn(msg, "nis") + xasValueIn(msg, "ldap"), "10") << "clamped all the same";
}

TEST_F(UpdateAuth, LogsAMissingOrderFileForEachReader)
{
    std::remove(ORDER);
    XasMessage msg = XasMessageBuilder{XMSG_AUTH}.set("ldap", 9);
    EXPECT_EQ(update(msg), 1);
    EXPECT_EQ(xasReplyText(reply), "2 Error opening sysconfig/r58authconfig config file");
    EXPECT_THAT(log.lines(), ElementsAre(ORDER_MISSING, xasErrorLine("Error editing network config file\n"),
                                         ORDER_MISSING, ORDER_MISSING, ORDER_MISSING));
    EXPECT_THAT(dir.read("system-auth"), Not(HasSubstr("use_first_pass")));
    EXPECT_EQ(dir.read("nsswitch"), "passwd:     files\n");
    EXPECT_EQ(xasValueIn(msg, "ldap"), "9") << "left alone, the file was not even opened";
}

TEST_F(UpdateAuth, RemembersNoPositionThatTheOrderFileNoLongerNames)
{
    XasMessage msg = XasMessageBuilder{XMSG_AUTH}.set("local=2 nis=1 ldap=3");
    EXPECT_EQ(update(msg), 0);
    EXPECT_EQ(dir.read("nsswitch"), "passwd:     nis files\n");
    EXPECT_THAT(dir.read("system-auth"), HasSubstr("pam_ldap.so"));
    xasWriteFile(ORDER, "LOCAL=1\n");
    EXPECT_EQ(xasEditNsswitchCfgFile(dir.path("nsswitch").c_str(), &reply), 0);
    EXPECT_EQ(xasEditSysAuthCfgFile(dir.path("system-auth").c_str(), &reply), 0);
    expectDerivedFiles();
}

TEST_F(UpdateAuth, WritesTheOrderAndWhatFollowsFromItAndFromTheSettingsOfOtherMethods)
{
    xasWriteFile("/etc/krb5.conf", "[appdefaults]\n    use_ldap = 1\n");
    xasWriteFile("/etc/tacplus.conf", "server1 = tac1\nserver2 = \nserver3 = tac3\n"
                                      "server1_secret = s3cret\nencrypt = 1\nlogin = chap\n");
    XasMessage msg = XasMessageBuilder{XMSG_AUTH}.set("kerberos=1 tacacs=2 radius=200 first_responding=7");
    EXPECT_EQ(update(msg), 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(xasReadFile(ORDER),
              "FIRSTRSP=1\nLOCAL=0\nNIS=0\nLDAP=0\nRADIUS=0\nSECURID=0\nKERBEROS=1\nTACACS=2\n");
    EXPECT_EQ(xasReadFile(std::string{ORDER} + ".old"), "LOCAL=1\n");
    EXPECT_EQ(dir.read("system-auth"),
              "#%PAM-1.0 system-auth file\n"
              "auth      required\t/lib/security/pam_env.so readenv=0\n"
              "auth      sufficient\t/lib/security/pam_sp_user.so\n"
              "auth      [success=done new_authtok_reqd=done authinfo_unavail=ignore default=die]\t"
              "/lib/security/pam_krb5.so  use_first_pass\n"
              "auth      [success=done new_authtok_reqd=done authinfo_unavail=ignore default=die]\t"
              "/lib/security/pam_tacplus.so  use_first_pass server=tac1 secret=s3cret server=tac3 login=chap "
              " encrypt\n"
              "auth      required      /lib/security/pam_deny.so\n"
              "account   optional      /lib/security/pam_unix.so\n"
              "account   optional  \t   /lib/security/pam_krb5.so\n"
              "account   optional  \t   /lib/security/pam_tacplus.so\n"
              "password  sufficient\t/lib/security/pam_unix.so retry=3 nullok md5 shadow nis\n"
              "password  sufficient\t/lib/security/pam_krb5.so use_authtok\n"
              "password  sufficient\t/lib/security/pam_tacplus.so use_authtok\n"
              "session   required      /lib/security/pam_limits.so\n"
              "session   sufficient\t/lib/security/pam_unix.so\n"
              "session     sufficient\t/lib/security/pam_krb5.so\n"
              "session     sufficient\t/lib/security/pam_tacplus.so\n");
    EXPECT_EQ(xasModeOf(dir.path("system-auth")), 0600U);
    EXPECT_FALSE(dir.has("system-auth.old"));
    EXPECT_EQ(dir.read("nsswitch"), "passwd:     files\n");
}

TEST_F(UpdateAuth, WritesTheOrderDirectlyAndReadsItBack)
{
    const XasAuthOrder written{1, 2, 3, 4, 5, 6, 7, 1};
    EXPECT_EQ(xasWriteAuthenOrder(written), 0);
    EXPECT_EQ(xasReadFile(ORDER), "LOCAL=1\nNIS=2\nLDAP=3 \nRADIUS=4\nSECURID=5 \nKERBEROS=6 \nTACACS=7 \n");
    XasAuthOrder order{};
    EXPECT_EQ(xasReadAuthenOrder(order), 0);
    EXPECT_EQ(order.ldap, 3U);
    EXPECT_EQ(order.tacacs, 7U);
    EXPECT_EQ(order.firstResponding, 0U) << "not in this form";
}

TEST_F(UpdateAuth, TellsThatTheOrderCannotBeWrittenOrReadDirectly)
{
    std::filesystem::remove_all("/etc/sysconfig");
    EXPECT_EQ(xasWriteAuthenOrder({}), 1);
    XasAuthOrder order{};
    EXPECT_EQ(xasReadAuthenOrder(order), 1);
    EXPECT_THAT(log.lines(), ElementsAre(ORDER_MISSING, ORDER_MISSING));
}

TEST_F(UpdateAuth, LeavesSettingsAloneThatAreNotInTheirFiles)
{
    std::remove("/etc/krb5.conf");
    std::remove("/etc/tacplus.conf");
    XasPamModuleData moduleData;
    moduleData.useLdap = 5;
    moduleData.login = "kept";
    EXPECT_EQ(xasGetPamModuleData(&moduleData), 0);
    EXPECT_EQ(moduleData.useLdap, 5U);
    EXPECT_EQ(moduleData.login, "kept");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(UpdateAuth, CutsSettingsToWhatTheirFieldsHold)
{
    xasWriteFile("/etc/krb5.conf", "use_ldap = yes\n");
    xasWriteFile("/etc/tacplus.conf", "server1 = " + std::string(300, 'a') +
                                          "\nserver1_secret = " + std::string(200, 's') +
                                          "\nlogin = " + std::string(30, 'l') + "\nencrypt = 0x1\n");
    XasPamModuleData moduleData;
    EXPECT_EQ(xasGetPamModuleData(&moduleData), 0);
    EXPECT_EQ(moduleData.useLdap, 1U);
    EXPECT_EQ(moduleData.encrypt, 0U);
    EXPECT_EQ(moduleData.server1, std::string(256, 'a'));
    EXPECT_EQ(moduleData.server1_secret, std::string(127, 's'));
    EXPECT_EQ(moduleData.login, std::string(20, 'l'));
}
