// The dispatcher's steps in their order, and the acknowledgement. (Types with steps of their own:
// process_types_root_test.cpp and setting_steps_root_test.cpp.)
#include "dispatch/settings.h"
#include "support/dispatcher_fixture.h"
#include "support/faults.h"

#include <sys/msg.h>

namespace {

class ProcessMsg : public XasDispatcherTest {
  protected:
    /** "dns" with both files, so that its handler succeeds. */
    XasTestApp dnsApp()
    {
        XasTestApp app = scripted("dns");
        app.cfgFiles = {{"resolv", files.write("nameservers", "")}, {"dnsprec", files.path("precedence")}};
        return app;
    }

    XasTestDir files;
};

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
    EXPECT_EQ(process(xasPlainMessage(XMSG_SSH)), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error sending to XMS message queue\n")));
}

TEST_F(ProcessMsg, RefusesTypesWithoutARowTouchingNothing)
{
    apps = xasTestAppList({scripted("eth"), scripted("dns"), scripted("INVALID_APP")});
    for (XasApp &one : apps)
        one.running = 1;
    for (const std::uint32_t msgtype : {0U,  4U,  13U, 14U, 15U, 17U, 18U, 23U, 27U,   30U,        42U,
                                        54U, 56U, 59U, 62U, 65U, 66U, 67U, 68U, 1000U, 0x7FFFFFFFU})
        EXPECT_EQ(outcome(xasPlainMessage(msgtype)), XAS_FAILED) << msgtype;
    EXPECT_THAT(stubs.lines(), IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(ProcessMsg, LetsNoExceptionOfAHandlerLeaveIt)
{
    constexpr std::size_t BIG = 1 << 20;
    XasTestApp dns = dnsApp();
    files.write("nameservers", std::string(2 * BIG, '#'));
    apps = xasTestAppList({dns});
    {
        const XasFailingNew fault{BIG};
        EXPECT_EQ(outcome(xasPlainMessage(XMSG_DNS)), "0 3 Error saving new DNS config file");
    }
    EXPECT_THAT(log.lines(), Contains(xasErrorLine("Error updating configuration for application: dns\n")));
    EXPECT_EQ(files.read("nameservers").size(), 2 * BIG);
    EXPECT_THAT(programs(), ElementsAre("start-dns", "killall", "killall"));
}

TEST_F(ProcessMsg, IsAnsweredWhicheverAllocationFails)
{
    std::vector<XasTestApp> all{scripted("router"), scripted("ypbind")};
    for (const XasSetting &setting : xasSettings()) {
        if (!setting.application.empty())
            all.push_back(scripted(std::string{setting.application}));
    }
    apps = xasTestAppList(all);
    for (const XasSetting &setting : xasSettings()) {
        bool wasRefused = true;
        for (unsigned allocation = 0; wasRefused; ++allocation) {
            queues.send(xasPlainMessage(setting.msgtype));
            const auto idle = [](XasMessage &) {
                return XasIdleResult::failed;
            };
            try {
                const XasFailingNew fault{1, allocation, 1};
                EXPECT_EQ(xasProcessMsg(apps, idle), 0);
                wasRefused = XasFailingNew::hasFailed();
            } catch (const std::bad_alloc &) { // of the test's clock, before the message is received
                ASSERT_EQ(queues.waiting(), 1U);
                EXPECT_EQ(xasProcessMsg(apps, idle), 0);
            }
            ASSERT_EQ(!isSilent(), setting.answered) << setting.msgtype << ", allocation " << allocation;
        }
    }
}

TEST_F(ProcessMsg, AnswersWithARecordWhoseEveryByteIsKnown)
{
    const std::uint32_t before = xasNextMsgId();
    XasMessage garbled = xasPlainMessage(XMSG_SSH);
    std::memset(reinterpret_cast<char *>(&garbled) + 20, 0xEE, sizeof garbled - 20);
    EXPECT_EQ(process(garbled), 0);
    const XasMessage expected =
        XasMessageBuilder{XMSG_ACKNAK}.sender(4).id(before + 1).answering(77).set("complete", 1);
    EXPECT_EQ(xasMessageBytes(answer()), xasMessageBytes(expected));
}

TEST_F(ProcessMsg, AnswersSuccessAndFailureInTheSameForm)
{
    XasTestApp hostname = scripted("hostname");
    hostname.startScript = script("start", 50);
    apps = xasTestAppList({dnsApp(), hostname});
    const std::uint32_t before = xasNextMsgId();
    EXPECT_EQ(process(xasPlainMessage(XMSG_DNS)), 0);
    EXPECT_EQ(process(XasMessageBuilder{XMSG_HOSTNAME}.id(0xFFFFFFFF).sender(3)), 0);
    const XasMessage applied = XasMessageBuilder{XMSG_ACKNAK}
                                   .sender(4)
                                   .id(before + 1)
                                   .answering(77)
                                   .set("success", 1)
                                   .set("complete", 1);
    EXPECT_EQ(xasMessageBytes(answer()), xasMessageBytes(applied));
    // The handler had failed before the script did: the last reason stands.
    const XasMessage failed = XasMessageBuilder{XMSG_ACKNAK}
                                  .sender(4)
                                  .id(before + 2)
                                  .answering(0xFFFFFFFF)
                                  .set("complete", 1)
                                  .set("rcode", 1)
                                  .set("rstr", "Invalid hostname specified");
    EXPECT_EQ(xasMessageBytes(answer()), xasMessageBytes(failed));
}

TEST_F(ProcessMsg, FailsWhenTheApplicationIsNotInTheList)
{
    apps = xasTestAppList({scripted("other")});
    EXPECT_EQ(outcome(xasPlainMessage(XMSG_DNS)), XAS_FAILED);
    EXPECT_THAT(log.lines(), ElementsAre(XAS_NOT_FOUND));
    EXPECT_THAT(stubs.lines(), IsEmpty());
}

TEST_F(ProcessMsg, FailsWhenTheApplicationsNameDiffersByABlank)
{
    apps = xasTestAppList({scripted("dns ")});
    EXPECT_EQ(outcome(xasPlainMessage(XMSG_DNS)), XAS_FAILED);
    EXPECT_THAT(log.lines(), ElementsAre(XAS_NOT_FOUND));
}

TEST_F(ProcessMsg, LeavesTheConfigurationUntouchedWhenStoppingFails)
{
    XasTestApp dns = dnsApp();
    dns.stopScript = script("stop", 20);
    apps = xasTestAppList({dns});
    app("dns").running = 1;
    EXPECT_EQ(outcome(xasPlainMessage(XMSG_DNS)), "0 1 Internal error getting firewall configuration file");
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
    EXPECT_EQ(outcome(xasPlainMessage(XMSG_DNS)), "0 1 Error determining dns config file");
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
    EXPECT_EQ(outcome(xasPlainMessage(XMSG_DNS)), "0 1 Error contacting NTP server");
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
    EXPECT_EQ(outcome(xasPlainMessage(XMSG_DNS)), XAS_APPLIED);
    EXPECT_THAT(programs(), ElementsAre("start-dns", "killall", "killall"));
    EXPECT_EQ(app("dns").running, 1);
    stubs.forget();
    EXPECT_EQ(outcome(xasPlainMessage(XMSG_DNS)), XAS_APPLIED);
    EXPECT_THAT(programs(), ElementsAre("stop-dns", "start-dns", "killall", "killall"));
}

TEST_F(ProcessMsg, ForgetsTheReasonOfTheMessageBefore)
{
    apps = xasTestAppList({scripted("dns")});
    EXPECT_EQ(outcome(xasPlainMessage(XMSG_DNS)), "0 1 Error determining dns config file");
    EXPECT_EQ(outcome(xasPlainMessage(XMSG_SSH)), XAS_FAILED);
}

TEST_F(ProcessMsg, TellsTheLoggerOfANewHostName)
{
    apps = xasTestAppList({{.name = "hostname"}});
    EXPECT_EQ(outcome(xasPlainMessage(XMSG_HOSTNAME)), "0 1 Error determining hosts file");
    EXPECT_THAT(stubs.lines(), ElementsAre("/bin/killall -SIGHUP syslogd"));
}

TEST_F(ProcessMsg, StopsAnApplicationThatIsSwitchedOffAndLeavesItStopped)
{
    apps = xasTestAppList({scripted("ntp"), scripted("ldap"), scripted("router")});
    for (XasApp &one : apps)
        one.running = 1;
    for (const std::uint32_t msgtype : {11U, 25U, 8U})
        process(xasPlainMessage(msgtype));
    EXPECT_THAT(programs(), ElementsAre("stop-ntp", "stop-ldap", "stop-router"));
    EXPECT_EQ(app("ntp").running, 0);
    EXPECT_EQ(app("ldap").running, 0);
    EXPECT_EQ(app("router").running, 0);
}

TEST_F(ProcessMsg, StartsAnApplicationThatIsSwitchedOn)
{
    apps = xasTestAppList({scripted("ldap"), scripted("router")});
    process(XasMessageBuilder{XMSG_LDAP}.set("enabled", 1));
    process(XasMessageBuilder{XMSG_ROUTING}.set("static_enabled", 1));
    EXPECT_THAT(programs(), ElementsAre("start-ldap", "start-router"));
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
    EXPECT_EQ(outcome(xasPlainMessage(XMSG_DNS)), XAS_APPLIED);
    EXPECT_EQ(app("ntp").daemons.front().pid, before);
}

TEST_F(DnsAndNtp, LeavesAnNtpDaemonAloneThatIsNotMarkedAsRunningWhateverItsPid)
{
    startNtp();
    const pid_t before = app("ntp").daemons.front().pid;
    app("ntp").daemons.front().running = 0;
    EXPECT_EQ(outcome(xasPlainMessage(XMSG_DNS)), XAS_APPLIED);
    EXPECT_EQ(app("ntp").daemons.front().pid, before);
    EXPECT_THAT(programs(), ElementsAre("start-dns", "killall", "killall"));
}

TEST_F(DnsAndNtp, LeavesAnNtpDaemonAloneThatIsDownOrHasNoProcess)
{
    app("ntp").running = 1;
    EXPECT_EQ(outcome(xasPlainMessage(XMSG_DNS)), XAS_APPLIED);
    app("ntp").daemons.front().running = 1;
    EXPECT_EQ(outcome(xasPlainMessage(XMSG_DNS)), XAS_APPLIED);
    app("ntp").daemons.clear();
    EXPECT_EQ(outcome(xasPlainMessage(XMSG_DNS)), XAS_APPLIED);
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
    EXPECT_EQ(outcome(xasPlainMessage(XMSG_DNS)), XAS_APPLIED);
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
