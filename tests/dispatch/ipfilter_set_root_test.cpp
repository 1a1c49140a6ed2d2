// Filter sets with files, commands and queues. iptables is a program of the test that notes how it is called;
// the shell is the real one.
#include "dispatch/ipfilter_set.h"

#include "core/msgqueue.h"
#include "dispatch/ipfilter_enable.h"
#include "dispatch/ipfilter_script.h"
#include "support/daemon.h"
#include "support/faults.h"
#include "support/ipfilter.h"
#include "support/log.h"
#include "support/reply.h"
#include "support/shell.h"

#include <thread>

namespace {

const std::string SHIPPED = "#!/bin/sh\nIPTABLES=/bin/iptables\n";
const std::string SHIPPED_PATH = "/usr/bin/xas_iptables.sh";
const std::string WORKING_PATH = "/tmp/xas_iptables.sh";

const std::string COPY = "/bin/cp -af /usr/bin/xas_iptables.sh /tmp/xas_iptables.sh > /dev/null 2>&1";

using Words = std::vector<std::string>;

class FilterSetTest : public XasFilesTest {
  protected:
    FilterSetTest()
    {
        ::setenv("XMS_STORE", dir.path().c_str(), 1);
        stubs.put("/bin/iptables");
        xasWriteFile(SHIPPED_PATH, SHIPPED, 0755);
    }
    ~FilterSetTest() override { ::unsetenv("XMS_STORE"); }

    int set(std::string_view name, const std::vector<XasTestRule> &rules, std::uint32_t action)
    {
        return set(xasTestFilterSet(name, rules, action));
    }

    int set(const XasIpFilterSetPayload &payload)
    {
        reply = {};
        const XasMessage msg = xasTestFilterSetMessage(payload);
        return xasIPFilterSet(&msg, &reply);
    }

    void store(const std::string &name, const XasMessage &record) const
    {
        dir.write(name, xasMessageBytes(record));
    }

    XasStubs stubs;
    XasShellLines shell;
    XasLogCapture log;
    XasReplyStatus reply;
};

} // namespace

