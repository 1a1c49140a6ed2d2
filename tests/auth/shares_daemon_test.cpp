// SNMP, NFS and CIFS messages through the built daemon: files, acknowledgement and log; and a real agent that
// it starts and stops.
#include "support/message_files.h"
#include "support/snmp.h"

namespace {

XasLogLine updateFailed(const std::string &application)
{
    return xasErrorLine("Error updating configuration for application: " + application + "\n");
}

/** One read-only community, no traps. */
XasMessageBuilder snmpMessage(std::string_view community)
{
    return XasMessageBuilder{XMSG_SNMP}
        .set("enabled=1 trap1= trap2= syscontact=noc")
        .set("ro_community", community)
        .set("rw_community", "writer");
}

class DaemonCifs : public XasMessageFilesTest {
  protected:
    DaemonCifs() : XasMessageFilesTest{"samba", {"smb", "smbpasswd"}}
    {
        files.write("smb", "workgroup = OLD\n");
        files.write("smbpasswd", "# passwords\n");
    }

    static XasMessageBuilder message()
    {
        return XasMessageBuilder{XMSG_CIFS}.set(
            "enabled=1 lanman_pwd=LANMAN nt_pwd=NT lct_field=LCT-1 workgroup=ENG");
    }
};

/** The built daemon with a real SNMP agent as its application. */
class DaemonAgent : public XasFilesTest {
  protected:
    DaemonAgent()
    {
        xasRunShell("ip link set lo up");
        conf = dir.write("snmpd.conf", "agentaddress udp:127.0.0.1:161\nsyscontact x\n");
        const std::string libraries = xasRunShell("printf %s \"$LD_LIBRARY_PATH\"").output;
        const std::string agent = dir.write("agent",
                                            "#!/bin/sh\nexport LD_LIBRARY_PATH=" + libraries + "\n" +
                                                xasSnmpAgentCommand(conf, "-Lf /dev/null") + "\n",
                                            0755);
        daemon.start({{.name = "snmp", .exes = {agent}, .cfgFiles = {{"snmp", conf}}}});
    }

    /** What a community is told; the agent has five seconds to begin. */
    static std::string contact(const std::string &community, const char *tries = "20")
    {
        return xasRunSnmpClient("snmpget", std::string{"-v2c -Oqv -t 0.25 -r "} + tries + " -c " + community +
                                               " 127.0.0.1 .1.3.6.1.2.1.1.4.0");
    }

    std::string conf;
    XasTestDaemon daemon;
};

} // namespace

TEST_F(DaemonCifs, RefusesAPasswordThatLacksAPartAndRestoresSmbConf)
{
    start();
    EXPECT_EQ(outcome(message().set("lct_field", "")), "0 1 Invalid samba password");
    EXPECT_THAT(logLines(),
                ElementsAre(xasErrorLine("Invalid samba password, lanman_pwd = LANMAN, nt_pwd = NT, "
                                         "lct_field = \n"),
                            xasErrorLine("Error editing smbpasswd file\n"), updateFailed("samba")));
    EXPECT_EQ(files.read("smb"), "workgroup = OLD\n");
    EXPECT_EQ(files.read("smbpasswd"), "# passwords\n");
}

TEST_F(DaemonAgent, AnswersWithItsLatestFileAndNoMoreOnceItIsSwitchedOff)
{
    EXPECT_EQ(daemon.outcome(snmpMessage("first")), XAS_APPLIED);
    EXPECT_EQ(contact("first"), "\"noc\"\n");
    EXPECT_EQ(daemon.outcome(snmpMessage("second")), XAS_APPLIED);
    EXPECT_EQ(contact("second"), "\"noc\"\n");
    EXPECT_THAT(contact("first", "0"), HasSubstr("Timeout: No Response"));
    EXPECT_EQ(daemon.outcome(snmpMessage("third").set("enabled", 0)), XAS_APPLIED);
    for (const char *community : {"second", "third"})
        EXPECT_THAT(contact(community, "0"), HasSubstr("Timeout: No Response"));
    EXPECT_EQ(xasReadFile(conf), "agentaddress udp:127.0.0.1:161\nsyscontact  noc\nrocommunity  third\n"
                                 "rwcommunity  writer\n");
}
