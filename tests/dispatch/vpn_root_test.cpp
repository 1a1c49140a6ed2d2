// The tunnel's files, commands and secrets, the system's own sed at work.
#include "dispatch/vpn.h"

#include "support/apps.h"
#include "support/faults.h"
#include "support/link.h"
#include "support/log.h"
#include "support/reply.h"
#include "support/shell.h"
#include "support/stub.h"
#include "support/vpn.h"

#include <atomic>
#include <thread>

namespace {

const std::string CONF = "/etc/ipsec.conf";
const std::string SECRETS = "/etc/ipsec.secrets";

const std::string GLOBAL = "version 2.0\n\nconfig setup\n    protostack=netkey\n";

const std::string SED_PSK = "/bin/sed -i '/PSK/d' /etc/ipsec.secrets";
const std::string SED_XAUTH = "/bin/sed -i '/XAUTH/d' /etc/ipsec.secrets";
const std::string HOST_KEY = "/usr/sbin/ipsec showhostkey --left | tail -1 >> /etc/ipsec.conf";

class VpnTest : public testing::Test {
  protected:
    VpnTest()
    {
        std::remove(SECRETS.c_str());
        xasWriteFile(CONF, GLOBAL + "\nconn old\n    left=1.2.3.4\n");
        stubs.put("/usr/sbin/ipsec", 0, "printf '\\t# a comment\\n\\tleftrsasigkey=0sAQKey\\n'");
    }
    ~VpnTest() override
    {
        std::remove(SECRETS.c_str());
        ::umask(022);
    }

    int update(const XasVpnPayload &vpn) { return update(vpn, CONF); }

    /** The application list names a file of one line at `path`. */
    int updateFile(const std::string &path, const XasVpnPayload &vpn)
    {
        xasWriteFile(path, "version 2.0\n");
        return update(vpn, path);
    }

    int update(const XasVpnPayload &vpn, const std::string &path)
    {
        reply = {};
        XasMessage msg = XasMessageBuilder{XMSG_VPN}.payload(vpn);
        const XasCfgFileList files = xasTestCfgFiles({{"ipsec", path}});
        return xasUpdateVPNCfg(&msg, &files, &reply);
    }

    XasStubs stubs;
    XasShellLines shell;
    XasLogCapture log;
    XasReplyStatus reply;
};

/** A tunnel of the given method with nothing else. */
XasVpnPayload vpnOf(std::uint32_t auth)
{
    XasVpnPayload vpn = xasTestVpn();
    vpn.auth = auth;
    return vpn;
}

const std::string PSK_LINE = "198.51.100.7 %any: PSK \"s3cret\"\n";

} // namespace

TEST_F(VpnTest, IsRefusedWithTheSecretsUntouchedWhenTheFileCannotBeOpened)
{
    std::remove(CONF.c_str());
    xasWriteFile(SECRETS, "a b: PSK \"old\"\n", 0600);
    EXPECT_EQ(update(xasTestVpn()), 1);
    EXPECT_EQ(xasReplyText(reply), "2 Error opening VPN config file");
    EXPECT_EQ(log.lines().back(), xasErrorLine("Error editing VPN config file\n"));
    EXPECT_THAT(shell.take(), IsEmpty());
    EXPECT_EQ(xasReadFile(SECRETS), "a b: PSK \"old\"\n");
}

TEST_F(VpnTest, StillWritesTheSecretsWhenTheFileCannotBeSaved)
{
    xasWriteFile(SECRETS, "a b: PSK \"old\"\n", 0600);
    const std::string before = xasReadFile(CONF);
    {
        const XasFault fault{"rename", EIO, "ipsec.conf.tmp -> "};
        EXPECT_EQ(update(xasTestVpn()), 1);
    }
    EXPECT_EQ(xasReplyText(reply), "3 Error saving new VPN config file");
    EXPECT_EQ(log.lines().back(), xasErrorLine("Error editing VPN config file\n"));
    EXPECT_THAT(shell.take(), ElementsAre(SED_PSK, SED_XAUTH));
    EXPECT_EQ(xasReadFile(SECRETS), PSK_LINE);
    EXPECT_EQ(xasReadFile(CONF), before);
}

