// Network time: the step file and the NTP daemon's configuration.
#include "config/ntp.h"

#include "support/apps.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/hosts.h"
#include "support/log.h"
#include "support/message.h"
#include "support/reply.h"

namespace {

/** A distribution's file, with lines of every kind that matters. */
constexpr const char *LIFELIKE = "# /etc/ntp.conf, configuration for ntpd; see ntp.conf(5) for help\n"
                                 "\n"
                                 "driftfile /var/lib/ntp/ntp.drift\n"
                                 "leapfile /usr/share/zoneinfo/leap-seconds.list\n"
                                 "\n"
                                 "# Specify one or more NTP servers.\n"
                                 "#server ntp.your-provider.example\n"
                                 "pool 0.debian.pool.ntp.org iburst\n"
                                 "\n"
                                 "# the local clock, for when no server answers\n"
                                 "server 127.127.1.0\n"
                                 "fudge 127.127.1.0 stratum 10\n"
                                 "server 192.168.10.1 iburst\n"
                                 "  server\tntp2.example.net\tprefer\n"
                                 "restrict -4 default kod notrap nomodify nopeer noquery limited\n"
                                 "# If you want to listen to time broadcasts on your local subnet:\n"
                                 "#disable auth\n"
                                 "#broadcastclient\n"
                                 "authenticate no\n"
                                 "#authenticate yes\n"
                                 "servers 4\n";

XasNtpPayload pollingThree(const XasHostAddr &one, const XasHostAddr &two, const XasHostAddr &three)
{
    return {.enabled = 1, .sync = 1, .poll = 0, .servers = {one, two, three}, .single = {}};
}

XasNtpPayload pollingOne(const XasHostAddr &server)
{
    return {.enabled = 1, .sync = 1, .poll = 1, .servers = {}, .single = server};
}

XasNtpPayload notPolling(std::uint32_t sync)
{
    return {.enabled = 1, .sync = sync, .poll = 0, .servers = {}, .single = {}};
}

const XasNtpPayload THREE = pollingThree(xasHostWithAddress("10.0.0.1"), xasNamedHost("ntp.example.org"),
                                         xasHostWithAddress("2001:db8::7b"));

/** The handler on a file pair of its own. */
class NtpUpdate : public XasFilesTest {
  protected:
    XasMessageBuilder message{XMSG_NTP};
    std::string steps = dir.write("step-tickers", "old.example.net\n");
    std::string ntp = dir.write("ntp.conf", "server old.example.net\n");
    XasCfgFileList files = xasTestCfgFiles({{"stepTickers", steps}, {"ntp", ntp}});
    XasLogCapture log;
    XasReplyStatus reply;

    NtpUpdate()
    {
        message.set("enabled=1 sync=1 poll=0 server1=10.0.0.1 server2=ntp.example.org server3=2001:db8::7b "
                    "single=single.example.org");
    }

    int update()
    {
        XasMessage msg = message;
        return xasUpdateNtpCfg(&msg, &files, &reply);
    }

    void expectFilesAsTheyWere() const
    {
        EXPECT_EQ(dir.read("step-tickers"), "old.example.net\n");
        EXPECT_EQ(dir.read("ntp.conf"), "server old.example.net\n");
    }
};

} // namespace

// The step file.

TEST(NtpStepText, ListsThreeServers)
{
    xasExpectTexts({
        {"lists the three servers one a line", xasNtpStepText(THREE),
         "10.0.0.1\nntp.example.org\n2001:db8::7b\n"},
        {"lists the single server with two unset ones", xasNtpStepText(pollingOne(xasNamedHost("one"))),
         "one\n0.0.0.0\n0.0.0.0\n"},
        {"shows zero records as addresses and empty names as empty lines",
         xasNtpStepText(pollingThree({}, {}, xasNamedHost(""))), "0.0.0.0\n0.0.0.0\n\n"},
        {"takes a name that fills its field", xasNtpStepText(pollingOne(xasNamedHost(std::string(68, 'n')))),
         std::string(68, 'n') + "\n0.0.0.0\n0.0.0.0\n"},
    });
}

// The daemon's configuration.

