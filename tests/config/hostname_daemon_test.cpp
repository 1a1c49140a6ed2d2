// A host-name message through the built daemon: whole files.
#include "support/message_files.h"

namespace {

const std::string HOSTS = "# local\n127.0.0.1\told.name\tlocalhost.localdomain\tlocalhost\n"
                          "::1\tlocalhost\n192.0.2.9\tprinter\n";
const std::string NETWORK = "NETWORKING=yes\nHOSTNAME=old.name\nGATEWAY=192.0.2.1\n";

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
