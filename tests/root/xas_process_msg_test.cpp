// The dispatcher's steps in their order, and the acknowledgement.
#include "root/xas_dispatcher_fixture.h"
#include "wire/xas_address.h"

#include <gmock/gmock.h>
#include <sys/msg.h>

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

constexpr const char *FAILED = "0 0 ";
constexpr const char *APPLIED = "1 0 ";

const XasLogLine NOT_FOUND = xasErrorLine("Could not find application in app list\n");

class ProcessMsg : public XasDispatcherTest {
  protected:
    /** An application with a start and a stop script of its name. */
    XasTestApp scripted(const std::string &name)
    {
        return {.name = name,
                .startScript = script("start-" + name) + " a",
                .stopScript = script("stop-" + name) + " o"};
    }

    /** The calls so far, by the names of the programs alone. */
    std::vector<std::string> programs()
    {
        std::vector<std::string> names;
        for (const auto &words : stubs.calls())
            names.push_back(words.front().substr(words.front().rfind('/') + 1));
        return names;
    }

    /** "dns" with both files, so that its handler succeeds. */
    XasTestApp dnsApp()
    {
        XasTestApp app = scripted("dns");
        app.cfgFiles = {{"resolv", files.write("nameservers", "")}, {"dnsprec", files.path("precedence")}};
        return app;
    }

    XasTestDir files;
};

XasMessage message(std::uint32_t msgtype)
{
    return XasMessageBuilder{msgtype}.id(77).build();
}

} // namespace

TEST_F(ProcessMsg, ReturnsTheErrorOfReceivingAndAnswersNothing)
{
    queues.send(1, std::string(2487, 'x'));
    EXPECT_EQ(xasProcessMsg(apps, [](XasMessage &) { return XasIdleResult::failed; }), 1);
    EXPECT_TRUE(isSilent());
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Expected 2488 bytes from queue, got 2487 bytes\n")));
}