TEST_F(VpnTest, KeepsOnlyTheGlobalPartWithoutATunnel)
{
    XasVpnPayload vpn = xasTestFullVpn();
    vpn.tunnel = 0;
    xasWriteFile(SECRETS, ": RSA key\na b: PSK \"x\"\n@joe: XAUTH \"y\"\n# end\n", 0600);
    EXPECT_EQ(update(vpn), 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_EQ(xasReadFile(CONF), GLOBAL + "\n");
    EXPECT_EQ(xasReadFile(SECRETS), ": RSA key\n# end\n");
    EXPECT_THAT(shell.take(), ElementsAre(SED_PSK, SED_XAUTH));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(VpnTest, MakesNoSecretsFileWithoutATunnel)
{
    XasVpnPayload vpn = xasTestVpn();
    vpn.tunnel = 0;
    EXPECT_EQ(update(vpn), 0);
    EXPECT_THAT(shell.take(), IsEmpty()) << "there are no old secrets to remove";
    EXPECT_FALSE(xasExists(SECRETS));
}

TEST_F(VpnTest, WritesTheSectionBehindTheGlobalPartAndKeepsTheOldFile)
{
    const std::string before = xasReadFile(CONF);
    EXPECT_EQ(update(xasTestVpn()), 0);
    EXPECT_EQ(xasReadFile(CONF), GLOBAL + "\n"
                                          "conn branch\n"
                                          "    authby=secret\n"
                                          "    left=%eth0\n"
                                          "    right=198.51.100.7\n"
                                          "    pfs=no\n"
                                          "    dpddelay=30\n"
                                          "    dpdtimeout=120\n"
                                          "    dpdaction=restart\n"
                                          "    auto=add\n"
                                          "    type=tunnel\n");
    EXPECT_EQ(xasReadFile(CONF + ".old"), before);
    EXPECT_EQ(xasReadFile(SECRETS), PSK_LINE);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(VpnTest, TakesTheAddressOfItsPort)
{
    const XasTestLink eth0{0};
    const XasTestLink eth1{1};
    ASSERT_EQ(std::system("ip address add 192.0.2.9/24 dev eth0"), 0);
    ASSERT_EQ(std::system("ip address add 203.0.113.8/24 dev eth1"), 0);
    XasVpnPayload vpn = xasTestVpn();
    EXPECT_EQ(update(vpn), 0);
    EXPECT_THAT(xasReadFile(CONF), HasSubstr("\n    left=192.0.2.9\n"));
    EXPECT_EQ(xasReadFile(SECRETS), "198.51.100.7 192.0.2.9: PSK \"s3cret\"\n");
    vpn.ifac = 2;
    EXPECT_EQ(update(vpn), 0);
    EXPECT_THAT(xasReadFile(CONF), HasSubstr("\n    left=203.0.113.8\n"));
    EXPECT_EQ(xasReadFile(SECRETS), "198.51.100.7 203.0.113.8: PSK \"s3cret\"\n");
}

TEST_F(VpnTest, NamesThePortWhoseAddressCannotEvenBeAskedFor)
{
    XasVpnPayload vpn = xasTestVpn();
    {
        const XasFault fault{"socket", EMFILE};
        EXPECT_EQ(update(vpn), 0);
        EXPECT_THAT(xasReadFile(CONF), HasSubstr("\n    left=%eth0\n"));
        vpn.ifac = 2;
        EXPECT_EQ(update(vpn), 0);
        EXPECT_THAT(xasReadFile(CONF), HasSubstr("\n    left=%eth1\n"));
    }
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("cannot get Eth1 IP address to add PSK to ipsec.secrets"),
                            xasErrorLine("cannot get Eth2 IP address to add PSK to ipsec.secrets")));
}

TEST_F(VpnTest, AppendsTheLocalPublicKeyOfAnRsaTunnelAndNoSecret)
{
    XasVpnPayload vpn = vpnOf(XAS_VPN_RSA);
    vpn.xauth = 1;
    EXPECT_EQ(update(vpn), 0);
    EXPECT_THAT(xasReadFile(CONF), EndsWith("    type=tunnel\n"
                                            "    rightrsasigkey=s3cret\n"
                                            "\tleftrsasigkey=0sAQKey\n"));
    EXPECT_THAT(shell.take(), ElementsAre(HOST_KEY));
    EXPECT_THAT(stubs.lines(), ElementsAre("/usr/sbin/ipsec showhostkey --left"));
    EXPECT_FALSE(xasExists(SECRETS));
}

TEST_F(VpnTest, OnlyLogsThatTheShellCannotBeRunForTheKey)
{
    const XasFault fault{"fork", EAGAIN};
    EXPECT_EQ(update(vpnOf(XAS_VPN_RSA)), 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("cannot add ZEL RSA public key to ipsec.conf")));
}

