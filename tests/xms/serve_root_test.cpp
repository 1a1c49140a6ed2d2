// The message tool's server through the real queues; the test plays the daemon.
#include "support/serve_fixture.h"
#include "xms/hex.h"
#include "xms/socket.h"

using XmsServe = XmsServeTest;

TEST_F(XmsServe, ASecondServerIsRefusedAndTheFirstGoesOn)
{
    serve();
    EXPECT_EQ(run({"serve"}), 3);
    EXPECT_THAT(dir.read("out.err"), HasSubstr("a server is already running at " + dir.path("xms.sock")));
    EXPECT_EQ(setAndAnswer({"set", "dns"}, true), 0);
}

TEST_F(XmsServe, ARefusedSettingEndsWithStatusOneAndIsNotStored)
{
    serve();
    EXPECT_EQ(setAndAnswer({"set", "hostname", "hostname=bad"}, false, "Error determining hosts file"), 1);
    EXPECT_THAT(dir.read("out"),
                HasSubstr("hostname #1: refused, rcode 1, \"Error determining hosts file\", "));
    EXPECT_FALSE(dir.has("store/XMSG_HOSTNAME"));
    EXPECT_EQ(run({"get", "hostname"}), 1);
    EXPECT_EQ(dir.read("out.err"), "xms: nothing is stored for XMSG_HOSTNAME\n");
}

TEST_F(XmsServe, WithoutADaemonASettingTimesOutButALateAnswerStillCounts)
{
    serve();
    EXPECT_EQ(run({"set", "hostname", "hostname=console1", "--timeout", "0.2"}), 3);
    EXPECT_EQ(dir.read("out"),
              "hostname #1: no acknowledgement in time: nobody reads the queue; is xasd running?\n");
    const auto late = receive();
    ASSERT_TRUE(late);
    acknowledge(late->xH.id, true);
    EXPECT_TRUE(xasEventually([&] { return dir.has("store/XMSG_HOSTNAME"); }));
}

TEST_F(XmsServe, AWaitOfAnyLengthIsWaitedOrEndsAtOnce)
{
    serve();
    const XmsDescriptor client = xmsConnect(dir.path("xms.sock"));
    std::string buffer;
    const auto ask = [&](const std::string &milliseconds) {
        const XasMessage dns = XasMessageBuilder{XMSG_DNS};
        xmsSendLine(client,
                    R"({"do":"set","record":")" + xmsToHex(dns) + R"(","timeout_ms":)" + milliseconds + "}");
        return receive()->xH.id;
    };
    const auto resultOf = [&](std::uint32_t id) {
        const std::string line = xmsReadLine(client, buffer).value_or("");
        EXPECT_THAT(line, HasSubstr("\"id\":" + std::to_string(id)));
        return line;
    };
    const std::uint32_t longest = ask("9223372036854775807");
    xasPause(100ms);
    acknowledge(longest, true);
    EXPECT_THAT(resultOf(longest), HasSubstr("\"result\":\"answered\""));
    EXPECT_THAT(resultOf(ask("-9223372036854775808")), HasSubstr("\"result\":\"timeout\""));
}

TEST_F(XmsServe, SettingsThatFindTheQueueFullAreWithdrawnWhenTheirTimeIsUp)
{
    serve();
    std::vector<pid_t> clients;
    for (int i = 0; i < 10; ++i) // more than the queue holds
        clients.push_back(startProgram({"set", "dns", "--timeout", "0.5"}, "out" + std::to_string(i)));
    std::string outputs;
    for (std::size_t i = 0; i < clients.size(); ++i) {
        EXPECT_EQ(statusOf(clients[i]), 3);
        outputs += dir.read("out" + std::to_string(i));
    }
    EXPECT_THAT(outputs, HasSubstr("not even sent, the queue is full and nobody reads it; is xasd running?"));
    int queued = 0;
    while (receive(300ms))
        ++queued;
    EXPECT_GT(queued, 0);
    EXPECT_LT(queued, 10);
}