TEST_F(ProcessMsg, ReturnsTheErrorOfSendingTheAcknowledgement)
{
    ::msgctl(queues.toXms, IPC_RMID, nullptr);
    EXPECT_EQ(process(message(XMSG_SSH)), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error sending to XMS message queue\n")));
}

TEST_F(ProcessMsg, RefusesTypesWithoutARowTouchingNothing)
{
    apps = xasTestAppList({scripted("eth"), scripted("dns"), scripted("INVALID_APP")});
    for (XasApp &one : apps)
        one.running = 1;
    for (const std::uint32_t msgtype : {0U,  4U,  13U, 14U, 15U, 17U, 18U, 23U, 27U,   30U,        42U,
                                        54U, 56U, 59U, 62U, 65U, 66U, 67U, 68U, 1000U, 0x7FFFFFFFU})
        EXPECT_EQ(outcome(message(msgtype)), FAILED) << msgtype;
    EXPECT_THAT(stubs.lines(), IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(ProcessMsg, AnswersWithARecordWhoseEveryByteIsKnown)
{
    const std::uint32_t before = xasNextMsgId();
    XasMessage garbled = message(XMSG_SSH);
    std::memset(reinterpret_cast<char *>(&garbled) + 20, 0xEE, sizeof garbled - 20);
    EXPECT_EQ(process(garbled), 0);
    const XasMessage expected = XasMessageBuilder{67}
                                    .word(4, 2)
                                    .word(8, 4)
                                    .word(12, before + 1)
                                    .word(16, 77)
                                    .word(120, 0)
                                    .word(124, 1)
                                    .build();
    EXPECT_EQ(xasMessageBytes(answer(), 0, 2488), xasMessageBytes(expected, 0, 2488));
}

TEST_F(ProcessMsg, AnswersSuccessAndFailureInTheSameForm)
{
    XasTestApp hostname = scripted("hostname");
    hostname.startScript = script("start", 50);
    apps = xasTestAppList({dnsApp(), hostname});
    const std::uint32_t before = xasNextMsgId();
    EXPECT_EQ(process(message(XMSG_DNS)), 0);
    EXPECT_EQ(process(XasMessageBuilder{XMSG_HOSTNAME}.id(0xFFFFFFFF).sender(3).build()), 0);
    const XasMessage applied = XasMessageBuilder{67}
                                   .word(4, 2)
                                   .word(8, 4)
                                   .word(12, before + 1)
                                   .word(16, 77)
                                   .word(120, 1)
                                   .word(124, 1)
                                   .build();
    EXPECT_EQ(xasMessageBytes(answer(), 0, 2488), xasMessageBytes(applied, 0, 2488));
    // The handler had failed before the script did: the last reason stands.
    const XasMessage failed = XasMessageBuilder{67}
                                  .word(4, 2)
                                  .word(8, 4)
                                  .word(12, before + 2)
                                  .word(16, 0xFFFFFFFF)
                                  .word(124, 1)
                                  .word(128, 1)
                                  .bytes(132, "Invalid hostname specified")
                                  .build();
    EXPECT_EQ(xasMessageBytes(answer(), 0, 2488), xasMessageBytes(failed, 0, 2488));
}

TEST_F(ProcessMsg, FailsWhenTheApplicationIsNotInTheList)
{
    apps = xasTestAppList({scripted("other")});
    EXPECT_EQ(outcome(message(XMSG_DNS)), FAILED);
    EXPECT_THAT(log.lines(), ElementsAre(NOT_FOUND));
    EXPECT_THAT(stubs.lines(), IsEmpty());
}

TEST_F(ProcessMsg, FailsWhenTheApplicationsNameDiffersByABlank)
{
    apps = xasTestAppList({scripted("dns ")});
    EXPECT_EQ(outcome(message(XMSG_DNS)), FAILED);
    EXPECT_THAT(log.lines(), ElementsAre(NOT_FOUND));
}

TEST_F(ProcessMsg, LeavesTheConfigurationUntouchedWhenStoppingFails)
{
    XasTestApp dns = dnsApp();
    dns.stopScript = script("stop", 20);
    apps = xasTestAppList({dns});
    app("dns").running = 1;
    EXPECT_EQ(outcome(message(XMSG_DNS)), "0 1 Internal error getting firewall configuration file");
    EXPECT_THAT(stubs.lines(), ElementsAre(dns.stopScript));
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine("Running " + dns.stopScript + "\n"),
                                         xasErrorLine("error 20 calling script " + dns.stopScript + "\n"),
                                         xasErrorLine("Error stopping application\n")));
    EXPECT_FALSE(files.has("precedence"));
    EXPECT_EQ(app("dns").running, 1);
}

TEST_F(ProcessMsg, StartsTheApplicationAndRunsSideEffectsAlsoWhenTheHandlerFailed)
{
    XasTestApp dns = scripted("dns");
    apps = xasTestAppList({dns});
    app("dns").running = 1;
    EXPECT_EQ(outcome(message(XMSG_DNS)), "0 1 Error determining dns config file");
    EXPECT_THAT(stubs.lines(), ElementsAre(dns.stopScript, dns.startScript, "/bin/killall -SIGHUP syslogd",
                                           "/bin/killall -SIGHUP snmpd"));
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine("Running " + stubs.path("stop-dns") + "\n"),
                                         xasErrorLine("Error determining config file for dns\n"),
                                         xasErrorLine("Error updating configuration for application: dns\n"),
                                         xasInfoLine("Running " + stubs.path("start-dns") + "\n")));
    EXPECT_EQ(app("dns").running, 1);
}

TEST_F(ProcessMsg, FailsWithTheScriptsReasonWhenStartingFailsAndRunsNoSideEffects)
{
    XasTestApp dns = dnsApp();
    dns.startScript = script("start", 40);
    apps = xasTestAppList({dns});
    app("dns").running = 1;
    EXPECT_EQ(outcome(message(XMSG_DNS)), "0 1 Error contacting NTP server");
    EXPECT_THAT(stubs.lines(), ElementsAre(dns.stopScript, dns.startScript));
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine("Running " + stubs.path("stop-dns") + "\n"),
                                         xasInfoLine("Running " + dns.startScript + "\n"),
                                         xasErrorLine("error 40 calling script " + dns.startScript + "\n"),
                                         xasErrorLine("Error starting application\n")));
    EXPECT_EQ(app("dns").running, 0);
    EXPECT_TRUE(files.has("precedence")) << "the configuration stays rewritten";
}

