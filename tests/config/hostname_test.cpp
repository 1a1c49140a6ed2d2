#include "config/hostname.h"

#include "support/apps.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"
#include "support/message.h"
#include "support/reply.h"

#include <cerrno>
#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const std::string OLD_HOSTS = "127.0.0.1\told\tlocalhost.localdomain\tlocalhost\n"
                              "::1\tlocalhost\n"
                              "192.0.2.1\tother\n";
const std::string NEW_HOSTS = "127.0.0.1\tconsole1.example.org\tlocalhost.localdomain\tlocalhost\n"
                              "::1\tlocalhost\n"
                              "192.0.2.1\tother\n";
const std::string OLD_NETWORK = "NETWORKING=yes\nHOSTNAME=old\nGATEWAY=192.0.2.254\nNETWORKING_IPV6=no\n";
const std::string NEW_NETWORK =
    "NETWORKING=yes\nHOSTNAME=console1.example.org\nGATEWAY=192.0.2.254\nNETWORKING_IPV6=no\n";

XasHostnamePayload payloadOf(std::string_view hostname, std::string_view domain)
{
    XasHostnamePayload payload{};
    hostname.copy(payload.hostname, sizeof payload.hostname);
    domain.copy(payload.domain, sizeof payload.domain);
    return payload;
}

/** The handler with its four files. */
class HostnameHandler : public XasFilesTest {
  protected:
    HostnameHandler()
    {
        dir.write("hosts", OLD_HOSTS);
        dir.write("hostname", "old\n");
        dir.write("network", OLD_NETWORK);
        dir.write("domain", "STATIC_DOMAIN=old\n");
    }

    /** Applies a name, the list of files lacking the TYPE `without`. */
    int apply(std::string_view hostname, std::string_view domain, std::string_view without = {})
    {
        std::vector<std::pair<std::string, std::string>> files;
        for (const char *type : {"hosts", "hostname", "network", "domain"}) {
            if (type != without)
                files.emplace_back(type, dir.path(type));
        }
        const XasCfgFileList cfgFiles = xasTestCfgFiles(files);
        XasMessage msg = XasMessageBuilder{XMSG_HOSTNAME}.payload(payloadOf(hostname, domain));
        return xasUpdateHostnameCfg(&msg, &cfgFiles, &reply);
    }

    void expectAllOld() const
    {
        EXPECT_EQ(dir.read("hosts"), OLD_HOSTS);
        EXPECT_EQ(dir.read("hostname"), "old\n");
        EXPECT_EQ(dir.read("network"), OLD_NETWORK);
        EXPECT_EQ(dir.read("domain"), "STATIC_DOMAIN=old\n");
        for (const char *backup : {"hosts.old", "hostname.old", "network.old", "domain.old"})
            EXPECT_FALSE(dir.has(backup)) << backup;
    }

    XasLogCapture log;
    XasReplyStatus reply;
};

} // namespace

TEST(FullHostname, IsTheNameAloneWithoutADomain)
{
    EXPECT_EQ(xasFullHostname(payloadOf("console1", "")), "console1");
    EXPECT_EQ(xasFullHostname(payloadOf("a.b", "")), "a.b");
}

TEST(FullHostname, IsTheNameADotAndTheDomain)
{
    EXPECT_EQ(xasFullHostname(payloadOf("console1", "example.org")), "console1.example.org");
    EXPECT_EQ(xasFullHostname(payloadOf("", "example.org")), ".example.org");
}

TEST(FullHostname, EndsTheNameWithItsField)
{
    EXPECT_EQ(xasFullHostname(payloadOf(std::string(65, 'h'), "d")), std::string(65, 'h') + ".d");
}

TEST(FullHostname, IsKeptWithin255Characters)
{
    EXPECT_EQ(xasFullHostname(payloadOf("h", std::string(253, 'd'))), "h." + std::string(253, 'd'));
    EXPECT_EQ(xasFullHostname(payloadOf("h", std::string(2000, 'd'))), "h." + std::string(253, 'd'));
}

TEST(HostsText, BeginsWithTheLoopbackLineAlsoForAnEmptyFile)
{
    EXPECT_EQ(xasHostsText("", "a"), "127.0.0.1\ta\tlocalhost.localdomain\tlocalhost\n");
}

