// A host-name message through the built daemon: whole files, and two failures.
#include "support/message_files.h"

namespace {

const std::string HOSTS = "# local\n127.0.0.1\told.name\tlocalhost.localdomain\tlocalhost\n"
                          "::1\tlocalhost\n192.0.2.9\tprinter\n";
const std::string NETWORK = "NETWORKING=yes\nHOSTNAME=old.name\nGATEWAY=192.0.2.1\n";

const XasLogLine UPDATE_FAILED = xasErrorLine("Error updating configuration for application: hostname\n");

XasMessage hostnameMessage(std::string_view hostname, std::string_view domain)
{
    return XasMessageBuilder{XMSG_HOSTNAME}.id(9).set("hostname", hostname).set("domain", domain);
}

class DaemonHostname : public XasMessageFilesTest {
  protected:
    DaemonHostname() : XasMessageFilesTest{"hostname", {"hosts", "hostname", "network", "domain"}}
    {
        files.write("hosts", HOSTS);
        files.write("hostname", "old.name\n");
        files.write("network", NETWORK);
        files.write("domain", "STATIC_DOMAIN=name\n");
    }

    /** Sends the usual message, which fails. */
    std::string failure() { return outcome(hostnameMessage("console1", "example.org")); }

    void expectOldFiles(const std::vector<std::string> &oldFiles)
    {
        const std::map<std::string, std::string> old = {{"hosts", HOSTS},
                                                        {"hostname", "old.name\n"},
                                                        {"network", NETWORK},
                                                        {"domain", "STATIC_DOMAIN=name\n"}};
        for (const std::string &file : oldFiles) {
            EXPECT_EQ(files.read(file), old.at(file));
            EXPECT_FALSE(files.has(file + ".old")) << file;
        }
    }
};

} // namespace

TEST_F(DaemonHostname, WritesAllFourFilesAndTellsTheLogger)
{
    start();
    EXPECT_EQ(outcome(hostnameMessage("console1", "example.org")), "1 0 ");
    EXPECT_EQ(files.read("hosts"), "127.0.0.1\tconsole1.example.org\tlocalhost.localdomain\tlocalhost\n"
                                   "# local\n::1\tlocalhost\n192.0.2.9\tprinter\n");
    EXPECT_EQ(files.read("hostname"), "console1.example.org\n");
    EXPECT_EQ(files.read("network"), "NETWORKING=yes\nHOSTNAME=console1.example.org\nGATEWAY=192.0.2.1\n");
    EXPECT_EQ(files.read("domain"), "STATIC_DOMAIN=example.org\n");
    EXPECT_EQ(files.read("hosts.old"), HOSTS);
    EXPECT_EQ(files.read("hostname.old"), "old.name\n");
    EXPECT_EQ(files.read("network.old"), NETWORK);
    EXPECT_EQ(files.read("domain.old"), "STATIC_DOMAIN=name\n");
    EXPECT_EQ(files.names().size(), 8U) << "nothing else is left";
    EXPECT_THAT(commands(), ElementsAre("/bin/killall -SIGHUP syslogd"));
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(DaemonHostname, TakesADomainOutOfTheHostName)
{
    start();
    EXPECT_EQ(outcome(hostnameMessage("a.b", "")), "1 0 ");
    EXPECT_EQ(files.read("hostname"), "a.b\n");
    EXPECT_EQ(files.read("domain"), "STATIC_DOMAIN=b\n");
    EXPECT_EQ(outcome(hostnameMessage("a.", "")), "1 0 ");
    EXPECT_EQ(files.read("hostname"), "a.\n");
    EXPECT_EQ(files.read("domain"), "");
    EXPECT_EQ(outcome(hostnameMessage("plain", "")), "1 0 ");
    EXPECT_EQ(files.read("hostname"), "plain\n");
    EXPECT_EQ(files.read("domain"), "");
    EXPECT_EQ(files.read("domain.old"), "") << "one level of backup";
}

TEST_F(DaemonHostname, CutsALongNameInTheNetworkFileAlone)
{
    start();
    const std::string host(65, 'h'); // fills its field without a NUL
    EXPECT_EQ(outcome(hostnameMessage(host, "example.org")), "1 0 ");
    EXPECT_EQ(files.read("hostname"), host + ".example.org\n");
    EXPECT_EQ(files.read("network"), "NETWORKING=yes\nHOSTNAME=" + host + "\nGATEWAY=192.0.2.1\n");
    EXPECT_EQ(files.read("domain"), "STATIC_DOMAIN=example.org\n");

    const std::string shorter(60, 'h');
    EXPECT_EQ(outcome(hostnameMessage(shorter, "example.org")), "1 0 ");
    EXPECT_EQ(files.read("hostname"), shorter + ".example.org\n");
    EXPECT_EQ(files.read("network"), "NETWORKING=yes\nHOSTNAME=" + shorter + ".exam\nGATEWAY=192.0.2.1\n");
}

TEST_F(DaemonHostname, FailsWithoutTheHostsFileInTheList)
{
    start("hosts");
    EXPECT_EQ(failure(), "0 1 Error determining hosts file");
    EXPECT_THAT(logLines(),
                ElementsAre(xasErrorLine("Error determining hosts config file\n"), UPDATE_FAILED));
    expectOldFiles({"hosts", "hostname", "network", "domain"});
    EXPECT_THAT(commands(), ElementsAre("/bin/killall -SIGHUP syslogd")) << "also after a failure";
}

TEST_F(DaemonHostname, ReportsALineThatCannotBeWrittenByTheLogAlone)
{
    const XasSmallDisk disk;
    std::string large;
    while (large.size() < XasSmallDisk::FILE_SIZE)
        large += std::string(63, '#') + "\n";
    elsewhere["hosts"] = disk.write("hosts", large);
    start();
    EXPECT_EQ(failure(), "0 0 ");
    EXPECT_THAT(logLines(), ElementsAre(xasErrorLine("Error printing line to file\n"),
                                        xasErrorLine("Error printing other line to hostname config file\n"),
                                        xasErrorLine("Error editing hosts file\n"), restoreFailed("hosts"),
                                        UPDATE_FAILED));
    EXPECT_EQ(disk.read("hosts"), large);
    expectOldFiles({"hostname", "network", "domain"});
}