TEST_F(ProcessMsg, DoesNotStopAnApplicationThatIsNotRunning)
{
    XasTestApp dns = dnsApp();
    apps = xasTestAppList({dns});
    EXPECT_EQ(outcome(message(XMSG_DNS)), APPLIED);
    EXPECT_THAT(programs(), ElementsAre("start-dns", "killall", "killall"));
    EXPECT_EQ(app("dns").running, 1);
    stubs.forget();
    EXPECT_EQ(outcome(message(XMSG_DNS)), APPLIED);
    EXPECT_THAT(programs(), ElementsAre("stop-dns", "start-dns", "killall", "killall"));
}

TEST_F(ProcessMsg, ForgetsTheReasonOfTheMessageBefore)
{
    apps = xasTestAppList({scripted("dns")});
    EXPECT_EQ(outcome(message(XMSG_DNS)), "0 1 Error determining dns config file");
    EXPECT_EQ(outcome(message(XMSG_SSH)), FAILED);
}

TEST_F(ProcessMsg, TellsTheLoggerOfANewHostName)
{
    apps = xasTestAppList({{.name = "hostname"}});
    EXPECT_EQ(outcome(message(XMSG_HOSTNAME)), "0 1 Error determining hosts file");
    EXPECT_THAT(stubs.lines(), ElementsAre("/bin/killall -SIGHUP syslogd"));
}

TEST_F(ProcessMsg, StopsAnApplicationThatIsSwitchedOffAndLeavesItStopped)
{
    apps = xasTestAppList({scripted("ntp"), scripted("ldap"), scripted("router")});
    for (XasApp &one : apps)
        one.running = 1;
    for (const std::uint32_t msgtype : {11U, 25U, 8U})
        process(message(msgtype));
    EXPECT_THAT(programs(), ElementsAre("stop-ntp", "stop-ldap", "stop-router"));
    EXPECT_EQ(app("ntp").running, 0);
    EXPECT_EQ(app("ldap").running, 0);
    EXPECT_EQ(app("router").running, 0);
}

TEST_F(ProcessMsg, StartsAnApplicationThatIsSwitchedOn)
{
    apps = xasTestAppList({scripted("ldap"), scripted("router")});
    process(XasMessageBuilder{25}.word(120, 1).build());
    process(XasMessageBuilder{8}.word(124, 1).build());
    EXPECT_THAT(programs(), ElementsAre("start-ldap", "start-router"));
}

TEST_F(ProcessMsg, KillsTheOldLoggersOnceAtTheFirstSyslogMessageEvenWithoutTheApplication)
{
    EXPECT_EQ(outcome(message(XMSG_SYSLOG)), FAILED);
    EXPECT_EQ(outcome(message(XMSG_SYSLOG)), FAILED);
    EXPECT_THAT(stubs.lines(), ElementsAre("/bin/killall syslogd", "/bin/killall klogd"));
    EXPECT_THAT(log.lines(), ElementsAre(NOT_FOUND, NOT_FOUND));
}

TEST_F(ProcessMsg, KillsTheOldLoggersBeforeTheApplicationIsStopped)
{
    apps = xasTestAppList({scripted("syslog")});
    app("syslog").running = 1;
    process(message(XMSG_SYSLOG));
    EXPECT_THAT(programs(), ElementsAre("killall", "killall", "stop-syslog", "start-syslog"));
}

TEST_F(ProcessMsg, StartsTheNisClientForAnAuthenticationOrderThatUsesNis)
{
    apps = xasTestAppList({scripted("authentication"), scripted("ypbind")});
    process(XasMessageBuilder{XMSG_AUTH}.word(132, 0x100).byte(121, 2).build());
    EXPECT_THAT(programs(), ElementsAre("start-ypbind"));
    EXPECT_EQ(app("ypbind").running, 1);
    EXPECT_EQ(app("authentication").running, 0);
}

TEST_F(ProcessMsg, StopsTheAuthenticationButStartsTheNisClient)
{
    apps = xasTestAppList({scripted("authentication"), scripted("ypbind")});
    app("authentication").running = 1;
    app("ypbind").running = 1;
    process(XasMessageBuilder{XMSG_AUTH}.word(132, 1).byte(121, 1).build());
    EXPECT_THAT(programs(), ElementsAre("stop-authentication", "start-ypbind"));
}

