// Messages with a text that would break a file or a command: refused before anything is done.
#include "dispatch/settings.h"
#include "support/dispatcher_fixture.h"
#include "support/files.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/** Every application is there and runs, so that anything done to one would be seen. */
class RefusedTexts : public XasDispatcherTest {
  protected:
    RefusedTexts()
    {
        std::vector<XasTestApp> all;
        for (const XasSetting &setting : xasSettings()) {
            if (setting.application.empty())
                continue;
            all.push_back(scripted(std::string{setting.application}));
            all.back().cfgFiles = {{"hosts", files.write("hosts", "old\n")}};
        }
        apps = xasTestAppList(all);
        for (XasApp &each : apps)
            each.running = 1;
    }

    /** The message is answered with the field's name, and nothing else is done. */
    void expectRefused(const XasMessageBuilder &msg, const std::string &field)
    {
        SCOPED_TRACE(field);
        log.take();
        EXPECT_EQ(outcome(XasMessageBuilder{msg}.id(9)), "0 5 Invalid character in " + field);
        EXPECT_THAT(log.take(), ElementsAre(xasErrorLine("Invalid character in " + field + "\n")));
        EXPECT_THAT(stubs.lines(), IsEmpty());
        EXPECT_EQ(files.read("hosts"), "old\n");
        EXPECT_THAT(files.names(), ElementsAre("hosts"));
        for (const XasApp &each : apps)
            EXPECT_EQ(each.running, 1);
    }

    XasTestDir files;
};

} // namespace

TEST_F(RefusedTexts, AddNoDirectiveToTheAgentsFile)
{
    expectRefused(XasMessageBuilder{XMSG_SNMP}.raw("syscontact", "me\nexec x /bin/sh"), "syscontact");
}

TEST_F(RefusedTexts, AddNoLineToTheMountTable)
{
    expectRefused(
        XasMessageBuilder{XMSG_NFS}.set("mount1.mount=yes").raw("mount1.local_dir", "/a\n/dev/sda / ext4"),
        "mount1.local_dir");
    expectRefused(XasMessageBuilder{XMSG_NFS}.set("mount3.mount=yes mount3.local_dir=/a/../../etc"),
                  "mount3.local_dir");
}

TEST_F(RefusedTexts, PutNoCommandIntoFilesThatShellsRead)
{
    expectRefused(XasMessageBuilder{XMSG_HOSTNAME}.set("hostname", "x;reboot"), "hostname");
    expectRefused(XasMessageBuilder{XMSG_HOSTNAME}.set("hostname=a").set("domain", "$(reboot)"), "domain");
    expectRefused(XasMessageBuilder{XMSG_NIS}.set("domain", "a b"), "domain");
    expectRefused(XasMessageBuilder{XMSG_NIS}.raw("master", std::string("\1\0\0\0\0\0\0\0`x`", 11)),
                  "master");
}

TEST_F(RefusedTexts, MakeNoSecondAccount)
{
    expectRefused(XasMessageBuilder{XMSG_USER}.set("login=a").raw("password", "x:0:0::/:/bin/sh\nroot2:"),
                  "password");
    expectRefused(XasMessageBuilder{XMSG_USER}.raw("login", "a\nb"), "login");
    expectRefused(XasMessageBuilder{XMSG_USER}.set("login=a").raw("escseq", "a\nb"), "escseq");
}

TEST_F(RefusedTexts, CutNoLineOfTheLoginFiles)
{
    expectRefused(XasMessageBuilder{XMSG_TACACS}.set("server1_secret", "a#b"), "server1_secret");
    expectRefused(XasMessageBuilder{XMSG_RADIUS}.set("enabled=yes").set("secret1", "a b"), "secret1");
    expectRefused(XasMessageBuilder{XMSG_KERBEROS}.set("kdc", "."), "kdc");
    expectRefused(XasMessageBuilder{XMSG_CIFS}.set("enabled=yes").set("nt_pwd", "A:B"), "nt_pwd");
    expectRefused(XasMessageBuilder{XMSG_VPN}.set("tunnel=yes auth=psk").set("auth_key", "a\"b"), "auth_key");
}

TEST_F(RefusedTexts, ReachNoCommandLineAsAnOption)
{
    expectRefused(XasMessageBuilder{XMSG_IPFILTER_SET}.set("name", "-F"), "name");
    expectRefused(XasMessageBuilder{XMSG_IPFILTER_ASSIGN}.set("filterName", "-v"), "filterName");
}

TEST_F(RefusedTexts, LeadToNoFileOutsideTheDirectoryOfZones)
{
    expectRefused(XasMessageBuilder{XMSG_TIMEZONE}.set("zone", "../../etc/shadow"), "zone");
}

TEST_F(RefusedTexts, AreRefusedAlsoWhenTheApplicationIsNotInTheList)
{
    apps.clear();
    expectRefused(XasMessageBuilder{XMSG_HOSTNAME}.set("hostname", "a b"), "hostname");
}

TEST_F(RefusedTexts, OfATypeThatIsNotAnsweredAreOnlyLogged)
{
    EXPECT_EQ(process(XasMessageBuilder{XMSG_NOTIFY}.set("code=link-up").raw("text", "Eth1\x1B[2J")), 0);
    EXPECT_TRUE(isSilent());
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Invalid character in text\n")));
    EXPECT_THAT(stubs.lines(), IsEmpty());
}

TEST_F(RefusedTexts, DoNotCountInTypesWithoutARow)
{
    EXPECT_EQ(outcome(XasMessageBuilder{XMSG_SSH}.bytes(120, "\n\n\n\n")), XAS_FAILED);
    EXPECT_THAT(log.lines(), IsEmpty());
}
