// The login methods through the built daemon: each message's acknowledgement, and the files that several of
// them make together.
#include "support/message_files.h"

namespace {

constexpr const char *ORDER = "/etc/sysconfig/r58authconfig";
constexpr const char *PAM = "/etc/pam.d/system-auth";
constexpr const char *NSSWITCH = "/etc/nsswitch.conf";

const std::vector<std::pair<std::string, std::string>> DERIVED = {{"system-auth", PAM},
                                                                  {"nsswitch", NSSWITCH}};

class DaemonLogin : public testing::Test {
  protected:
    DaemonLogin()
    {
        xasWriteFile(ORDER, "LOCAL=1\n");
        xasWriteFile(PAM, "old pam\n");
        xasWriteFile(NSSWITCH, "passwd: old\nshadow: old\nhosts: files\n");
        xasWriteFile("/etc/krb5.conf", "");
        xasWriteFile("/etc/tacplus.conf", "");
        files.write("hosts", "127.0.0.1 localhost\n");
        files.write("krb5tmpl", "use_ldap = $(USE_LDAP)\nkdc = $(KDC_FQDN):$(KDC_PORT)\nrealm = $(REALM)\n");
        files.write("tacplustmpl", "server1 = $(SERVER_1)\nserver2 = $(SERVER_2)\nserver3 = $(SERVER_3)\n"
                                   "server1_secret = $(SERVER_1_SECRET)\nencrypt = $(ENCRYPT)\n"
                                   "login = $(SERVICE)\n");
        files.write("radius", "# server:port secret timeout\nold 1 2\n");
    }

    ~DaemonLogin() override
    {
        for (const char *file : {ORDER, PAM, NSSWITCH, "/etc/krb5.conf", "/etc/tacplus.conf"}) {
            std::filesystem::remove(file);
            std::filesystem::remove(file + std::string{".old"});
        }
    }

    /** Starts the daemon with the applications of all methods. */
    void start()
    {
        daemon.start({application("authentication", {{"authentication", ORDER}}),
                      application("radius", {{"radius", files.path("radius")}}),
                      application("kerberos", {{"krb5tmpl", files.path("krb5tmpl")},
                                               {"krb5", "/etc/krb5.conf"},
                                               {"hosts", files.path("hosts")}}),
                      application("tacacs", {{"tacplustmpl", files.path("tacplustmpl")},
                                             {"tacplus", "/etc/tacplus.conf"}})});
        daemon.ask(XasMessageBuilder{XMSG_SSH});
        daemon.stubs.forget();
    }

    /** Success, code and reason of the acknowledgement. */
    std::string outcome(const XasMessage &msg)
    {
        daemon.log.clear();
        return daemon.outcome(msg);
    }

    std::vector<XasLogLine> logLines() { return daemon.log.lines(); }

    XasPreparedFiles files;
    XasTestDaemon daemon;

  private:
    using CfgFiles = std::vector<std::pair<std::string, std::string>>;

    static XasTestApp application(const std::string &name, CfgFiles cfgFiles)
    {
        cfgFiles.insert(cfgFiles.end(), DERIVED.begin(), DERIVED.end());
        return {.name = name, .cfgFiles = cfgFiles};
    }
};

XasMessage kerberosMessage()
{
    return XasMessageBuilder{XMSG_KERBEROS}.set(
        "enabled=1 realm=EXAMPLE.ORG kdc=kdc.example.org kdc_ip=10.0.0.88 kdc_port=88 use_ldap=1");
}

XasMessage tacacsMessage()
{
    return XasMessageBuilder{XMSG_TACACS}.set(
        "server1=10.0.0.9 server2= server3=fd00::9 server1_secret=s3cret encrypt=1 service=2");
}

XasMessage radiusMessage()
{
    return XasMessageBuilder{XMSG_RADIUS}.set(
        "enabled=1 server1=rad1 secret1=one port1=1812 server2= timeout=3");
}

} // namespace

TEST_F(DaemonLogin, FailsWithTheReasonOfTheLastFileThatFailed)
{
    start();
    files.remove("radius");
    EXPECT_EQ(outcome(radiusMessage()), "0 2 Error opening /etc/raddb/server file");
    EXPECT_THAT(logLines(),
                ElementsAre(xasErrorLine("Error opening config file \"" + files.path("radius") + "\"\n"),
                            xasErrorLine("Error editing ldap config file\n"),
                            xasErrorLine("Error updating configuration for application: radius\n")));

    std::filesystem::remove(NSSWITCH);
    EXPECT_EQ(outcome(radiusMessage()), "0 2 Error opening pam.d/system-auth config file");
    files.write("radius", "");
    EXPECT_EQ(outcome(radiusMessage()), "1 2 Error opening pam.d/system-auth config file")
        << "applied, and yet a reason";
}