TEST_F(ProcessMsg, FailsWhenTheNisClientIsNotInTheList)
{
    apps = xasTestAppList({scripted("authentication")});
    process(XasMessageBuilder{XMSG_AUTH}.word(132, 1).byte(121, 1).build());
    EXPECT_EQ(xasMessageWord(answer(), 120), 0U);
    EXPECT_THAT(log.lines(), Contains(NOT_FOUND).Times(1));
    EXPECT_THAT(programs(), IsEmpty());
}

TEST_F(ProcessMsg, StartsTheAuthenticationItselfWithoutNis)
{
    apps = xasTestAppList({scripted("authentication"), scripted("ypbind")});
    for (const XasMessage &msg :
         {message(XMSG_AUTH), XasMessageBuilder{XMSG_AUTH}.word(132, 1).byte(120, 1).byte(122, 1).build(),
          XasMessageBuilder{XMSG_AUTH}.byte(121, 1).word(128, 1).word(136, 1).build()}) {
        app("authentication").running = 0;
        process(msg);
    }
    EXPECT_THAT(programs(),
                ElementsAre("start-authentication", "start-authentication", "start-authentication"));
}

// The three types that have no handler of their own, or none that changes a file.

TEST_F(ProcessMsg, StartsAndStopsTheApplicationThatAnApplicationMessageNames)
{
    apps = xasTestAppList({scripted("xdd"), scripted("xld"), scripted("snmptrapd"), scripted("portmap")});
    for (std::uint32_t index = 0; index < 4; ++index)
        EXPECT_EQ(outcome(XasMessageBuilder{55}.word(120, index).word(124, 1).build()), APPLIED);
    EXPECT_EQ(outcome(XasMessageBuilder{55}.word(120, 2).build()), APPLIED);
    EXPECT_THAT(programs(),
                ElementsAre("start-xdd", "start-xld", "start-snmptrapd", "start-portmap", "stop-snmptrapd"));
    EXPECT_EQ(app("snmptrapd").running, 0);
}

TEST_F(ProcessMsg, FailsAnApplicationMessageWithAnIndexOutsideTheList)
{
    apps = xasTestAppList({scripted("xdd"), scripted("xpb")});
    EXPECT_EQ(outcome(XasMessageBuilder{55}.word(120, 7).word(124, 1).build()), FAILED);
    EXPECT_THAT(log.lines(), ElementsAre(NOT_FOUND));
    EXPECT_THAT(programs(), IsEmpty());
}

TEST_F(ProcessMsg, FindsAnApplicationThatIsReallyNamedInvalid)
{
    apps = xasTestAppList({scripted("INVALID_APP")});
    EXPECT_EQ(outcome(XasMessageBuilder{55}.word(120, 5).word(124, 1).build()), APPLIED);
    EXPECT_THAT(programs(), ElementsAre("start-INVALID_APP"));
}

TEST_F(ProcessMsg, RunsTheNatScriptWithItsParametersAndAnswersNothing)
{
    apps = xasTestAppList(
        {{.name = "nat", .startScript = script("nat") + " del 0 1.1.1.1"}, {.name = "router"}});
    EXPECT_EQ(process(XasMessageBuilder{63}.word(120, 1).word(124, 0x0100007F).build()), 0);
    EXPECT_THAT(stubs.lines(), ElementsAre(stubs.path("nat") + " add 0 127.0.0.1"));
    app("router").running = 1;
    EXPECT_EQ(process(XasMessageBuilder{63}.word(124, 0x0100007F).build()), 0);
    EXPECT_THAT(stubs.lines(), ElementsAre(testing::_, stubs.path("nat") + " del 1 127.0.0.1"));
    EXPECT_TRUE(isSilent());
    EXPECT_EQ(app("nat").startScript, stubs.path("nat") + " del 1 127.0.0.1")
        << "kept until the next message";
}

TEST_F(ProcessMsg, AnswersNothingWhenTheNatMessageFails)
{
    apps = xasTestAppList(
        {{.name = "nat", .startScript = script("nat"), .stopScript = script("stop")}, {.name = "router"}});
    app("nat").running = 1;
    EXPECT_EQ(process(message(63)), 0);
    EXPECT_THAT(stubs.lines(), IsEmpty());
    EXPECT_THAT(log.take(), ElementsAre(xasErrorLine("Error getting the first nat script parameter\n")));
    xasFreeApp(apps, &app("router"));
    EXPECT_EQ(process(message(63)), 0);
    EXPECT_THAT(log.take(), ElementsAre(xasErrorLine("Could not find routing application in app list\n")));
    xasFreeApp(apps, &app("nat"));
    EXPECT_EQ(process(message(63)), 0);
    EXPECT_THAT(log.take(), ElementsAre(NOT_FOUND));
    EXPECT_TRUE(isSilent());
}