TEST_F(XmsServe, AnAppliedSettingEndsWithStatusZeroAndIsStoredAsSent)
{
    serve();
    EXPECT_EQ(setAndAnswer({"set", "hostname", "hostname=console1", "domain=example.org"}, true), 0);
    EXPECT_THAT(dir.read("out"), HasSubstr("hostname #1: applied, rcode 0, "));
    EXPECT_EQ(received.xH.msgtype, 2U);
    EXPECT_EQ(received.xH.action, 0U);
    EXPECT_EQ(received.xH.sender, 1U);
    EXPECT_EQ(received.xH.id, 1U);
    EXPECT_EQ(received.xH.orig_id, 0U);
    EXPECT_EQ(xasValueIn(received, "hostname"), "console1");
    EXPECT_EQ(xasValueIn(received, "domain"), "example.org");
    EXPECT_EQ(dir.read("store/XMSG_HOSTNAME"), xasMessageBytes(received));
    EXPECT_EQ(run({"get", "hostname"}), 0);
    EXPECT_EQ(dir.read("out"), "  hostname  console1\n  domain    example.org\n");
    EXPECT_EQ(run({"get", "hostname", "--json"}), 0);
    EXPECT_EQ(dir.read("out"),
              "{\"type\":\"hostname\",\"fields\":{\"hostname\":\"console1\",\"domain\":\"example.org\"}}\n");
}

TEST_F(XmsServe, FieldsThatAreNotNamedComeFromTheStoredRecordUnlessFresh)
{
    serve();
    EXPECT_EQ(setAndAnswer({"set", "hostname", "hostname=console1", "domain=example.org"}, true), 0);
    EXPECT_EQ(setAndAnswer({"set", "hostname", "domain=example.net"}, true), 0);
    EXPECT_EQ(received.xH.id, 2U);
    EXPECT_EQ(xasValueIn(received, "hostname"), "console1");
    EXPECT_EQ(xasValueIn(received, "domain"), "example.net");
    EXPECT_EQ(setAndAnswer({"set", "hostname", "--fresh", "domain=example.com"}, true), 0);
    EXPECT_EQ(xasValueIn(received, "hostname"), "");
    EXPECT_EQ(xasValueIn(received, "domain"), "example.com");
}

TEST_F(XmsServe, CommandsToApplicationsAreAnsweredButNotStored)
{
    serve();
    EXPECT_EQ(setAndAnswer({"set", "application", "application=portmap", "start=no"}, true), 0);
    EXPECT_EQ(xasValueIn(received, "application"), "portmap");
    EXPECT_EQ(xasValueIn(received, "start"), "no");
    EXPECT_FALSE(dir.has("store/XMSG_APPLICATION"));
}

TEST_F(XmsServe, EventsAreSentWithoutWaiting)
{
    serve();
    EXPECT_EQ(run({"set", "notify", "code=link-down", "text=Eth1 Link Down"}), 0);
    EXPECT_EQ(dir.read("out"), "notify #1: sent (never answered)\n");
    const auto record = receive();
    ASSERT_TRUE(record);
    EXPECT_EQ(xasValueIn(*record, "code"), "link-down");
    EXPECT_EQ(xasValueIn(*record, "text"), "Eth1 Link Down");
}

TEST_F(XmsServe, ARawPayloadIsSentAsItIs)
{
    serve();
    const std::string file = dir.write("payload", "01 02\n03");
    EXPECT_EQ(setAndAnswer({"set", "200", "--raw", file}, false), 1);
    EXPECT_EQ(received.xH.msgtype, 200U);
    EXPECT_EQ(xasPayloadBytes(received), "\x01\x02\x03" + std::string(2365, '\0'));
}

TEST_F(XmsServe, ARequestOfTheDaemonIsAnsweredWithTheStoredRecordOrWithZeroes)
{
    serve();
    const XasMessage stored = XasMessageBuilder{XMSG_IPFILTER_SET}.set("id", 3).set("name", "office");
    dir.write("store/XMSG_IPFILTER_SET-3", xasMessageBytes(stored));
    for (const std::uint8_t number : {std::uint8_t{3}, std::uint8_t{4}}) {
        XasMessage request =
            XasMessageBuilder{XMSG_IPFILTER_SET}.sender(4).id(40U + number).set("id", number);
        request.xH.action = XAS_ACTION_GET;
        send(request);
        const auto answer = receive();
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->xH.msgtype, 6U);
        EXPECT_EQ(answer->xH.action, 2U);
        EXPECT_EQ(answer->xH.orig_id, 40U + number);
        const std::string payload = number == 3 ? xasPayloadBytes(stored) : std::string(2368, '\0');
        EXPECT_EQ(xasPayloadBytes(*answer), payload);
    }
}

TEST_F(XmsServe, AReportOfTheDaemonIsStoredAndAcknowledged)
{
    serve();
    const XasMessage report = XasMessageBuilder{XMSG_FIREWALL}.sender(4).id(77);
    send(report);
    const auto answer = receive();
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->xH.action, 2U);
    EXPECT_EQ(answer->xH.sender, 1U);
    EXPECT_EQ(answer->xH.orig_id, 77U);
    EXPECT_EQ(xasOutcomeIn(*answer), XAS_APPLIED);
    EXPECT_EQ(dir.read("store/XMSG_FIREWALL"), xasMessageBytes(report));
}