TEST_F(DaemonLogin, SeveralMessagesMakeOnePamFile)
{
    start();
    EXPECT_EQ(outcome(kerberosMessage()), XAS_APPLIED);
    EXPECT_EQ(outcome(XasMessageBuilder{XMSG_AUTH}.set(
                  "local=2 ldap=8 radius=4 kerberos=1 tacacs=3 first_responding=1")),
              XAS_APPLIED);
    EXPECT_EQ(xasModeOf(PAM), 0644U);
    EXPECT_EQ(outcome(radiusMessage()), XAS_APPLIED);
    EXPECT_EQ(outcome(tacacsMessage()), XAS_APPLIED);
    EXPECT_THAT(logLines(), IsEmpty());

    EXPECT_EQ(xasReadFile(ORDER),
              "FIRSTRSP=1\nLOCAL=2\nNIS=0\nLDAP=0\nRADIUS=4\nSECURID=0\nKERBEROS=1\nTACACS=3\n");
    EXPECT_EQ(xasReadFile("/etc/krb5.conf"), "use_ldap = 1\nkdc = kdc.example.org:88\nrealm = EXAMPLE.ORG\n");
    EXPECT_EQ(files.read("hosts"), "127.0.0.1 localhost\n10.0.0.88    kdc.example.org  kdc.example.org\n");
    EXPECT_EQ(files.read("radius"), "# server:port secret timeout\nrad1:1812   one    3\n");
    EXPECT_EQ(xasReadFile("/etc/tacplus.conf"), "server1 = 10.0.0.9\nserver2 = \nserver3 = [fd00::9]\n"
                                                "server1_secret = s3cret\nencrypt = 1\nlogin = login\n");
    EXPECT_EQ(xasReadFile(NSSWITCH), "passwd:     files files radius\nshadow:     files\nhosts: files\n");
    const std::string first =
        "auth      [success=done new_authtok_reqd=done authinfo_unavail=ignore default=die]"
        "\t/lib/security/";
    EXPECT_EQ(xasReadFile(PAM),
              "#%PAM-1.0 system-auth file\n"
              "auth      required\t/lib/security/pam_env.so readenv=0\n"
              "auth      sufficient\t/lib/security/pam_sp_user.so\n" +
                  first + "pam_krb5.so  use_first_pass\n" + first + "pam_unix.so  use_first_pass\n" + first +
                  "pam_tacplus.so  use_first_pass server=10.0.0.9 secret=s3cret server=[fd00::9] login=login "
                  " encrypt\n" +
                  first +
                  "pam_radius_auth.so  use_first_pass\n"
                  "auth      required      /lib/security/pam_deny.so\n"
                  "account   optional      /lib/security/pam_unix.so\n"
                  "account   optional  \t   /lib/security/pam_krb5.so\n"
                  "account   optional  \t   /lib/security/pam_tacplus.so\n"
                  "account   optional  \t   /lib/security/pam_radius_auth.so\n"
                  "password  sufficient\t/lib/security/pam_unix.so retry=3 nullok md5 shadow nis\n"
                  "password  sufficient\t/lib/security/pam_krb5.so use_authtok\n"
                  "password  sufficient\t/lib/security/pam_tacplus.so use_authtok\n"
                  "password  sufficient\t/lib/security/pam_radius_auth.so use_authtok\n"
                  "session   required      /lib/security/pam_limits.so\n"
                  "session   sufficient\t/lib/security/pam_unix.so\n"
                  "session     sufficient\t/lib/security/pam_krb5.so\n"
                  "session     sufficient\t/lib/security/pam_tacplus.so\n");
    EXPECT_EQ(xasModeOf(PAM), 0600U) << "it carries the secret";
    EXPECT_EQ(xasModeOf("/etc/tacplus.conf"), 0600U);
    EXPECT_EQ(xasModeOf(files.path("radius")), 0600U);
    EXPECT_FALSE(xasExists(std::string{PAM} + ".old"));
}
