// Messages for which the dispatcher has steps of their own: the system logger, the authentication order,
// applications by index, NAT and link notices.
#include "support/dispatcher_fixture.h"

namespace {

class ProcessTypes : public XasDispatcherTest {
  protected:
    XasTestDir files;
};

XasMessage applicationMessage(std::uint32_t index, bool isStarted)
{
    return XasMessageBuilder{XMSG_APPLICATION}.set("application", index).set("start", isStarted);
}

XasMessage linkMessage(std::uint32_t code, std::string_view text)
{
    return XasMessageBuilder{XMSG_NOTIFY}.set("code", code).set("text", text);
}

} // namespace

TEST_F(ProcessTypes, KillsTheOldLoggersOnceAtTheFirstSyslogMessageEvenWithoutTheApplication)
{
    EXPECT_EQ(outcome(xasPlainMessage(XMSG_SYSLOG)), XAS_FAILED);
    EXPECT_EQ(outcome(xasPlainMessage(XMSG_SYSLOG)), XAS_FAILED);
    EXPECT_THAT(stubs.lines(), ElementsAre("/bin/killall syslogd", "/bin/killall klogd"));
    EXPECT_THAT(log.lines(), ElementsAre(XAS_NOT_FOUND, XAS_NOT_FOUND));
}

TEST_F(ProcessTypes, KillsTheOldLoggersBeforeTheApplicationIsStopped)
{
    apps = xasTestAppList({scripted("syslog")});
    app("syslog").running = 1;
    process(xasPlainMessage(XMSG_SYSLOG));
    EXPECT_THAT(programs(), ElementsAre("killall", "killall", "stop-syslog", "start-syslog"));
}

TEST_F(ProcessTypes, StartsTheNisClientForAnAuthenticationOrderThatUsesNis)
{
    apps = xasTestAppList({scripted("authentication"), scripted("ypbind")});
    process(XasMessageBuilder{XMSG_AUTH}.set("start_nis", 0x100).set("nis", 2));
    EXPECT_THAT(programs(), ElementsAre("start-ypbind"));
    EXPECT_EQ(app("ypbind").running, 1);
    EXPECT_EQ(app("authentication").running, 0);
}

TEST_F(ProcessTypes, StopsTheAuthenticationButStartsTheNisClient)
{
    apps = xasTestAppList({scripted("authentication"), scripted("ypbind")});
    app("authentication").running = 1;
    app("ypbind").running = 1;
    process(XasMessageBuilder{XMSG_AUTH}.set("start_nis", 1).set("nis", 1));
    EXPECT_THAT(programs(), ElementsAre("stop-authentication", "start-ypbind"));
}

TEST_F(ProcessTypes, FailsWhenTheNisClientIsNotInTheList)
{
    apps = xasTestAppList({scripted("authentication")});
    process(XasMessageBuilder{XMSG_AUTH}.set("start_nis", 1).set("nis", 1));
    EXPECT_EQ(xasOutcomeIn(answer()), XAS_FAILED);
    EXPECT_THAT(log.lines(), Contains(XAS_NOT_FOUND).Times(1));
    EXPECT_THAT(programs(), IsEmpty());
}

TEST_F(ProcessTypes, StartsTheAuthenticationItselfWithoutNis)
{
    apps = xasTestAppList({scripted("authentication"), scripted("ypbind")});
    for (const XasMessage &msg : std::vector<XasMessage>{
             xasPlainMessage(XMSG_AUTH), XasMessageBuilder{XMSG_AUTH}.set("start_nis=1 local=1 ldap=1"),
             XasMessageBuilder{XMSG_AUTH}
                 .set("nis", 1)
                 .set("first_responding", 1)
                 .behind("start_nis", "next")}) {
        app("authentication").running = 0;
        process(msg);
    }
    EXPECT_THAT(programs(),
                ElementsAre("start-authentication", "start-authentication", "start-authentication"));
}

TEST_F(ProcessTypes, StartsAndStopsTheApplicationThatAnApplicationMessageNames)
{
    apps = xasTestAppList({scripted("xdd"), scripted("xld"), scripted("snmptrapd"), scripted("portmap")});
    for (std::uint32_t index = 0; index < 4; ++index)
        EXPECT_EQ(outcome(applicationMessage(index, true)), XAS_APPLIED);
    EXPECT_EQ(outcome(applicationMessage(2, false)), XAS_APPLIED);
    EXPECT_THAT(programs(),
                ElementsAre("start-xdd", "start-xld", "start-snmptrapd", "start-portmap", "stop-snmptrapd"));
    EXPECT_EQ(app("snmptrapd").running, 0);
}

