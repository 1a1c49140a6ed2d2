// SNMP, NFS and CIFS messages through the built daemon: files, acknowledgement and log; and a real agent that
// it starts and stops.
#include "support/hosts.h"
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

class DaemonSnmp : public XasMessageFilesTest {
  protected:
    DaemonSnmp() : XasMessageFilesTest{"snmp", {"snmp"}} { files.write("snmp", "syscontact me\n"); }
};

class DaemonNfs : public XasMessageFilesTest {
  protected:
    DaemonNfs() : XasMessageFilesTest{"nfs", {"nfsServers", "fstab"}}
    {
        std::filesystem::remove_all("/var/nfsmounts");
        files.write("nfsServers", "old\n");
        files.write("fstab", "proc /proc proc defaults 0 0\n");
    }

    static XasMessageBuilder message(std::string_view remote)
    {
        return XasMessageBuilder{XMSG_NFS}
            .set("mount1.rem_dir", remote)
            .set("mount1.local_dir", "/logs")
            .set("mount1.mount", 1);
    }
};

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

TEST_F(DaemonSnmp, RefusesAFileThatCannotBePutInPlace)
{
    files.putDirectory("snmp");
    start();
    EXPECT_EQ(outcome(snmpMessage("reader")), "0 3 Error saving new SNMP config file");
    EXPECT_THAT(logLines(),
                ElementsAre(renameNewFailed("snmp"), xasErrorLine("Error editing SNMP config file\n"),
                            updateFailed("snmp")));
}

TEST_F(DaemonSnmp, WritesItsFileForNobodyElse)
{
    start();
    EXPECT_EQ(outcome(snmpMessage("reader")), XAS_APPLIED);
    EXPECT_EQ(files.read("snmp"), "syscontact  noc\nrocommunity  reader\nrwcommunity  writer\n");
    EXPECT_EQ(xasModeOf(files.path("snmp")), 0600U);
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(DaemonNfs, RefusesATableThatIsNotThereAndKeepsTheServers)
{
    files.remove("fstab");
    start();
    EXPECT_EQ(outcome(message("127.0.0.1:/logs")), "0 2 Error opening NFS config file");
    EXPECT_THAT(logLines(),
                ElementsAre(openFailed("fstab"), xasErrorLine("Error editing NFS fstab config file\n"),
                            updateFailed("nfs")));
    EXPECT_EQ(files.read("nfsServers"), "NFS_SERVERS=\"127.0.0.1\"\n");
}

TEST_F(DaemonNfs, GoesOnAtWorkAfterAShareWithoutARemoteDirectory)
{
    start();
    const XasMessage msg =
        message("").set("mount2.rem_dir=127.0.0.1:/home mount2.local_dir=/home mount2.mount=1");
    EXPECT_EQ(outcome(msg), XAS_APPLIED);
    EXPECT_THAT(logLines(), ElementsAre(xasWarningLine("Error extracting host from NFS remote path\n"),
                                        xasWarningLine("Ignoring NFS mount with empty path\n")));
    EXPECT_EQ(files.read("fstab"), "proc /proc proc defaults 0 0\n");
    EXPECT_EQ(outcome(message("127.0.0.1:/logs")), XAS_APPLIED);
    EXPECT_EQ(files.read("fstab"),
              "proc /proc proc defaults 0 0\n"
              "127.0.0.1:/logs\t /var/nfsmounts/logs\t nfs\t defaults,nodev,soft,intr,nolock,ro 0 0\n");
}

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

TEST_F(DaemonCifs, WritesBothFiles)
{
    start();
    EXPECT_EQ(outcome(message()), XAS_APPLIED);
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(files.read("smb"), "   workgroup = ENG\n");
    EXPECT_EQ(files.read("smbpasswd"), "# passwords\ncifsuser:100:LANMAN:NT:[U          ]:LCT-1:Cifs User\n");
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