TEST_F(XmsServe, AReportOfTheFilterKeepsTheServicesThatAreStored)
{
    serve();
    EXPECT_EQ(setAndAnswer({"set", "firewall", "enabled=yes", "test_time=1", "ssh=yes", "https=yes"}, true),
              0);
    EXPECT_EQ(dir.read("store/XMSG_FIREWALL"), xasMessageBytes(received));
    send(XasMessageBuilder{XMSG_FIREWALL}.sender(4).id(77));
    const auto answer = receive();
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->xH.orig_id, 77U);
    EXPECT_EQ(xasOutcomeIn(*answer), XAS_APPLIED);
    XasMessage expected = XasMessageBuilder{XMSG_FIREWALL}.set("ssh", 1).set("https", 1);
    expected.xH = received.xH;
    EXPECT_EQ(dir.read("store/XMSG_FIREWALL"), xasMessageBytes(expected));
}

TEST_F(XmsServe, ALinkNotificationIsShownAndNotAnswered)
{
    serve();
    send(XasMessageBuilder{XMSG_NOTIFY}.sender(4).id(12).set("code", 2).set("text", "Eth2 Link Up"));
    EXPECT_TRUE(xasEventually(
        [&] { return dir.read("traffic").find("code=link-up text=\"Eth2 Link Up\"") != std::string::npos; }));
    EXPECT_FALSE(receive(200ms));
}

TEST_F(XmsServe, OddRecordsAreShownAndDoNoHarm)
{
    serve();
    for (const std::size_t size : {0U, 1U, 119U, 2487U, 2489U, 8000U}) {
        send(std::string(size, 'x'));
        const std::string line = "<- odd record of " + std::to_string(size) + " bytes, 2488 expected\n";
        EXPECT_TRUE(xasEventually([&] { return dir.read("traffic").find(line) != std::string::npos; }))
            << size;
    }
    EXPECT_EQ(setAndAnswer({"set", "dns", "dns1=10.0.0.53"}, true), 0);
}

TEST_F(XmsServe, WhoWatchesSeesBothDirectionsUntilTheServerEnds)
{
    serve({"--quiet"});
    const pid_t watcher = startProgram({"watch"}, "watched");
    // an event now and then, until the watcher is there
    EXPECT_TRUE(xasEventually([&] {
        EXPECT_EQ(run({"set", "notify", "text=Eth1 here"}), 0);
        EXPECT_TRUE(receive());
        return dir.has("watched") && !dir.read("watched").empty();
    }));
    EXPECT_EQ(setAndAnswer({"set", "dns", "dns1=10.0.0.53"}, true), 0);
    EXPECT_EQ(stop(), 0);
    EXPECT_EQ(statusOf(watcher), 3);
    EXPECT_THAT(dir.read("watched"), AllOf(HasSubstr("-> XMS  Set     dns"), HasSubstr("dns1=10.0.0.53"),
                                           HasSubstr("<- APP  Return  acknak"), HasSubstr("applied")));
    EXPECT_EQ(dir.read("traffic"), "");
}

TEST_F(XmsServe, TheEndTakesQueuesAndSocketAway)
{
    serve();
    EXPECT_TRUE(dir.has("xms.sock"));
    EXPECT_EQ(stop(), 0);
    EXPECT_FALSE(dir.has("xms.sock"));
    EXPECT_LT(msgget(XMS_KEY_FROM_DAEMON, 0), 0);
    EXPECT_LT(msgget(XMS_KEY_TO_DAEMON, 0), 0);
}

TEST_F(XmsServe, QueuesThatAreKeptAreUsedAgainWithoutWhatWasLeftInThem)
{
    serve({"--keep"});
    const int queue = msgget(XMS_KEY_TO_DAEMON, 0);
    EXPECT_EQ(run({"set", "notify", "text=Eth1 left over"}), 0);
    EXPECT_EQ(stop(), 0);
    EXPECT_EQ(msgget(XMS_KEY_TO_DAEMON, 0), queue);
    serve();
    EXPECT_EQ(msgget(XMS_KEY_TO_DAEMON, 0), queue);
    EXPECT_EQ(setAndAnswer({"set", "dns"}, true), 0);
    EXPECT_EQ(received.xH.msgtype, XMSG_DNS);
    EXPECT_GT(received.xH.id, 1000U); // no id that an earlier server may have used
}

