// A DNS message through the built daemon: whole files, and a failure.
#include "support/message_files.h"

namespace {

const std::string SERVERS = "192.0.2.250\n";
const std::string PRECEDENCE = "IPV4_PRECEDENCE=no";

const XasLogLine UPDATE_FAILED = xasErrorLine("Error updating configuration for application: dns\n");

XasMessageBuilder dnsMessage()
{
    return XasMessageBuilder{XMSG_DNS}.id(9);
}

class DaemonDns : public XasMessageFilesTest {
  protected:
    DaemonDns() : XasMessageFilesTest{"dns", {"resolv", "dnsprec"}}
    {
        files.write("resolv", SERVERS);
        files.write("dnsprec", PRECEDENCE);
    }
};

} // namespace

TEST_F(DaemonDns, WritesBothFilesAndTellsTheLoggerAndTheAgent)
{
    start();
    EXPECT_EQ(outcome(dnsMessage().set("dns1=192.0.2.53 dns2=2001:db8::53 dns3=192.0.2.54 prefer_ipv4=1")),
              XAS_APPLIED);
    EXPECT_EQ(files.read("resolv"), "192.0.2.53\n2001:db8::53\n192.0.2.54\n");
    EXPECT_EQ(files.read("dnsprec"), "IPV4_PRECEDENCE=yes");
    EXPECT_EQ(files.read("resolv.old"), SERVERS);
    EXPECT_EQ(files.read("dnsprec.old"), PRECEDENCE);
    EXPECT_EQ(files.names().size(), 4U) << "nothing else is left";
    EXPECT_THAT(commands(), ElementsAre("/bin/killall -SIGHUP syslogd", "/bin/killall -SIGHUP snmpd"));
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(DaemonDns, FailsWithoutTheServersFileInTheList)
{
    start("resolv");
    EXPECT_EQ(outcome(dnsMessage().set("dns1", "192.0.2.53").set("prefer_ipv4", "yes")),
              "0 1 Error determining dns config file");
    EXPECT_THAT(logLines(),
                ElementsAre(xasErrorLine("Error determining config file for dns\n"), UPDATE_FAILED));
    EXPECT_EQ(files.read("dnsprec"), PRECEDENCE);
    EXPECT_THAT(commands(), ElementsAre("/bin/killall -SIGHUP syslogd", "/bin/killall -SIGHUP snmpd"));
}