TEST(HostsText, LosesEveryOldLoopbackLineWhereverTheWordsStand)
{
    EXPECT_EQ(xasHostsText("# localhost localhost.localdomain x127.0.0.1x\n"
                           "127.0.0.1 localhost.localdomain\n"
                           "1.2.3.4 b\n",
                           "a"),
              "127.0.0.1\ta\tlocalhost.localdomain\tlocalhost\n"
              "1.2.3.4 b\n")
        << "the third word is part of the second";
}

TEST(HostsText, KeepsLinesThatLackOneOfTheThreeWords)
{
    const std::string kept = "127.0.0.1\tlocalhost\n::1\tlocalhost.localdomain localhost\n\n# comment\nlast";
    EXPECT_EQ(xasHostsText(kept, "a"), "127.0.0.1\ta\tlocalhost.localdomain\tlocalhost\n" + kept);
}

TEST(DomainText, IsEmptyWithoutADotAndBehindTheLastCharacter)
{
    EXPECT_EQ(xasDomainText("console1"), "");
    EXPECT_EQ(xasDomainText(""), "");
    EXPECT_EQ(xasDomainText("console1."), "");
    EXPECT_EQ(xasDomainText("."), "");
}

TEST(DomainText, IsWhatStandsBehindTheFirstDot)
{
    EXPECT_EQ(xasDomainText("console1.example.org"), "STATIC_DOMAIN=example.org\n");
    EXPECT_EQ(xasDomainText("a.b"), "STATIC_DOMAIN=b\n");
    EXPECT_EQ(xasDomainText("a..b"), "STATIC_DOMAIN=.b\n");
}

TEST(HostnameDeathTest, NeedsItsArgumentsAndItsMessageType)
{
    XasReplyStatus reply;
    const XasCfgFileList cfgFiles;
    XasMessage msg = XasMessageBuilder{XMSG_DNS};
    EXPECT_DEATH(xasUpdateHostnameCfg(nullptr, &cfgFiles, &reply), "msg != \\(\\(void \\*\\)0\\)");
    EXPECT_DEATH(xasUpdateHostnameCfg(&msg, &cfgFiles, &reply), "XMSG_HOSTNAME == msg->xH.msgtype");
    msg.xH.msgtype = XMSG_HOSTNAME;
    EXPECT_DEATH(xasUpdateHostnameCfg(&msg, nullptr, &reply), "cfgFiles != \\(\\(void \\*\\)0\\)");
    EXPECT_DEATH(xasEditHostsFile("/x", nullptr, &reply), "hostname != \\(\\(void \\*\\)0\\)");
    EXPECT_DEATH(xasEditHostnameFile("/x", nullptr, &reply), "hostname != \\(\\(void \\*\\)0\\)");
    EXPECT_DEATH(xasEditHostsFile(nullptr, "x", &reply), "cfgFileName != \\(\\(void \\*\\)0\\)");
}

TEST_F(HostnameHandler, FailsWithoutTheHostsFile)
{
    EXPECT_EQ(apply("console1", "example.org", "hosts"), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Error determining hosts file");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error determining hosts config file\n")));
    expectAllOld();
}

TEST_F(HostnameHandler, RollsTheHostsFileBackWithoutTheHostNameFile)
{
    EXPECT_EQ(apply("console1", "example.org", "hostname"), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Error determining hostname config file");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error determining config file for hostname\n")));
    expectAllOld();
}

TEST_F(HostnameHandler, RollsTwoFilesBackWithoutTheNetworkFile)
{
    EXPECT_EQ(apply("console1", "example.org", "network"), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Error determining network config file");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error determining network config file\n")));
    expectAllOld();
}

TEST_F(HostnameHandler, RollsThreeFilesBackWithoutTheDomainFile)
{
    EXPECT_EQ(apply("console1", "example.org", "domain"), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Error determining static domain configuration file");
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error determining static domain configuration file\n")));
    expectAllOld();
}

TEST_F(HostnameHandler, TriesToRestoreTheHostsFileWhoseOwnEditFailed)
{
    std::remove(dir.path("hosts").c_str());
    EXPECT_EQ(apply("console1", "example.org"), 1);
    EXPECT_EQ(xasReplyText(reply), "2 Error opening hosts config file");
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error opening config file \"" + dir.path("hosts") + "\"\n"),
                            xasErrorLine("Error editing hosts file\n"),
                            xasErrorLine("Error restoring old config file \"" + dir.path("hosts") + "\"\n")));
}

