// Programs that read what the handlers write: PAM, the name service, Kerberos and an LDAP client. Accounts
// are made by the appliance's own tools.
#include "auth/kerberos.h"
#include "auth/ldap.h"
#include "auth/update_auth.h"
#include "auth/users.h"
#include "support/hosts.h"
#include "support/login_files.h"

namespace {

/** Runs a shell command; its output and errors, then its exit status on a line of its own. */
std::string run(const std::string &command)
{
    const XasTestDir dir;
    const int status = std::system(("( " + command + " ) >" + dir.path("out") + " 2>&1").c_str());
    return dir.read("out") + "exit " + std::to_string(WEXITSTATUS(status)) + "\n";
}

bool isInstalled(const char *path)
{
    return ::access(path, X_OK) == 0;
}

/** A stand-in for the module that asks for the password: it asks, and leaves the decision to the others. */
constexpr const char *ASKING_MODULE = R"(
extern int pam_get_authtok(void *, int, const char **, const char *);
int pam_sm_authenticate(void *pamh, int flags, int argc, const char **argv)
{
    const char *password = 0;
    (void)flags; (void)argc; (void)argv;
    pam_get_authtok(pamh, 6, &password, 0);
    return 7;
}
int pam_sm_setcred(void *pamh, int flags, int argc, const char **argv)
{
    (void)pamh; (void)flags; (void)argc; (void)argv;
    return 25;
}
)";

class LoginConsumers : public XasLoginFilesTest {
  protected:
    LoginConsumers()
    {
        for (const char *tool : {"adduser", "deluser"}) {
            std::filesystem::remove(std::string{"/usr/bin/"} + tool);
            std::filesystem::copy_file(std::string{XAS_SHIPPED_DIR} + "/" + tool,
                                       std::string{"/usr/bin/"} + tool);
        }
        xasWriteFile("/etc/passwd", "root:x:0:0:root:/root:/bin/sh\n");
        xasWriteFile("/etc/group", "root:x:0:\n");
        xasWriteFile("/etc/shadow", "root:*:19000:0:99999:7:::\n", 0600);
        xasWriteFile("/etc/.lusers", "");
        std::filesystem::create_directories("/etc/zel");
    }

    int user(std::string_view login, std::string_view password, std::uint32_t action)
    {
        XasMessage msg = XasMessageBuilder{XMSG_USER}
                             .set("login", login)
                             .set("password", password)
                             .set("uid", 501)
                             .set("action", action);
        return xasUpdateSingleLocalUsersCfg(&msg, &cfgFiles, &reply);
    }

    /** Writes order, PAM file and name-service file where the system reads them. */
    int order(const XasMessage &message)
    {
        xasWriteFile("/etc/pam.d/system-auth", "");
        XasMessage msg = message;
        const XasCfgFileList list = xasTestCfgFiles({{"authentication", ORDER},
                                                     {"system-auth", "/etc/pam.d/system-auth"},
                                                     {"nsswitch", "/etc/nsswitch.conf"}});
        return xasUpdateAuthenOrderCfg(&msg, &list, &reply);
    }

    /** Where the system has its PAM modules. */
    static std::filesystem::path systemModules()
    {
        for (const auto &entry : std::filesystem::directory_iterator{"/usr/lib"}) {
            if (std::filesystem::exists(entry.path() / "security/pam_unix.so"))
                return entry.path() / "security";
        }
        return "/usr/lib/security";
    }

    /** /lib/security as the PAM file names it: the system's modules, and stand-ins for those it lacks. */
    static void makeModules()
    {
        namespace fs = std::filesystem;
        if (fs::exists("/lib/security"))
            return;
        const fs::path lib = fs::path{"/lib"};
        const fs::path modules = systemModules();
        fs::remove(lib); // a link to /usr/lib, which cannot be changed here
        fs::create_directory(lib);
        for (const auto &entry : fs::directory_iterator{"/usr/lib"})
            fs::create_symlink(entry.path(), lib / entry.path().filename());
        fs::create_directory("/lib/security");
        for (const char *name : {"pam_env.so", "pam_unix.so", "pam_deny.so", "pam_limits.so"})
            fs::create_symlink(modules / name, fs::path{"/lib/security"} / name);
        for (const char *name :
             {"pam_ldap.so", "pam_radius_auth.so", "pam_securid.so", "pam_krb5.so", "pam_tacplus.so"})
            fs::create_symlink(modules / "pam_deny.so", fs::path{"/lib/security"} / name);
        xasWriteFile("/tmp/asking.c", ASKING_MODULE);
        ASSERT_EQ(std::system("gcc -w -shared -fPIC -o /lib/security/pam_sp_user.so /tmp/asking.c"), 0);
    }