TEST_F(ProcessTypes, FailsAnApplicationMessageWithAnIndexOutsideTheList)
{
    apps = xasTestAppList({scripted("xdd"), scripted("xpb")});
    EXPECT_EQ(outcome(applicationMessage(7, true)), XAS_FAILED);
    EXPECT_THAT(log.lines(), ElementsAre(XAS_NOT_FOUND));
    EXPECT_THAT(programs(), IsEmpty());
}

TEST_F(ProcessTypes, FindsAnApplicationThatIsReallyNamedInvalid)
{
    apps = xasTestAppList({scripted("INVALID_APP")});
    EXPECT_EQ(outcome(applicationMessage(5, true)), XAS_APPLIED);
    EXPECT_THAT(programs(), ElementsAre("start-INVALID_APP"));
}

TEST_F(ProcessTypes, RunsTheNatScriptWithItsParametersAndAnswersNothing)
{
    apps = xasTestAppList(
        {{.name = "nat", .startScript = script("nat") + " del 0 1.1.1.1"}, {.name = "router"}});
    EXPECT_EQ(process(XasMessageBuilder{XMSG_NAT_NOTIFY}.set("add=yes address=127.0.0.1")), 0);
    EXPECT_THAT(stubs.lines(), ElementsAre(stubs.path("nat") + " add 0 127.0.0.1"));
    app("router").running = 1;
    EXPECT_EQ(process(XasMessageBuilder{XMSG_NAT_NOTIFY}.set("address=127.0.0.1")), 0);
    EXPECT_THAT(stubs.lines(), ElementsAre(testing::_, stubs.path("nat") + " del 1 127.0.0.1"));
    EXPECT_TRUE(isSilent());
    EXPECT_EQ(app("nat").startScript, stubs.path("nat") + " del 1 127.0.0.1")
        << "kept until the next message";
}

TEST_F(ProcessTypes, AnswersNothingWhenTheNatMessageFails)
{
    apps = xasTestAppList(
        {{.name = "nat", .startScript = script("nat"), .stopScript = script("stop")}, {.name = "router"}});
    app("nat").running = 1;
    EXPECT_EQ(process(xasPlainMessage(XMSG_NAT_NOTIFY)), 0);
    EXPECT_THAT(stubs.lines(), IsEmpty());
    EXPECT_THAT(log.take(), ElementsAre(xasErrorLine("Error getting the first nat script parameter\n")));
    xasFreeApp(apps, &app("router"));
    EXPECT_EQ(process(xasPlainMessage(XMSG_NAT_NOTIFY)), 0);
    EXPECT_THAT(log.take(), ElementsAre(xasErrorLine("Could not find routing application in app list\n")));
    xasFreeApp(apps, &app("nat"));
    EXPECT_EQ(process(xasPlainMessage(XMSG_NAT_NOTIFY)), 0);
    EXPECT_THAT(log.take(), ElementsAre(XAS_NOT_FOUND));
    EXPECT_TRUE(isSilent());
}

TEST_F(ProcessTypes, NeedsNoRouterForANatApplicationWithoutAStartScript)
{
    apps = xasTestAppList({{.name = "nat", .stopScript = script("stop")}});
    app("nat").running = 1;
    EXPECT_EQ(process(xasPlainMessage(XMSG_NAT_NOTIFY)), 0);
    EXPECT_THAT(programs(), ElementsAre("stop"));
    EXPECT_EQ(app("nat").running, 1) << "stopped, then started with nothing to start";
    EXPECT_THAT(log.lines(), Not(Contains(testing::Field(&XasLogLine::priority, LOG_ERR))));
}

TEST_F(ProcessTypes, RunsTheLinkScriptWithItsParametersAndAnswersNothing)
{
    ::setenv("XMS_STORE", files.path().c_str(), 1);
    const XasMessage stored = XasMessageBuilder{XMSG_ETH}.set("eth1.mode", 3).set("eth2.mode", 5);
    files.write("XMSG_ETH", xasMessageBytes(stored));
    apps = xasTestAppList({{.name = "netlink", .startScript = script("link") + " linkup 0 0"}});
    EXPECT_EQ(process(linkMessage(3, "Eth2 Link Down")), 0);
    EXPECT_EQ(process(linkMessage(2, "Eth1 Link Up")), 0);
    EXPECT_THAT(stubs.lines(),
                ElementsAre(stubs.path("link") + " linkdn 0 6", stubs.path("link") + " linkup 4 0"));
    EXPECT_TRUE(isSilent());
}

TEST_F(ProcessTypes, StopsNothingAndAnswersNothingWhenTheLinkMessageFails)
{
    apps = xasTestAppList(
        {{.name = "netlink", .startScript = script("link") + " x", .stopScript = script("stop")}});
    app("netlink").running = 1;
    EXPECT_EQ(process(linkMessage(9, "Eth1")), 0);
    EXPECT_THAT(stubs.lines(), IsEmpty());
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Invalid notify message of type 9 received\n")));
    EXPECT_TRUE(isSilent());
}