TEST_F(HostnameHandler, RollsTheHostsFileBackWhenTheHostNameFileIsNotThere)
{
    std::remove(dir.path("hostname").c_str());
    EXPECT_EQ(apply("console1", "example.org"), 1);
    EXPECT_EQ(xasReplyText(reply), "2 Error opening hostname config file");
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error opening config file \"" + dir.path("hostname") + "\"\n"),
                            xasErrorLine("Error editing hostname file\n")));
    EXPECT_EQ(dir.read("hosts"), OLD_HOSTS);
}

TEST_F(HostnameHandler, RollsTwoFilesBackWhenTheNetworkFileIsNotThere)
{
    std::remove(dir.path("network").c_str());
    EXPECT_EQ(apply("console1", "example.org"), 1);
    EXPECT_EQ(xasReplyText(reply), "2 Error opening network config file");
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error opening config file \"" + dir.path("network") + "\"\n"),
                            xasErrorLine("Error editing network config file\n")));
    EXPECT_EQ(dir.read("hosts"), OLD_HOSTS);
    EXPECT_EQ(dir.read("hostname"), "old\n");
}

TEST_F(HostnameHandler, RollsThreeFilesBackWhenTheDomainFileIsNotThere)
{
    std::remove(dir.path("domain").c_str());
    EXPECT_EQ(apply("console1", "example.org"), 1);
    EXPECT_EQ(xasReplyText(reply), "2 Error opening static domain configuration file");
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error opening config file \"" + dir.path("domain") + "\"\n"),
                            xasErrorLine("Error editing static domain configuration file\n")));
    EXPECT_EQ(dir.read("hosts"), OLD_HOSTS);
    EXPECT_EQ(dir.read("hostname"), "old\n");
    EXPECT_EQ(dir.read("network"), OLD_NETWORK);
}

TEST_F(HostnameHandler, ReportsAFileThatCannotBeSaved)
{
    struct Case {
        unsigned renamesBefore; // each save before it takes two
        const char *reason;
        const char *log;
    };
    for (const Case &c :
         {Case{1, "Error saving new hosts file", "Error editing hosts file\n"},
          Case{3, "Error saving new hostname config file", "Error editing hostname file\n"},
          Case{5, "Error saving new network config file", "Error editing network config file\n"},
          Case{7, "Error saving new static domain config file",
               "Error editing static domain configuration file\n"}}) {
        reply = {};
        log.take();
        const XasFault fault{"rename", EIO, c.renamesBefore, 1};
        EXPECT_EQ(apply("console1", "example.org"), 1);
        EXPECT_EQ(xasReplyText(reply), std::string{"3 "} + c.reason);
        EXPECT_THAT(log.lines(), testing::Contains(xasErrorLine(c.log)));
        EXPECT_EQ(dir.read("hosts"), OLD_HOSTS) << c.reason;
        EXPECT_EQ(dir.read("network"), OLD_NETWORK) << c.reason;
    }
}

TEST_F(HostnameHandler, WritesAllFourFilesAndKeepsTheirOldContent)
{
    EXPECT_EQ(apply("console1", "example.org"), 0);
    EXPECT_EQ(dir.read("hosts"), NEW_HOSTS);
    EXPECT_EQ(dir.read("hostname"), "console1.example.org\n");
    EXPECT_EQ(dir.read("network"), NEW_NETWORK);
    EXPECT_EQ(dir.read("domain"), "STATIC_DOMAIN=example.org\n");
    EXPECT_EQ(dir.read("hosts.old"), OLD_HOSTS);
    EXPECT_EQ(dir.read("hostname.old"), "old\n");
    EXPECT_EQ(dir.read("network.old"), OLD_NETWORK);
    EXPECT_EQ(dir.read("domain.old"), "STATIC_DOMAIN=old\n");
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(HostnameHandler, EmptiesTheDomainFileForANameWithoutDots)
{
    EXPECT_EQ(apply("console1", ""), 0);
    EXPECT_EQ(dir.read("domain"), "");
    EXPECT_EQ(dir.read("hostname"), "console1\n");
}

TEST_F(HostnameHandler, CutsTheNameAt65CharactersInTheNetworkFileAlone)
{
    const std::string name(60, 'h');
    EXPECT_EQ(apply(name, "example.org"), 0);
    EXPECT_EQ(dir.read("hostname"), name + ".example.org\n");
    EXPECT_EQ(dir.read("network"),
              "NETWORKING=yes\nHOSTNAME=" + name + ".exam\nGATEWAY=192.0.2.254\nNETWORKING_IPV6=no\n");
    EXPECT_EQ(dir.read("domain"), "STATIC_DOMAIN=example.org\n");
}