    static std::string login(const std::string &name, const std::string &password, const char *operations)
    {
        return run("printf '%s\\n' '" + password + "' | pamtester system-auth " + name + " " + operations);
    }

    XasCfgFileList cfgFiles;
};

/** As adduser takes a password. */
std::string hashOf(const std::string &password)
{
    const std::string hash = run("openssl passwd -1 -salt xas " + password);
    return hash.substr(0, hash.find('\n'));
}

} // namespace

TEST_F(LoginConsumers, AnAccountThatWasCutShortIsMadeOnceWhenItIsSentAgain)
{
    xasWriteFile("/etc/group", "root:x:0:\nalice:x:501:\nalice2:x:502:\n"); // the group is made first
    xasWriteFile("/etc/shadow", "root:*:19000:0:99999:7:::\nalice:!:19000:0:99999:7:::\n", 0600);
    EXPECT_EQ(user("alice", "", 0), 0);
    EXPECT_EQ(xasReadFile("/etc/group"), "root:x:0:\nalice2:x:502:\nalice:x:501:\n");
    EXPECT_THAT(run("grep -c ^alice: /etc/shadow /etc/passwd"), "/etc/shadow:1\n/etc/passwd:1\nexit 0\n");
    EXPECT_EQ(xasModeOf("/etc/shadow"), 0600U);
}

TEST_F(LoginConsumers, AUserMadeByAMessageLogsInThroughTheGeneratedPamFile)
{
    if (!isInstalled("/usr/bin/pamtester"))
        GTEST_SKIP() << "pamtester is not installed";
    makeModules();
    ASSERT_EQ(order(XasMessageBuilder{XMSG_AUTH}.set("local=3 ldap=1 radius=2")), 0);
    ASSERT_EQ(user("alice", hashOf("wonderland"), 0), 0);
    EXPECT_THAT(login("alice", "wonderland", "authenticate acct_mgmt"), HasSubstr("exit 0\n"));

    ASSERT_EQ(user("alice", hashOf("looking-glass"), 3), 0);
    EXPECT_THAT(login("alice", "wonderland", "authenticate"), HasSubstr("exit 1\n"));
    EXPECT_THAT(login("alice", "looking-glass", "authenticate"), HasSubstr("exit 0\n"));

    ASSERT_EQ(user("alice", "", 2), 0);
    EXPECT_THAT(login("alice", "looking-glass", "authenticate"), HasSubstr("exit 1\n"));
}

TEST_F(LoginConsumers, NobodyLogsInLocallyWhenLocalAccountsAreNotInTheOrder)
{
    if (!isInstalled("/usr/bin/pamtester"))
        GTEST_SKIP() << "pamtester is not installed";
    makeModules();
    ASSERT_EQ(user("alice", hashOf("wonderland"), 0), 0);
    ASSERT_EQ(order(XasMessageBuilder{XMSG_AUTH}.set("local", 7)), 0);
    EXPECT_THAT(login("alice", "wonderland", "authenticate"), HasSubstr("exit 0\n"));
    ASSERT_EQ(order(XasMessageBuilder{XMSG_AUTH}.set("ldap", 1)), 0);
    EXPECT_THAT(login("alice", "wonderland", "authenticate"), HasSubstr("exit 1\n"));
}