TEST_F(FilterSetTest, IsRefusedWhenTheShippedScriptCannotBeCopied)
{
    std::remove(SHIPPED_PATH.c_str());
    xasWriteFile(WORKING_PATH, "#!/bin/sh\ntouch /tmp/ran\n", 0755);
    EXPECT_EQ(set("office", {}, XAS_FILTER_CREATE), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Error copying IP Filter script");
    EXPECT_THAT(shell.take(), ElementsAre(COPY));
    EXPECT_FALSE(xasExists(WORKING_PATH)) << "an earlier copy is deleted first";
    EXPECT_FALSE(xasExists("/tmp/ran"));
    EXPECT_THAT(log.lines(), IsEmpty()) << "the handler logs the reason";
}

TEST_F(FilterSetTest, IsRefusedWhenTheCopyCannotBeOpened)
{
    stubs.put("/bin/cp", 0, "mkdir /tmp/xas_iptables.sh");
    EXPECT_EQ(set("office", {}, XAS_FILTER_CREATE), 1);
    EXPECT_EQ(xasReplyText(reply), "2 Error openning IP Filter script");
    EXPECT_THAT(shell.take(), ElementsAre(COPY));
    ::rmdir(WORKING_PATH.c_str());
    std::remove("/bin/cp");
    ::symlink("/.host/usr/bin/cp", "/bin/cp");
}

TEST_F(FilterSetTest, IsRefusedWhenTheCopyIsNotOursAlone)
{
    const std::string work = "/tmp/xas_iptables.sh";
    for (const std::string &what : std::vector<std::string>{
             "ln -s /tmp/another.sh " + work, "cp /usr/bin/xas_iptables.sh " + work + "; chmod 777 " + work,
             "cp /usr/bin/xas_iptables.sh " + work + "; chmod 775 " + work,
             "cp /usr/bin/xas_iptables.sh " + work + "; ln " + work + " /tmp/second.sh", "mkfifo " + work}) {
        xasWriteFile("/tmp/another.sh", "#!/bin/sh\ntouch /tmp/ran\n", 0755);
        stubs.put("/bin/cp", 0, "PATH=/.host/usr/bin:$PATH; " + what);
        EXPECT_EQ(set("office", {}, XAS_FILTER_CREATE), 1) << what;
        EXPECT_EQ(xasReplyText(reply), "2 Error openning IP Filter script") << what;
        EXPECT_THAT(shell.take(), ElementsAre(COPY)) << what;
        EXPECT_EQ(xasReadFile("/tmp/another.sh"), "#!/bin/sh\ntouch /tmp/ran\n");
        std::remove("/tmp/second.sh");
    }
    std::remove("/bin/cp");
    ::symlink("/.host/usr/bin/cp", "/bin/cp");
}

TEST_F(FilterSetTest, IsRefusedWhenTheScriptCannotBeWrittenToItsEnd)
{
    const XasFault fault{"ferror", EIO};
    EXPECT_EQ(set("office", {}, XAS_FILTER_CREATE), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Error running IP Filter script");
    EXPECT_THAT(shell.take(), ElementsAre(COPY)) << "half a script is not run";
}

TEST_F(FilterSetTest, IsRefusedWhenTheScriptFails)
{
    xasWriteFile(SHIPPED_PATH, "#!/bin/sh\nexit 3\n", 0755);
    EXPECT_EQ(set("office", {}, XAS_FILTER_CREATE), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Error running IP Filter script");
    EXPECT_THAT(shell.take(), ElementsAre(COPY, "/tmp/xas_iptables.sh resetNone"));
}

TEST_F(FilterSetTest, OfAnotherActionWritesNothingAndRunsTheScript)
{
    for (const std::uint32_t action : {3U, 0xFFFFFFFFU}) {
        EXPECT_EQ(set("office", {{}}, action), 0);
        EXPECT_EQ(xasReadFile(WORKING_PATH), SHIPPED + "exit 0\n");
        EXPECT_THAT(shell.take(), ElementsAre(COPY, "/tmp/xas_iptables.sh resetNone"));
    }
}

TEST_F(FilterSetTest, IsCreatedByTheShippedScriptWithItsLinesBehind)
{
    const XasTestRule rule{.ip = "10.0.0.0", .masklength = 8, .protocol = 2, .portrange = "22,80"};
    EXPECT_EQ(set("office", {rule}, XAS_FILTER_CREATE), 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_EQ(xasReadFile(WORKING_PATH),
              "#!/bin/sh\n"
              "IPTABLES=/bin/iptables\n"
              "${IPTABLES} -N office\n"
              "${IPTABLES} -F office\n"
              "${IPTABLES} -A office -p tcp -s 10.0.0.0/8 --destination-port 22 -j ACCEPT\n"
              "${IPTABLES} -A office -p tcp -s 10.0.0.0/8 --destination-port 80 -j ACCEPT\n"
              "exit 0\n");
    EXPECT_THAT(shell.take(), ElementsAre(COPY, "/tmp/xas_iptables.sh resetNone"));
    EXPECT_THAT(stubs.lines(),
                ElementsAre("/bin/iptables -N office", "/bin/iptables -F office",
                            "/bin/iptables -A office -p tcp -s 10.0.0.0/8 --destination-port 22 -j ACCEPT",
                            "/bin/iptables -A office -p tcp -s 10.0.0.0/8 --destination-port 80 -j ACCEPT"));
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(xasReadFile(SHIPPED_PATH), SHIPPED) << "the shipped script is never changed";
}

TEST_F(FilterSetTest, StartsEveryTimeFromAFreshCopy)
{
    EXPECT_EQ(set("office", {}, XAS_FILTER_CREATE), 0);
    EXPECT_EQ(set("office", {{.protocol = 6, .target = 2}}, XAS_FILTER_REPLACE), 0);
    EXPECT_EQ(xasReadFile(WORKING_PATH), SHIPPED + "${IPTABLES} -F office\n"
                                                   "${IPTABLES} -A office -p icmp -s 192.0.2.1/32 -j DROP\n"
                                                   "exit 0\n");
    EXPECT_THAT(shell.take(),
                ElementsAre(COPY, "/tmp/xas_iptables.sh resetNone", COPY, "/tmp/xas_iptables.sh resetNone"));
}

TEST_F(FilterSetTest, LeavesTheSwitchOfTheFilterAloneUnlessItIsRemoved)
{
    ASSERT_EQ(xasIPFilterEnable(false, &reply), 0);
    log.take();
    shell.take();
    store("XMSG_FIREWALL", xasTestFirewallMessage(0, 0));
    for (const std::uint32_t action : {0U, 1U, 3U}) {
        EXPECT_EQ(set("office", {}, action), 0);
        EXPECT_FALSE(xasIPFilterIsEnabled()) << action;
        EXPECT_THAT(shell.take(), ElementsAre(COPY, "/tmp/xas_iptables.sh resetNone"));
    }
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(FilterSetTest, SucceedsEvenWhenIptablesRefusesARule)
{
    stubs.put("/bin/iptables", 2);
    EXPECT_EQ(set("office", {{}}, XAS_FILTER_CREATE), 0);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(FilterSetTest, IsRemovedWithAllJumpRulesMadeAnew)
{
    store("XMSG_IPFILTER_ASSIGN-1-2", xasTestAssignMessage(1, 2, "lab"));
    store("XMSG_IPFILTER_ASSIGN-2-9", xasTestAssignMessage(2, 9, "modem"));
    EXPECT_EQ(set("office", {{}}, XAS_FILTER_REMOVE), 0);
    EXPECT_EQ(xasReadFile(WORKING_PATH), SHIPPED + "${IPTABLES} -F office\n"
                                                   "${IPTABLES} -X office\n"
                                                   "${IPTABLES} -A INPUT -i eth1 -j lab\n"
                                                   "${IPTABLES} -A INPUT -i ppp9 -j modem\n"
                                                   "exit 0\n");
    EXPECT_THAT(shell.take(), ElementsAre(COPY, "/tmp/xas_iptables.sh resetInput"));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(FilterSetTest, PutsTheAcceptAllRuleBackAfterARemovalWhenTheFilterIsStoredAsDisabled)
{
    ASSERT_EQ(xasIPFilterEnable(false, &reply), 0);
    EXPECT_THAT(shell.take(), ElementsAre(XAS_DISABLE_FILTER));
    log.take();
    store("XMSG_FIREWALL", xasTestFirewallMessage(0, 0));
    EXPECT_EQ(set("office", {}, XAS_FILTER_REMOVE), 0);
    EXPECT_THAT(shell.take(), ElementsAre(COPY, "/tmp/xas_iptables.sh resetInput", XAS_DISABLE_FILTER));
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine("IP Filter disabled.\n")));
    EXPECT_FALSE(xasIPFilterIsEnabled());
}

TEST_F(FilterSetTest, IsRemovedEvenWhenTheAcceptAllRuleCannotBePutBack)
{
    stubs.put("/bin/iptables", 1);
    store("XMSG_FIREWALL", xasTestFirewallMessage(0, 0));
    EXPECT_EQ(set("office", {}, XAS_FILTER_REMOVE), 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error disabling IP Filter.\n")));
    EXPECT_TRUE(xasIPFilterIsEnabled());
}

TEST_F(FilterSetTest, CountsAsEnabledAfterARemovalWithNothingStored)
{
    ASSERT_EQ(xasIPFilterEnable(false, &reply), 0);
    EXPECT_EQ(set("office", {}, XAS_FILTER_REMOVE), 0);
    EXPECT_TRUE(xasIPFilterIsEnabled());
}

TEST_F(FilterSetTest, StaysDisabledWhenTheScriptOfARemovalFails)
{
    ASSERT_EQ(xasIPFilterEnable(false, &reply), 0);
    xasWriteFile(SHIPPED_PATH, "#!/bin/sh\nexit 1\n", 0755);
    EXPECT_EQ(set("office", {}, XAS_FILTER_REMOVE), 1);
    EXPECT_FALSE(xasIPFilterIsEnabled());
}

TEST_F(FilterSetTest, LetsNoNameOrPortReachTheShell)
{
    for (const std::string text :
         {";touch /tmp/own", "$(touch /t)", "`id`>/tmp/own", "a'b\"c", "'", "\\", "a b\tc", "a\nid\n", "-j",
          "--", "-", "*", "~root", "&& id", "${IFS}", "!", "#x", "\x01\x7f\xff", "a=b|c"}) {
        stubs.forget();
        ASSERT_EQ(set(text, {{.protocol = 2, .portrange = text}}, XAS_FILTER_CREATE), 0) << text;
        const Words rule{"/bin/iptables",      "-A", text, "-p",    "tcp", "-s", "192.0.2.1/32",
                         "--destination-port", text, "-j", "ACCEPT"};
        EXPECT_THAT(stubs.calls(), ElementsAre(Words{"/bin/iptables", "-N", text},
                                               Words{"/bin/iptables", "-F", text}, rule));
        stubs.forget();
        store("XMSG_IPFILTER_ASSIGN-1-1", xasTestAssignMessage(1, 1, text));
        ASSERT_EQ(set(text, {}, XAS_FILTER_REMOVE), 0) << text;
        EXPECT_THAT(stubs.calls(),
                    ElementsAre(Words{"/bin/iptables", "-F", text}, Words{"/bin/iptables", "-X", text},
                                Words{"/bin/iptables", "-A", "INPUT", "-i", "eth0", "-j", text}));
    }
    EXPECT_FALSE(xasExists("/tmp/own"));
    EXPECT_FALSE(xasExists("/t"));
}

namespace {

/** The configuration server, played by the test: answers the daemon's requests one after the other. */
class FilterInitTest : public FilterSetTest {
  protected:
    FilterInitTest() { EXPECT_EQ(xasInitMsgQueues(), 0); }

    /** Rebuilds the filter while `answer` is called with every request; what it gives is sent. */
    template <class Answer>
    int init(Answer answer)
    {
        std::thread server{[&] {
            for (int i = 0; i < 64; ++i) {
                const auto request = queues.receive(10s);
                if (!request)
                    return;
                requests.push_back(*request);
                answer(*request);
            }
        }};
        const int result = xasIPFilterInit();
        server.join();
        return result;
    }

    /** An answer without a set, for a number that is not in use. */
    void answerNothing(const XasMessage &request)
    {
        queues.send(XasMessageBuilder{XMSG_IPFILTER_SET}.answering(request.xH.id));
    }

    void send(const XasMessage &request, const XasIpFilterSetPayload &set)
    {
        XasMessage answer = xasTestFilterSetMessage(set);
        answer.xH.orig_id = request.xH.id;
        queues.send(answer);
    }

    XasTestQueues queues;
    std::vector<XasMessage> requests;
};

std::uint8_t numberOf(const XasMessage &request)
{
    return xasReadPayload<XasIpFilterSetPayload>(request).id;
}

} // namespace

TEST_F(FilterInitTest, FailsWhenTheShippedScriptCannotBeCopied)
{
    std::remove(SHIPPED_PATH.c_str());
    EXPECT_EQ(xasIPFilterInit(), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error initializing IP Filter (cannot copy IP Filter script).\n")));
    EXPECT_FALSE(queues.receive(0ms)) << "nobody is asked";
}

TEST_F(FilterInitTest, FailsWhenTheCopyCannotBeOpened)
{
    stubs.put("/bin/cp", 0, "mkdir /tmp/xas_iptables.sh");
    EXPECT_EQ(xasIPFilterInit(), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error initializing IP Filter (cannot open IP Filter script).\n")));
    EXPECT_FALSE(queues.receive(0ms));
    ::rmdir(WORKING_PATH.c_str());
    std::remove("/bin/cp");
    ::symlink("/.host/usr/bin/cp", "/bin/cp");
}

TEST_F(FilterInitTest, FailsWhenTheScriptFailsAndLeavesTheFilterAsItWas)
{
    ASSERT_EQ(xasIPFilterEnable(false, &reply), 0);
    log.take();
    xasWriteFile(SHIPPED_PATH, "#!/bin/sh\nexit 1\n", 0755);
    EXPECT_EQ(init([this](const XasMessage &request) { answerNothing(request); }), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error initializing IP Filter (cannot run IP Filter script).\n")));
    EXPECT_FALSE(xasIPFilterIsEnabled());
}

TEST_F(FilterInitTest, AsksForAllSetsAndWritesThemThenTheJumpRules)
{
    store("XMSG_IPFILTER_ASSIGN-1-1", xasTestAssignMessage(1, 1, "first"));
    shell.take();
    EXPECT_EQ(init([this](const XasMessage &request) {
                  if (numberOf(request) == 1)
                      send(request, xasTestFilterSet("first", {{.protocol = 5}}, XAS_FILTER_REPLACE));
                  else if (numberOf(request) == 64)
                      send(request, xasTestFilterSet("last", {}, XAS_FILTER_CREATE, 64));
                  else
                      answerNothing(request);
              }),
              0);
    ASSERT_EQ(requests.size(), 64U);
    for (std::uint8_t i = 0; i < 64; ++i) {
        const XasMessage expected = XasMessageBuilder{XMSG_IPFILTER_SET}
                                        .action(XAS_ACTION_GET)
                                        .sender(4)
                                        .id(requests[0].xH.id + i)
                                        .set("id", i + 1);
        EXPECT_TRUE(xasMessageBytes(requests[i]) == xasMessageBytes(expected)) << int{i};
    }
    EXPECT_EQ(xasReadFile(WORKING_PATH), SHIPPED + "${IPTABLES} -N first\n"
                                                   "${IPTABLES} -F first\n"
                                                   "${IPTABLES} -A first -p udp -s 192.0.2.1/32 -j ACCEPT\n"
                                                   "${IPTABLES} -N last\n"
                                                   "${IPTABLES} -F last\n"
                                                   "${IPTABLES} -A INPUT -i eth0 -j first\n"
                                                   "exit 0\n");
    EXPECT_THAT(shell.take(), ElementsAre(COPY, "/tmp/xas_iptables.sh resetAll"));
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine("IP Filter initialized.\n")));
}

TEST_F(FilterInitTest, LeavesOutSetsThatItCannotGet)
{
    EXPECT_EQ(init([this](const XasMessage &request) {
                  if (numberOf(request) == 2) {
                      XasMessage foreign = request;
                      foreign.xH.id += 1000;
                      send(foreign, xasTestFilterSet("foreign", {}));
                  } else if (numberOf(request) == 3) {
                      queues.send(6, std::string(100, 'x'));
                  } else if (numberOf(request) == 4) {
                      send(request, xasTestFilterSet("fourth", {}));
                  } else {
                      answerNothing(request);
                  }
              }),
              0);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Cannot get IP Filter set (id = 2).\n"),
                                         xasErrorLine("Expected 2488 bytes from queue, got 100 bytes\n"),
                                         xasErrorLine("Cannot get IP Filter set (id = 3).\n"),
                                         xasInfoLine("IP Filter initialized.\n")));
    EXPECT_EQ(xasReadFile(WORKING_PATH), SHIPPED + "${IPTABLES} -N fourth\n${IPTABLES} -F fourth\nexit 0\n");
}

TEST_F(FilterInitTest, TakesASetWhoseFirstPayloadWordIsNotZeroWhateverItsNumber)
{
    EXPECT_EQ(init([this](const XasMessage &request) {
                  if (numberOf(request) == 7)
                      send(request, xasTestFilterSet("n", {}, XAS_FILTER_CREATE, 0));
                  else
                      answerNothing(request);
              }),
              0);
    EXPECT_EQ(xasReadFile(WORKING_PATH), SHIPPED + "${IPTABLES} -N n\n${IPTABLES} -F n\nexit 0\n");
}

TEST_F(FilterInitTest, SwitchesTheFilterAsStoredInTheEnd)
{
    store("XMSG_FIREWALL", xasTestFirewallMessage(0, 0));
    EXPECT_EQ(init([this](const XasMessage &request) { answerNothing(request); }), 0);
    EXPECT_THAT(shell.take(), ElementsAre(COPY, "/tmp/xas_iptables.sh resetAll", XAS_DISABLE_FILTER));
    EXPECT_THAT(log.lines(),
                ElementsAre(xasInfoLine("IP Filter disabled.\n"), xasInfoLine("IP Filter initialized.\n")));
}
