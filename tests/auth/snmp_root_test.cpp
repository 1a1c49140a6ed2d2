// The handler of XMSG_SNMP: which byte of the message goes where, failures, and when the agent is started.
#include "auth/snmp.h"
#include "support/dispatcher_fixture.h"
#include "support/reply.h"

namespace {

constexpr const char *OLD_TEXT = "syslocation x\nsyscontact x\nrouser x\nrwuser x\ntrapcommunity x\n";

/** Every field with a value of its own. */
XasMessageBuilder message()
{
    return XasMessageBuilder{XMSG_SNMP}.id(77).set(
        "enabled=1 alarm_delay=30 trap1=10.0.0.9 trap2=traps.example.org syslocation=location "
        "syscontact=contact v3user=v3user v3pass=v3pass v3phrase=v3phrase v3rwuser=v3rwuser "
        "v3rwpass=v3rwpass v3rwphrase=v3rwphrase v3security=2 v3auth=1 v3encrypt=0 ro_community=ro "
        "rw_community=rw trap_community=trap community_mode=0");
}

constexpr const char *NEW_TEXT = "syslocation  location\n"
                                 "syscontact  contact\n"
                                 "rouser  v3user priv\n"
                                 "createUser v3user SHA v3pass DES v3phrase\n"
                                 "rwuser  v3rwuser priv\n"
                                 "createUser v3rwuser SHA v3rwpass DES v3rwphrase\n"
                                 "trapcommunity  trap\n"
                                 "rocommunity  ro\n"
                                 "rwcommunity  rw\n"
                                 "trapsink 10.0.0.9\n"
                                 "trap2sink 10.0.0.9\n"
                                 "trapsink traps.example.org\n"
                                 "trap2sink traps.example.org\n";

class UpdateSnmp : public XasFilesTest {
  protected:
    int update(const XasMessageBuilder &builder)
    {
        XasMessage msg = builder;
        const XasCfgFileList list = xasTestCfgFiles({{"other", "/none"}, {"snmp", path}});
        return xasUpdateSNMPCfg(&msg, &list, &reply);
    }

    std::string path = dir.path("snmpd.conf");
    XasLogCapture log;
    XasReplyStatus reply;
};

/** The dispatcher with the agent's application. */
class DispatchSnmp : public XasDispatcherTest {
  protected:
    DispatchSnmp()
    {
        XasTestApp agent = scripted("snmp");
        agent.cfgFiles = {{"snmp", path}};
        apps = xasTestAppList({agent});
        app("snmp").running = 1;
    }

    XasTestDir files;
    std::string path = files.write("snmpd.conf", OLD_TEXT);
};

} // namespace

TEST_F(UpdateSnmp, DoesNotRunFromATextThatFillsItsFieldIntoTheNext)
{
    dir.write("snmpd.conf", OLD_TEXT);
    XasMessageBuilder full = message();
    char letter = 'a';
    for (const char *name : {"syslocation", "syscontact", "v3user", "v3pass", "v3phrase", "v3rwuser",
                             "v3rwpass", "v3rwphrase", "ro_community", "rw_community", "trap_community"})
        full.set(name, std::string(21, letter++));
    EXPECT_EQ(update(full), 0);
    EXPECT_EQ(dir.read("snmpd.conf"),
              "syslocation  aaaaaaaaaaaaaaaaaaaaa\n"
              "syscontact  bbbbbbbbbbbbbbbbbbbbb\n"
              "rouser  ccccccccccccccccccccc priv\n"
              "createUser ccccccccccccccccccccc SHA ddddddddddddddddddddd DES eeeeeeeeeeeeeeeeeeeee\n"
              "rwuser  fffffffffffffffffffff priv\n"
              "createUser fffffffffffffffffffff SHA ggggggggggggggggggggg DES hhhhhhhhhhhhhhhhhhhhh\n"
              "trapcommunity  kkkkkkkkkkkkkkkkkkkkk\n"
              "rocommunity  iiiiiiiiiiiiiiiiiiiii\n"
              "rwcommunity  jjjjjjjjjjjjjjjjjjjjj\n"
              "trapsink 10.0.0.9\n"
              "trap2sink 10.0.0.9\n"
              "trapsink traps.example.org\n"
              "trap2sink traps.example.org\n");
}

TEST_F(DispatchSnmp, RewritesTheFileOfAnAgentThatIsSwitchedOffButLeavesItStopped)
{
    EXPECT_EQ(outcome(message().set("enabled", 0)), XAS_APPLIED);
    EXPECT_THAT(programs(), ElementsAre("stop-snmp"));
    EXPECT_EQ(xasReadFile(path), NEW_TEXT);
}

TEST_F(DispatchSnmp, StartsTheAgentAgainWithItsNewFile)
{
    EXPECT_EQ(outcome(message()), XAS_APPLIED);
    EXPECT_THAT(programs(), ElementsAre("stop-snmp", "start-snmp"));
    EXPECT_EQ(xasReadFile(path), NEW_TEXT);
}