TEST_F(ProcessMsg, NeedsNoRouterForANatApplicationWithoutAStartScript)
{
    apps = xasTestAppList({{.name = "nat", .stopScript = script("stop")}});
    app("nat").running = 1;
    EXPECT_EQ(process(message(63)), 0);
    EXPECT_THAT(programs(), ElementsAre("stop"));
    EXPECT_EQ(app("nat").running, 1) << "stopped, then started with nothing to start";
    EXPECT_THAT(log.lines(), Not(Contains(testing::Field(&XasLogLine::priority, LOG_ERR))));
}

TEST_F(ProcessMsg, RunsTheLinkScriptWithItsParametersAndAnswersNothing)
{
    ::setenv("XMS_STORE", files.path().c_str(), 1);
    const XasMessage stored = XasMessageBuilder{XMSG_ETH}.word(160, 3).word(208, 5).build();
    files.write("XMSG_ETH", xasMessageBytes(stored, 0, sizeof stored));
    apps = xasTestAppList({{.name = "netlink", .startScript = script("link") + " linkup 0 0"}});
    EXPECT_EQ(process(XasMessageBuilder{64}.word(120, 3).bytes(136, "Eth2 Link Down").build()), 0);
    EXPECT_EQ(process(XasMessageBuilder{64}.word(120, 2).bytes(136, "Eth1 Link Up").build()), 0);
    EXPECT_THAT(stubs.lines(),
                ElementsAre(stubs.path("link") + " linkdn 0 6", stubs.path("link") + " linkup 4 0"));
    EXPECT_TRUE(isSilent());
}

TEST_F(ProcessMsg, StopsNothingAndAnswersNothingWhenTheLinkMessageFails)
{
    apps = xasTestAppList(
        {{.name = "netlink", .startScript = script("link") + " x", .stopScript = script("stop")}});
    app("netlink").running = 1;
    EXPECT_EQ(process(XasMessageBuilder{64}.word(120, 9).bytes(136, "Eth1").build()), 0);
    EXPECT_THAT(stubs.lines(), IsEmpty());
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Invalid notify message of type 9 received\n")));
    EXPECT_TRUE(isSilent());
}

// Name servers and the NTP daemon.

namespace {

class DnsAndNtp : public ProcessMsg {
  protected:
    DnsAndNtp()
    {
        apps = xasTestAppList({dnsApp(), {.name = "ntp", .exes = {daemon("ntpd"), daemon("other")}}});
    }

    std::string daemon(std::string_view name) { return stubs.make(name, 0, "exec sleep 1000"); }

    void startNtp()
    {
        for (XasDaemon &one : app("ntp").daemons)
            xasStartDaemon(&one, app("ntp"));
        app("ntp").running = 1;
        ASSERT_TRUE(stubs.await(2));
        stubs.forget();
    }
};

} // namespace

TEST_F(DnsAndNtp, LeavesAnNtpApplicationAloneThatDoesNotRun)
{
    startNtp();
    app("ntp").running = 0;
    const pid_t before = app("ntp").daemons.front().pid;
    EXPECT_EQ(outcome(message(XMSG_DNS)), APPLIED);
    EXPECT_EQ(app("ntp").daemons.front().pid, before);
}

TEST_F(DnsAndNtp, LeavesAnNtpDaemonAloneThatIsDownOrHasNoProcess)
{
    app("ntp").running = 1;
    EXPECT_EQ(outcome(message(XMSG_DNS)), APPLIED);
    app("ntp").daemons.front().running = 1;
    EXPECT_EQ(outcome(message(XMSG_DNS)), APPLIED);
    app("ntp").daemons.clear();
    EXPECT_EQ(outcome(message(XMSG_DNS)), APPLIED);
    EXPECT_THAT(programs(), Not(Contains("ntpd")));
    EXPECT_THAT(log.lines(), Not(Contains(testing::Field(&XasLogLine::text, HasSubstr("to stop")))));
}