TEST(NtpText, PollingThreeServersReplacesAWholeFile)
{
    EXPECT_EQ(xasNtpCfgText(LIFELIKE, THREE),
              "# /etc/ntp.conf, configuration for ntpd; see ntp.conf(5) for help\n"
              "\n"
              "driftfile /var/lib/ntp/ntp.drift\n"
              "leapfile /usr/share/zoneinfo/leap-seconds.list\n"
              "\n"
              "# Specify one or more NTP servers.\n"
              "server 10.0.0.1\n"
              "server ntp.example.org\n"
              "server 2001:db8::7b\n"
              "pool 0.debian.pool.ntp.org iburst\n"
              "\n"
              "# the local clock, for when no server answers\n"
              "server 127.127.1.0\n"
              "fudge 127.127.1.0 stratum 10\n"
              "restrict -4 default kod notrap nomodify nopeer noquery limited\n"
              "# If you want to listen to time broadcasts on your local subnet:\n"
              "#disable auth\n"
              "#broadcastclient\n"
              "disable auth\n"
              "disable auth\n"
              "servers 4\n");
}

TEST(NtpText, ChangesServersAndTheBroadcastClientAlone)
{
    xasExpectTexts({
        {"neither sync comments out servers and the broadcast client",
         xasNtpCfgText("server a\n#server b\nbroadcastclient\n#broadcastclient\n", notPolling(2)),
         "#server a\n#server b\n#broadcastclient\n#broadcastclient\n"},
        {"polling one server writes no other",
         xasNtpCfgText("server a\nserver b\nserver c\n", pollingOne(xasNamedHost("ntp.example.org"))),
         "server ntp.example.org\n"},
        {"always writes the first server", xasNtpCfgText("server a\n", pollingOne(XasHostAddr{})),
         "server 0.0.0.0\n"},
        {"always writes the first server", xasNtpCfgText("server a\n", pollingOne(xasNamedHost(""))),
         "server \n"},
        {"counts a commented server line as the first",
         xasNtpCfgText("#server a\nfudge x\nserver b\n# server c\n", pollingOne(xasNamedHost("one"))),
         "server one\nfudge x\n"},
        {"takes another local clock for a server", xasNtpCfgText("server 127.127.1.1\n", notPolling(0)),
         "#server 127.127.1.1\n"},
        {"switches the broadcast client on with whatever stands behind it",
         xasNtpCfgText("broadcastclient novolley\n # broadcastclient\n#\tbroadcastclient\n", notPolling(0)),
         "broadcastclient\n # broadcastclient\nbroadcastclient\n"},
        {"switches the broadcast client on with whatever stands behind it",
         xasNtpCfgText(" broadcastclient novolley\n", notPolling(2)), "# broadcastclient novolley\n"},
        {"appends nothing to a file without our lines", xasNtpCfgText("driftfile /d\n", THREE),
         "driftfile /d\n"},
        {"reads lines with carriage returns and keeps them in copied lines",
         xasNtpCfgText("driftfile /d\r\nserver 127.127.1.0\r\nserver a\r\nbroadcastclient\r\n",
                       notPolling(0)),
         "driftfile /d\r\nserver 127.127.1.0\r\n#server a\r\nbroadcastclient\n"},
    });
}

TEST(NtpText, LeavesOutSecondAndThirdServersWithAnEmptyNameButNotTheAddressOfZeroes)
{
    const XasHostAddr one = xasNamedHost("one");
    EXPECT_EQ(xasNtpCfgText("server a\n", pollingThree(one, xasNamedHost(""), xasNamedHost("three"))),
              "server one\nserver three\n");
    EXPECT_EQ(xasNtpCfgText("server a\n", pollingThree(one, XasHostAddr{}, xasNamedHost(""))),
              "server one\nserver 0.0.0.0\n");
}

TEST(NtpText, KeepsServerLinesOfTheLocalClockAndWithoutAServer)
{
    constexpr std::string_view TEXT = "server 127.127.1.0\nserver 127.127.1.0 prefer\n#server 127.127.1.0\n"
                                      "server\n#server\nserver \t \n";
    EXPECT_EQ(xasNtpCfgText(TEXT, THREE), TEXT);
    EXPECT_EQ(xasNtpCfgText(TEXT, notPolling(0)), TEXT);
}

