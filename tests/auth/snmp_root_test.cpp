// The handler of XMSG_SNMP: which byte of the message goes where, failures, and when the agent is started.
#include "auth/snmp.h"
#include "support/dispatcher_fixture.h"
#include "support/hosts.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char *OLD_TEXT = "syslocation x\nsyscontact x\nrouser x\nrwuser x\ntrapcommunity x\n";

/** Every field with a value of its own. */
XasMessageBuilder message()
{
    return XasMessageBuilder{XMSG_SNMP}
        .id(77)
        .word(120, 1)
        .word(124, 30)
        .bytes(128, xasHostBytes(xasHostWithAddress("10.0.0.9")))
        .bytes(204, xasHostBytes(xasNamedHost("traps.example.org")))
        .bytes(280, "location")
        .bytes(301, "contact")
        .bytes(322, "v3user")
        .bytes(343, "v3pass")
        .bytes(364, "v3phrase")
        .bytes(385, "v3rwuser")
        .bytes(406, "v3rwpass")
        .bytes(427, "v3rwphrase")
        .word(448, 2)
        .word(452, 1)
        .word(456, 0)
        .bytes(460, "ro")
        .bytes(481, "rw")
        .bytes(502, "trap")
        .word(532, 0);
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
        XasMessage msg = builder.build();
        const XasCfgFileList list = xasTestCfgFiles({{"other", "/none"}, {"snmp", path}});
        return xasUpdateSNMPCfg(&msg, &list, &reply);
    }

    void expectReply(std::uint32_t rcode, std::string_view reason) const
    {
        EXPECT_EQ(reply.rcode, rcode);
        EXPECT_EQ(reply.rstr, reason);
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

TEST_F(UpdateSnmp, WritesEveryFieldOfTheMessageToItsPlace)
{
    dir.write("snmpd.conf", OLD_TEXT);
    EXPECT_EQ(update(message()), 0);
    EXPECT_EQ(dir.read("snmpd.conf"), NEW_TEXT);
    EXPECT_EQ(dir.read("snmpd.conf.old"), OLD_TEXT);
    EXPECT_EQ(xasModeOf(path), 0600U);
    expectReply(0, "");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(UpdateSnmp, DoesNotRunFromATextThatFillsItsFieldIntoTheNext)
{
    dir.write("snmpd.conf", OLD_TEXT);
    XasMessageBuilder full = message();
    for (const std::size_t offset : {280U, 301U, 322U, 343U, 364U, 385U, 406U, 427U, 460U, 481U, 502U})
        full.bytes(offset, std::string(21, static_cast<char>('a' + (offset - 280) / 21)));
    EXPECT_EQ(update(full.word(532, 1)), 0);
    EXPECT_EQ(dir.read("snmpd.conf"),
              "syslocation  aaaaaaaaaaaaaaaaaaaaa\n"
              "syscontact  bbbbbbbbbbbbbbbbbbbbb\n"
              "rouser  ccccccccccccccccccccc priv\n"
              "createUser ccccccccccccccccccccc SHA ddddddddddddddddddddd DES eeeeeeeeeeeeeeeeeeeee\n"
              "rwuser  fffffffffffffffffffff priv\n"
              "createUser fffffffffffffffffffff SHA ggggggggggggggggggggg DES hhhhhhhhhhhhhhhhhhhhh\n"
              "trapcommunity  kkkkkkkkkkkkkkkkkkkkk\n"
              "trapsink 10.0.0.9\n"
              "trap2sink 10.0.0.9\n"
              "trapsink traps.example.org\n"
              "trap2sink traps.example.org\n");
}

TEST_F(DispatchSnmp, RewritesTheFileOfAnAgentThatIsSwitchedOffButLeavesItStopped)
{
    EXPECT_EQ(outcome(message().word(120, 0).build()), XAS_APPLIED);
    EXPECT_THAT(programs(), ElementsAre("stop-snmp"));
    EXPECT_EQ(xasReadFile(path), NEW_TEXT);
}

TEST_F(DispatchSnmp, StartsTheAgentAgainWithItsNewFile)
{
    EXPECT_EQ(outcome(message().build()), XAS_APPLIED);
    EXPECT_THAT(programs(), ElementsAre("stop-snmp", "start-snmp"));
    EXPECT_EQ(xasReadFile(path), NEW_TEXT);
}

TEST_F(DispatchSnmp, StartsTheAgentAgainWhenItsFileCouldNotBeRead)
{
    std::remove(path.c_str());
    EXPECT_EQ(outcome(message().build()), "0 2 Error opening SNMP config file");
    EXPECT_THAT(programs(), ElementsAre("stop-snmp", "start-snmp"));
}