TEST_F(DnsAndNtp, RestartsTheFirstNtpDaemonOnlyAfterTheOtherSideEffects)
{
    startNtp();
    const pid_t first = app("ntp").daemons[0].pid;
    const pid_t second = app("ntp").daemons[1].pid;
    // A poll of 100 ms brings the message; the daemon has ended when the wait after SIGTERM is half over.
    clock.at(clock.now() + 150ms, [first] { xasAwaitExit(first); });
    log.take();
    EXPECT_EQ(outcome(message(XMSG_DNS)), APPLIED);
    const pid_t renewed = app("ntp").daemons[0].pid;
    EXPECT_GT(renewed, 0);
    EXPECT_NE(renewed, first);
    EXPECT_EQ(app("ntp").daemons[0].running, 1);
    EXPECT_EQ(app("ntp").daemons[1].pid, second);
    ASSERT_TRUE(stubs.await(4));
    EXPECT_THAT(programs(), ElementsAre("start-dns", "killall", "killall", "ntpd"));
    EXPECT_THAT(
        log.lines(),
        ElementsAre(xasInfoLine("Running " + stubs.path("start-dns") + "\n"),
                    xasInfoLine("PID[" + std::to_string(first) + "] WIFSIGNALED on sig Child exited\n"),
                    xasInfoLine("[" + std::to_string(renewed) + "] " + stubs.path("ntpd") + " started\n")));
}

// The Ethernet message around its handler. The list holds none of the handler's files, so the handler fails,
// and the steps around it are the same.

namespace {

class EthAndRouter : public ProcessMsg {
  protected:
    EthAndRouter()
    {
        XasTestApp eth{.name = "eth",
                       .startScript = script("eth-up") + " 9 9 9",
                       .stopScript = script("eth-down") + " 9 9 9"};
        apps = xasTestAppList({eth, scripted("router")});
        app("eth").running = 1;
    }

    /** The error lines since the last call that are not the handler's own. */
    std::vector<std::string> errors()
    {
        std::vector<std::string> found;
        for (const XasLogLine &line : log.take()) {
            if (line.priority == LOG_ERR && line.text.find("application: eth") == std::string::npos)
                found.push_back(line.text);
        }
        return found;
    }

    XasMessage eth(std::uint32_t bonding = 0)
    {
        return XasMessageBuilder{XMSG_ETH}.id(77).word(168, 1).word(252, bonding).build();
    }
};

} // namespace

TEST_F(EthAndRouter, StopsNothingWhenTheStopScriptHasNotItsThreeDigits)
{
    app("eth").stopScript = stubs.path("eth-down") + " a 1 1";
    EXPECT_EQ(outcome(eth()), FAILED);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Invalid network stop script:\n " +
                                                      stubs.path("eth-down") + " a 1 1\n")));
    EXPECT_THAT(stubs.lines(), IsEmpty());
    EXPECT_EQ(app("eth").running, 1);
}

TEST_F(EthAndRouter, UsesTheNewParametersForTheStopAndTheStart)
{
    process(eth());
    EXPECT_THAT(stubs.lines(),
                ElementsAre(stubs.path("eth-down") + " 0 1 0", stubs.path("eth-up") + " 0 1 0"));
}

TEST_F(EthAndRouter, RemembersTheBondingOnlyOfAMessageThatWasAppliedCompletely)
{
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(outcome(eth(1)).front(), '0') << "the handler finds no file";
        EXPECT_EQ(app("eth").stopScript, stubs.path("eth-down") + " 1 1 2");
        EXPECT_FALSE(xasIsBondingOn());
    }
}

TEST_F(EthAndRouter, FailsWithoutARouterInTheList)
{
    xasFreeApp(apps, &app("router"));
    EXPECT_EQ(outcome(eth()).front(), '0');
    EXPECT_EQ(errors().back(), "sw/err-Could not find routing application in app list\n");
    EXPECT_THAT(programs(), ElementsAre("eth-down", "eth-up"));
}

TEST_F(EthAndRouter, LeavesARouterAloneThatIsNotRunning)
{
    process(eth());
    EXPECT_THAT(programs(), ElementsAre("eth-down", "eth-up"));
    EXPECT_EQ(app("router").running, 0);
}