TEST(NtpText, KeepsLinesWhoseFirstWordIsAnother)
{
    constexpr std::string_view TEXT = "servers a\nSERVER a\n##server a\n#\n \t \nbroadcastclients\n"
                                      "authenticated\ndisable authenticate\n";
    EXPECT_EQ(xasNtpCfgText(TEXT, THREE), TEXT);
    EXPECT_EQ(xasNtpCfgText(TEXT, notPolling(0)), TEXT);
}

TEST(NtpText, EndsAReplacedLastLineButNotACopiedOne)
{
    EXPECT_EQ(xasNtpCfgText("server a", pollingOne(xasNamedHost("one"))), "server one\n");
    EXPECT_EQ(xasNtpCfgText("broadcastclient", notPolling(0)), "broadcastclient\n");
    EXPECT_EQ(xasNtpCfgText("server a", notPolling(0)), "#server a");
    EXPECT_EQ(xasNtpCfgText("driftfile /d", THREE), "driftfile /d");
}

TEST(NtpText, TakesALongLineInPiecesOf511Bytes)
{
    const std::string filler(500, 'x');
    // The second piece of the first line begins with "server b", the second piece of the second one does not.
    const std::string text = "driftfile /" + filler + "server b\n" + "#logfile /" + filler + "server c\n";
    ASSERT_EQ(text.find("server b"), 511U);
    EXPECT_EQ(xasNtpCfgText(text, notPolling(0)),
              "driftfile /" + filler + "#server b\n" + "#logfile /" + filler + "server c\n");
}

TEST(NtpText, CommentsOutALongServerLineWithoutLosingAnyOfIt)
{
    const std::string line = "server " + std::string(504, 's');
    ASSERT_EQ(line.size(), 511U);
    EXPECT_EQ(xasNtpCfgText(line + "\n", notPolling(0)), "#" + line + "\n");
}

TEST(NtpText, DoesNotChangeWhenItIsWrittenTwice)
{
    for (const XasNtpPayload &ntpInfo :
         {THREE, pollingOne(xasNamedHost("one")), notPolling(0), notPolling(2)}) {
        const std::string once = xasNtpCfgText(LIFELIKE, ntpInfo);
        EXPECT_EQ(xasNtpCfgText(once, ntpInfo), once) << ntpInfo.sync;
    }
}

TEST(NtpText, LosesItsServerLinesForGoodWhenTheFirstServerIsTheLocalClockOrNone)
{
    for (const char *name : {"127.127.1.0", ""}) {
        const std::string once = xasNtpCfgText("server a\n", pollingOne(xasNamedHost(name)));
        EXPECT_EQ(once, "server " + std::string{name} + "\n");
        EXPECT_EQ(xasNtpCfgText(once, pollingOne(xasNamedHost("one"))), once);
    }
}

// The editors.

// The handler.

TEST_F(NtpUpdate, PutsAnEmptiedStepFileBackTooWhenTheDaemonFileIsNotInTheList)
{
    message.set("sync", 0);
    files = xasTestCfgFiles({{"stepTickers", steps}});
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Error determining NTP step file");
    expectFilesAsTheyWere();
    EXPECT_THAT(dir.names(), ElementsAre("ntp.conf", "step-tickers"));
}

TEST_F(NtpUpdate, RefusesAnUnknownPollingTypeWhenItPolls)
{
    message.set("poll", 2);
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Invalid NTP polling type");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Invalid NTP polling type\n")));
    expectFilesAsTheyWere();
    EXPECT_THAT(dir.names(), ElementsAre("ntp.conf", "step-tickers"));
}

TEST_F(NtpUpdate, DoesNotLookAtThePollingTypeWhenItDoesNotPoll)
{
    message.set("sync", 0).set("poll", 2);
    EXPECT_EQ(update(), 0);
    EXPECT_EQ(dir.read("ntp.conf"), "#server old.example.net\n");
}