TEST_F(LoginConsumers, TheFirstMethodThatAnswersDecides)
{
    if (!isInstalled("/usr/bin/pamtester"))
        GTEST_SKIP() << "pamtester is not installed";
    makeModules();
    ASSERT_EQ(user("alice", hashOf("wonderland"), 0), 0);
    ASSERT_EQ(order(XasMessageBuilder{XMSG_AUTH}.set("ldap=1 local=2 first_responding=1")), 0);
    EXPECT_THAT(login("alice", "wonderland", "authenticate"), HasSubstr("exit 1\n"))
        << "the module in the directory's place declines, and that counts";
    ASSERT_EQ(order(XasMessageBuilder{XMSG_AUTH}.set("ldap=2 local=1 first_responding=1")), 0);
    EXPECT_THAT(login("alice", "wonderland", "authenticate"), HasSubstr("exit 0\n"));
}

TEST_F(LoginConsumers, TheNameServiceFindsAUserWithTheGeneratedSwitch)
{
    xasWriteFile("/etc/nsswitch.conf", "passwd: nothing\ngroup: nothing\nhosts: files\n");
    EXPECT_THAT(run("getent passwd root"), HasSubstr("exit 2\n")) << "nothing is no source";
    ASSERT_EQ(order(XasMessageBuilder{XMSG_AUTH}.set("local=1 radius=2 nis=3")), 0);
    EXPECT_EQ(xasReadFile("/etc/nsswitch.conf"),
              "passwd:     files files radius nis\ngroup:      files nis\nhosts: files\n");
    ASSERT_EQ(user("alice", "", 0), 0);
    EXPECT_EQ(run("getent passwd alice"), "alice:x:501:501::/:/bin/cli\nexit 0\n");
    EXPECT_EQ(run("getent group alice"), "alice:x:501:\nexit 0\n");
}

TEST_F(LoginConsumers, KerberosToolsReadTheGeneratedFile)
{
    if (!isInstalled("/usr/bin/kinit"))
        GTEST_SKIP() << "the Kerberos tools are not installed";
    dir.write("hosts", "127.0.0.1 localhost\n");
    XasMessage msg = XasMessageBuilder{XMSG_KERBEROS}.set(
        "enabled=1 realm=EXAMPLE.ORG kdc=localhost.example.org kdc_ip=127.0.0.1 kdc_port=7");
    const XasCfgFileList list =
        xasTestCfgFiles({{"krb5tmpl", std::string{XAS_SHIPPED_DIR} + "/krb5.conf.template"},
                         {"krb5", "/etc/krb5.conf"},
                         {"nsswitch", dir.path("nsswitch")},
                         {"system-auth", dir.path("system-auth")},
                         {"hosts", "/etc/hosts"}});
    ASSERT_EQ(xasUpdateKerberosCfg(&msg, &list, &reply), 0);
    const std::string answer = run("KRB5_TRACE=/tmp/krb5-trace kinit alice </dev/null; cat /tmp/krb5-trace");
    EXPECT_THAT(answer, HasSubstr("Getting initial credentials for alice@EXAMPLE.ORG"));
    EXPECT_THAT(answer, HasSubstr("Resolving hostname localhost.example.org"));
    EXPECT_THAT(answer, HasSubstr("127.0.0.1:7")) << "the address of the hosts file, and the port";
    EXPECT_THAT(answer, Not(HasSubstr("Improper format of Kerberos configuration")));
}

TEST_F(LoginConsumers, AnLdapClientReadsTheToolsFile)
{
    if (!isInstalled("/usr/bin/ldapwhoami"))
        GTEST_SKIP() << "the LDAP tools are not installed";
    xasWriteFile("/etc/ldap/ldap.conf", "# directory client defaults\nTIMELIMIT 5\n");
    const XasLdapPayload cfgLDAP = [] {
        XasLdapPayload cfg{};
        cfg.enabled = 1;
        cfg.server = xasHostWithAddress("127.0.0.3");
        xasSetFieldText(cfg.base, "dc=example,dc=net");
        return cfg;
    }();
    ASSERT_EQ(xasEditOpenLdapCfgFile("/etc/ldap/ldap.conf", &cfgLDAP, &reply), 0);
    const std::string answer = run("ldapsearch -x -v -d 1 2>&1 | head -60");
    EXPECT_THAT(answer, HasSubstr("127.0.0.3"));
}