TEST_F(EthAndRouter, RestartsARouterThatRuns)
{
    app("router").running = 1;
    process(eth());
    EXPECT_THAT(programs(), ElementsAre("eth-down", "eth-up", "stop-router", "start-router"));
    EXPECT_EQ(app("router").running, 1);
}

TEST_F(EthAndRouter, FailsWhenTheRouterCannotBeStopped)
{
    app("router").stopScript = script("stop-router", 30);
    app("router").running = 1;
    EXPECT_EQ(outcome(eth()), "0 1 Mount/unmount of NFS share failed");
    EXPECT_EQ(errors().back(), "sw/err-Error stopping routing application\n");
    EXPECT_THAT(programs(), ElementsAre("eth-down", "eth-up", "stop-router"));
}

TEST_F(EthAndRouter, FailsWhenTheRouterCannotBeStarted)
{
    app("router").startScript = script("start-router", 1);
    app("router").running = 1;
    EXPECT_EQ(outcome(eth()), "0 1 Internal error attempting to apply settings");
    EXPECT_EQ(errors().back(), "sw/err-Error starting routing application\n");
    EXPECT_EQ(app("router").running, 0);
}

TEST_F(EthAndRouter, DoesNotReachTheRouterWhenStartingTheNetworkFails)
{
    app("eth").startScript = script("eth-up", 2) + " 0 0 0";
    app("router").running = 1;
    EXPECT_EQ(outcome(eth()), "0 1 Error applying settings");
    EXPECT_EQ(errors().back(), "sw/err-Error starting application\n");
    EXPECT_THAT(programs(), ElementsAre("eth-down", "eth-up"));
}

namespace {

/** The same with all files of the handler, which therefore succeeds. */
class EthWithFiles : public EthAndRouter {
  protected:
    EthWithFiles()
    {
        for (const std::string name :
             {"gatewayprec", "kernel", "modprobe", "bond0", "eth0", "eth1", "network", "altgateway"})
            app("eth").cfgFiles.push_back({.type = name, .path = files.write(name, "")});
    }

    /** A message with neither port in use. */
    XasMessage bonding(std::uint32_t mode)
    {
        return XasMessageBuilder{XMSG_ETH}.id(77).word(252, mode).build();
    }

    /** The codes that both scripts were called with. */
    std::string codes()
    {
        EXPECT_EQ(app("eth").stopScript->substr(stubs.path("eth-down").size()),
                  app("eth").startScript->substr(stubs.path("eth-up").size()));
        return app("eth").startScript->substr(stubs.path("eth-up").size() + 1);
    }
};

} // namespace

TEST_F(EthWithFiles, ForcesThePortsWhenBondingChangesAndNoMoreTheSecondTime)
{
    EXPECT_EQ(outcome(bonding(1)), APPLIED);
    EXPECT_EQ(codes(), "1 1 2");
    EXPECT_TRUE(xasIsBondingOn());
    EXPECT_EQ(outcome(bonding(1)), APPLIED);
    EXPECT_EQ(codes(), "0 0 0");
    EXPECT_EQ(outcome(bonding(2)), APPLIED);
    EXPECT_EQ(codes(), "1 1 2");
    EXPECT_EQ(outcome(bonding(0)), APPLIED);
    EXPECT_EQ(codes(), "1 1 1");
    EXPECT_FALSE(xasIsBondingOn());
}

TEST_F(EthWithFiles, ForgetsTheBondingOfAMessageWhoseRouterFailed)
{
    app("router").startScript = script("start-router", 1);
    app("router").running = 1;
    EXPECT_EQ(outcome(bonding(1)), "0 1 Internal error attempting to apply settings");
    EXPECT_FALSE(xasIsBondingOn());
    EXPECT_EQ(outcome(bonding(1)), APPLIED) << "the router is down now, and left alone";
    EXPECT_EQ(codes(), "1 1 2");
    EXPECT_TRUE(xasIsBondingOn());
}

TEST_F(EthWithFiles, KeepsTheBondingOfTheMessageBeforeWhenTheHandlerFails)
{
    EXPECT_EQ(outcome(bonding(1)), APPLIED);
    std::remove(files.path("kernel").c_str());
    EXPECT_EQ(outcome(bonding(0)).front(), '0');
    EXPECT_TRUE(xasIsBondingOn());
}