TEST_F(VpnTest, LogsNothingWhenTheKeyCommandFails)
{
    std::remove("/usr/sbin/ipsec");
    EXPECT_EQ(update(vpnOf(XAS_VPN_RSA)), 0);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(VpnTest, AppendsTheKeyToTheSystemsFileWhicheverIsListed)
{
    const std::string before = xasReadFile(CONF);
    EXPECT_EQ(updateFile("/etc/tunnel.conf", vpnOf(XAS_VPN_RSA)), 0);
    EXPECT_THAT(xasReadFile("/etc/tunnel.conf"), EndsWith("    rightrsasigkey=s3cret\n"));
    EXPECT_EQ(xasReadFile(CONF), before + "\tleftrsasigkey=0sAQKey\n");
}

TEST_F(VpnTest, WritesNothingSecretWithNeitherMethodAndNoLogin)
{
    EXPECT_EQ(update(vpnOf(2)), 0);
    EXPECT_THAT(shell.take(), IsEmpty());
    EXPECT_FALSE(xasExists(SECRETS));
}

TEST_F(VpnTest, ReplacesOldSecretsAndKeepsTheRest)
{
    xasWriteFile(SECRETS, "# PSK goes too\n: RSA key\n@old: XAUTH \"x\"\nc d: PSK \"y\"\n", 0600);
    EXPECT_EQ(update(xasTestFullVpn()), 0);
    EXPECT_EQ(xasReadFile(SECRETS), ": RSA key\n"
                                    "@branch.example @office.example: PSK \"s3cret\"\n"
                                    "@joe: XAUTH \"pass\"\n");
    EXPECT_THAT(shell.take(), ElementsAre(SED_PSK, SED_XAUTH));
    XasVpnPayload vpn = vpnOf(7);
    vpn.xauth = 1;
    xasSetFieldText(vpn.xauth_login, "ann");
    EXPECT_EQ(update(vpn), 0);
    EXPECT_EQ(xasReadFile(SECRETS), ": RSA key\n@ann: XAUTH \"\"\n");
    EXPECT_EQ(xasModeOf(SECRETS), 0600U);
}

TEST_F(VpnTest, OnlyLogsThatTheSecretsFileCannotBeOpened)
{
    ::mkdir(SECRETS.c_str(), 0700);
    EXPECT_EQ(update(xasTestVpn()), 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("cannot add Pre-Shared Key to ipsec.secrets")));
    ::rmdir(SECRETS.c_str());
}

TEST_F(VpnTest, OnlyLogsThatTheSecretsFileCannotBeWritten)
{
    ::mkdir("/tmp/full", 0700);
    ASSERT_EQ(std::system("mount -t tmpfs -o size=4k tmpfs /tmp/full"), 0);
    EXPECT_NE(std::system("head -c 8192 /dev/zero >/tmp/full/fill 2>/dev/null"), 0);
    ASSERT_EQ(::symlink("/tmp/full/secrets", SECRETS.c_str()), 0);
    stubs.put("/bin/sed"); // it would follow no link
    EXPECT_EQ(update(xasTestVpn()), 0);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("cannot add Pre-Shared Key to ipsec.secrets")));
    std::remove("/bin/sed");
    ::symlink("/.host/usr/bin/sed", "/bin/sed");
    EXPECT_EQ(std::system("umount /tmp/full"), 0);
}

TEST_F(VpnTest, MakesTheSecretsFilePrivateBeforeItIsWritten)
{
    ::umask(0);
    {
        const XasFault fault{"fchmod", EPERM, 1}; // the first call is for the other file
        EXPECT_EQ(update(xasTestVpn()), 0);
        ASSERT_EQ(fault.calls(), 2U);
    }
    EXPECT_FALSE(xasExists(SECRETS)) << "no secret goes into a file that may not be private";
    EXPECT_EQ(update(xasTestVpn()), 0);
    EXPECT_EQ(xasModeOf(SECRETS), 0600U);
}

TEST_F(VpnTest, ClosesASecretsFileThatOthersCouldRead)
{
    xasWriteFile(SECRETS, "# open\n", 0644);
    EXPECT_EQ(update(xasTestVpn()), 0);
    EXPECT_EQ(xasModeOf(SECRETS), 0600U);
    EXPECT_EQ(xasReadFile(SECRETS), "# open\n" + PSK_LINE);
}

TEST_F(VpnTest, LetsNobodyElseReadTheSecretsForAnInstant)
{
    ::umask(0);
    std::atomic<bool> done{false};
    std::atomic<unsigned> looks{0};
    std::atomic<mode_t> seen{0};
    std::thread watcher{[&] {
        struct stat status {};
        while (!done) {
            if (::stat(SECRETS.c_str(), &status) == 0) {
                seen |= status.st_mode & 07777U;
                ++looks;
            }
        }
    }};
    const XasVpnPayload vpn = xasTestFullVpn();
    for (int i = 0; i < 100 || (looks < 1000 && i < 2000); ++i) {
        update(vpn);
        if (i % 8 != 7) // now and then sed replaces the file
            std::remove(SECRETS.c_str());
    }
    done = true;
    watcher.join();
    EXPECT_GT(looks, 0U);
    EXPECT_EQ(seen & 0177U, 0U);
}