TEST_F(XmsServe, SecretsAreMaskedUnlessTheyAreAskedFor)
{
    serve();
    const pid_t watcher = startProgram({"watch", "--dump"}, "watched");
    const pid_t other = startProgram({"watch", "--json", "--secrets"}, "watched openly");
    EXPECT_TRUE(xasEventually([&] {
        EXPECT_EQ(run({"set", "notify", "text=Eth1 here"}), 0);
        EXPECT_TRUE(receive());
        return dir.has("watched") && !dir.read("watched").empty() && dir.has("watched openly") &&
               !dir.read("watched openly").empty();
    }));
    EXPECT_EQ(setAndAnswer({"set", "radius", "secret1=testing"}, true), 0);
    EXPECT_EQ(run({"get", "radius"}), 0);
    EXPECT_THAT(dir.read("out"), AllOf(HasSubstr("secret1  ********\n"), HasSubstr("secret2\n")));
    EXPECT_EQ(run({"get", "radius", "--json"}), 0);
    EXPECT_THAT(dir.read("out"), HasSubstr(R"("secret1":"********")"));
    EXPECT_EQ(run({"get", "radius", "--secrets"}), 0);
    EXPECT_THAT(dir.read("out"), HasSubstr("secret1  testing\n"));
    EXPECT_EQ(stop(), 0);
    EXPECT_EQ(statusOf(watcher), 3);
    EXPECT_EQ(statusOf(other), 3);
    EXPECT_THAT(dir.read("traffic"), AllOf(HasSubstr("secret1=********"), Not(HasSubstr("testing"))));
    EXPECT_THAT(dir.read("watched"), AllOf(HasSubstr("secret: ********"), Not(HasSubstr("testing"))));
    EXPECT_THAT(dir.read("watched openly"), HasSubstr(R"("secret1":"testing")"));
}

TEST_F(XmsServe, WhatIsNotDescribedIsShownOnlyOnRequest)
{
    serve();
    dir.write("store/XMSG_SSH", xasMessageBytes(XasMessageBuilder{XMSG_SSH}.bytes(120, "pass")));
    EXPECT_EQ(run({"get", "ssh"}), 0);
    EXPECT_EQ(dir.read("out"), "  not described, and may hold secrets: --secrets shows its bytes\n");
    EXPECT_EQ(run({"get", "ssh", "--secrets"}), 0);
    EXPECT_THAT(dir.read("out"), StartsWith("7061737300"));
}

TEST_F(XmsServe, ARefusalComesWithWhatWasLoggedMeanwhile)
{
    serve();
    const std::string log = dir.write("sw", "of before\n");
    for (const bool isRefused : {true, false}) {
        const pid_t client = startProgram({"set", "radius", "secret1=testing", "--log", log}, "out");
        const auto setting = receive();
        ASSERT_TRUE(setting);
        dir.write("sw", "of before\nNov 22 05:21:43 console xasd: sw/err-no \x1b[31m testing\n");
        acknowledge(setting->xH.id, !isRefused, "no");
        EXPECT_EQ(statusOf(client), isRefused ? 1 : 0);
        EXPECT_EQ(dir.read("out").find("\n  log: xasd: sw/err-no \\x1b[31m ********\n") != std::string::npos,
                  isRefused);
        dir.write("sw", "of before\n");
    }
}

TEST_F(XmsServe, WhatIsLoggedIsShownBetweenTheMessages)
{
    serve({"--quiet"});
    const std::string log = dir.write("sw", "");
    const pid_t watcher = startProgram({"watch", "--type", "dns", "--log", log}, "watched");
    EXPECT_TRUE(xasEventually([&] {
        EXPECT_EQ(setAndAnswer({"set", "dns"}, true), 0);
        return dir.has("watched") && !dir.read("watched").empty();
    }));
    const pid_t client = startProgram({"set", "dns", "dns1=10.0.0.53"}, "out");
    const auto setting = receive();
    ASSERT_TRUE(setting);
    EXPECT_TRUE(xasEventually([&] { return dir.read("watched").ends_with("dns1=10.0.0.53\n"); }));
    dir.write("sw", "xasd: sw/info-Running /r58/bin/dns\n");
    acknowledge(setting->xH.id, true);
    EXPECT_EQ(statusOf(client), 0);
    EXPECT_TRUE(xasEventually([&] { return dir.read("watched").find("53\n") != std::string::npos; }));
    EXPECT_EQ(stop(), 0);
    EXPECT_EQ(statusOf(watcher), 3);
    const std::string shown = dir.read("watched");
    EXPECT_THAT(shown.substr(shown.find("dns1=10.0.0.53\n")),
                testing::ContainsRegex("^dns1=10.0.0.53\n..:..:..\\....  log xasd: sw/info-Running "
                                       "/r58/bin/dns\n..:..:..\\....  <- APP  Return  acknak "));
}