TEST_F(NtpUpdate, WritesTheThreePolledServersToBothFiles)
{
    EXPECT_EQ(update(), 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_EQ(dir.read("step-tickers"), "10.0.0.1\nntp.example.org\n2001:db8::7b\n");
    EXPECT_EQ(dir.read("ntp.conf"), "server 10.0.0.1\nserver ntp.example.org\nserver 2001:db8::7b\n");
    EXPECT_EQ(dir.read("step-tickers.old"), "old.example.net\n");
    EXPECT_EQ(dir.read("ntp.conf.old"), "server old.example.net\n");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(NtpUpdate, DoesNotLookAtWhetherTheDaemonIsEnabled)
{
    message.set("enabled", 0);
    EXPECT_EQ(update(), 0);
    EXPECT_EQ(dir.read("ntp.conf"), "server 10.0.0.1\nserver ntp.example.org\nserver 2001:db8::7b\n");
}

TEST_F(NtpUpdate, EmptiesTheStepFileKeepingItsContentAndModeWhenNothingIsPolled)
{
    for (const std::uint32_t sync : {0U, 2U, 0xFFFFFFFFU}) {
        steps = dir.write("step-tickers", "old.example.net\n", 0640);
        message.set("sync", sync);
        EXPECT_EQ(update(), 0);
        EXPECT_EQ(dir.read("step-tickers"), "");
        EXPECT_EQ(xasModeOf(steps), 0640U);
        EXPECT_EQ(dir.read("step-tickers.old"), "old.example.net\n");
        EXPECT_THAT(dir.names(),
                    UnorderedElementsAre("ntp.conf", "ntp.conf.old", "step-tickers", "step-tickers.old"));
    }
}

TEST_F(NtpUpdate, EmptiesTheStepFileWhateverStandsAtItsTemporary)
{
    message.set("sync", 0);
    dir.write("step-tickers.tmp", "abandoned\n");
    EXPECT_EQ(update(), 0);
    EXPECT_EQ(dir.read("step-tickers.tmp"), "abandoned\n");
    std::filesystem::remove(dir.path("step-tickers.tmp"));
    dir.write("step-tickers.tmp/inside", "text");
    steps = dir.write("step-tickers", "old.example.net\n");
    log.take();
    EXPECT_EQ(update(), 0);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(dir.read("step-tickers"), "");
    EXPECT_EQ(dir.read("step-tickers.old"), "old.example.net\n");
    EXPECT_EQ(dir.read("step-tickers.tmp/inside"), "text");
}

TEST_F(NtpUpdate, MakesAMissingStepFileButFailsWithoutAReason)
{
    std::filesystem::remove(steps);
    message.set("sync", 0);
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error renaming old config file \"" + steps + "\"\n")));
    EXPECT_EQ(dir.read("step-tickers"), "");
    EXPECT_EQ(xasModeOf(steps), 0644U);
    EXPECT_EQ(dir.read("ntp.conf"), "server old.example.net\n");
}

TEST_F(NtpUpdate, PutsTheStepFileBackWhenTheEmptyOneCannotBeMade)
{
    message.set("sync", 0);
    const XasFault fault{"open", EACCES, 0, 1};
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error opening file \"" + steps + "\"\n")));
    expectFilesAsTheyWere();
    EXPECT_THAT(dir.names(), ElementsAre("ntp.conf", "step-tickers"));
}

TEST_F(NtpUpdate, LogsBothFailuresWhenTheStepFilesDirectoryIsMissing)
{
    const std::string nowhere = dir.path("missing/step-tickers");
    files = xasTestCfgFiles({{"stepTickers", nowhere}, {"ntp", ntp}});
    message.set("sync", 0);
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    const XasLogLine notRenamed = xasErrorLine("Error renaming old config file \"" + nowhere + "\"\n");
    EXPECT_THAT(log.lines(),
                ElementsAre(notRenamed, xasErrorLine("Error opening file \"" + nowhere + "\"\n")));
}

TEST_F(NtpUpdate, LeavesADirectoryWhereTheStepFileShouldBeAlone)
{
    std::filesystem::remove(steps);
    xasWriteFile(steps + "/inside", "text");
    message.set("sync", 0);
    EXPECT_EQ(update(), 1);
    const XasLogLine notRenamed = xasErrorLine("Error renaming old config file \"" + steps + "\"\n");
    EXPECT_THAT(log.lines(), ElementsAre(notRenamed, xasErrorLine("Error opening file \"" + steps + "\"\n")));
    EXPECT_EQ(dir.read("step-tickers/inside"), "text");
    EXPECT_THAT(dir.names(), ElementsAre("ntp.conf", "step-tickers"));
}
