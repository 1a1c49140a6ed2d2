// The system logger's configuration.
#include "config/syslog.h"

#include "support/files.h"
#include "support/hosts.h"
#include "support/log.h"
#include "support/reply.h"

namespace {

/** An appliance's file, with forwarding rules of earlier settings. */
constexpr const char *LIFELIKE = "#  /etc/syslog.conf\tConfiguration file for the system logger.\n"
                                 "#\n"
                                 "# local0.info\t@loghost keeps this comment\n"
                                 "\n"
                                 "auth,authpriv.*\t\t\t/var/log/auth.log\n"
                                 "*.*;auth,authpriv.none\t\t-/var/log/messages\n"
                                 "local0.info    /var/log/network\n"
                                 "local1.*\t-/var/log/daemon.log\n"
                                 "authpriv.info    /var/log/secure\n"
                                 "local3.debug    /var/log/elsewhere\n"
                                 "local4.info    /var/log/diag\n"
                                 "local5.info    /var/log/general\n"
                                 "local6.debug    /var/log/sw\n"
                                 "kern.info    /var/log/general\n"
                                 "local2.info    /var/log/other\n"
                                 "local0.*\troot,operator\n"
                                 "kern.crit\t*\n"
                                 "local7.*\t/var/log/boot\n"
                                 "local0.info    @10.9.8.7\n"
                                 "kern.info    @10.9.8.7\n"
                                 "auth.info    @10.9.8.7\n"
                                 "*.emerg\t\t\t\t:omusrmsg:*\n";

/** Levels none, info, warning, err, debug, info; no remote servers. */
XasSyslogPayload settings()
{
    XasSyslogPayload sysLogInfo{};
    const std::uint32_t levels[] = {0, 1, 2, 3, 4, 1};
    std::ranges::copy(levels, sysLogInfo.levels);
    sysLogInfo.remotes[0] = xasNamedHost("");
    sysLogInfo.remotes[1] = xasNamedHost("");
    return sysLogInfo;
}

class SyslogFile : public XasFilesTest {
  protected:
    XasSyslogPayload sysLogInfo = settings();
    XasLogCapture log;
    XasReplyStatus reply;
};

} // namespace

TEST(SyslogLevels, AreInvalidWhenAnyIndexIsAbove4)
{
    for (std::size_t i = 0; i < 6; ++i) {
        XasSyslogPayload sysLogInfo = settings();
        sysLogInfo.levels[i] = 4;
        EXPECT_TRUE(xasAreSyslogLevelsValid(sysLogInfo)) << i;
        sysLogInfo.levels[i] = 5;
        EXPECT_FALSE(xasAreSyslogLevelsValid(sysLogInfo)) << i;
        sysLogInfo.levels[i] = 0xFFFFFFFF;
        EXPECT_FALSE(xasAreSyslogLevelsValid(sysLogInfo)) << i;
    }
}

TEST(SyslogText, ReplacesAWholeFile)
{
    EXPECT_EQ(xasSyslogLocalText(LIFELIKE, settings()),
              "#  /etc/syslog.conf\tConfiguration file for the system logger.\n"
              "#\n"
              "# local0.info\t@loghost keeps this comment\n"
              "\n"
              "auth,authpriv.*\t\t\t/var/log/auth.log\n"
              "*.*;auth,authpriv.none\t\t-/var/log/messages\n"
              "local0.none    /var/log/network\n"
              "local1.info    /var/log/services\n"
              "authpriv.warning    /var/log/secure\n"
              "local3.err    /var/log/devports\n"
              "local4.debug    /var/log/diag\n"
              "local5.info    /var/log/general\n"
              "local6.info    /var/log/sw\n"
              "kern.info    /var/log/general\n"
              "local2.info    /var/log/other\n"
              "local7.*\t/var/log/boot\n"
              "*.emerg\t\t\t\t:omusrmsg:*\n");
}

TEST(SyslogText, NamesEachLevelByItsIndex)
{
    const char *const names[] = {"none", "info", "warning", "err", "debug"};
    for (std::uint32_t level = 0; level < 5; ++level) {
        XasSyslogPayload sysLogInfo = settings();
        sysLogInfo.levels[0] = level;
        EXPECT_EQ(xasSyslogLocalText("local0.*    /var/log/network\n", sysLogInfo),
                  "local0." + std::string{names[level]} + "    /var/log/network\n");
    }
}

TEST(SyslogText, LogsTheKernelAtTheSixthLevel)
{
    XasSyslogPayload sysLogInfo = settings();
    sysLogInfo.levels[5] = 3;
    EXPECT_EQ(xasSyslogLocalText("kern.*    /var/log/kern\nlocal5.*    /var/log/x\n", sysLogInfo),
              "kern.err    /var/log/general\nlocal5.err    /var/log/general\n");
}

TEST(SyslogText, LogsOurOwnCategoryAlwaysAtInfo)
{
    XasSyslogPayload sysLogInfo = settings();
    for (std::uint32_t &level : sysLogInfo.levels)
        level = 4;
    EXPECT_EQ(xasSyslogLocalText("local6.err    /var/log/x\n", sysLogInfo), "local6.info    /var/log/sw\n");
}

TEST(SyslogText, ChangesTheLinesOfItsFacilitiesAlone)
{
    xasExpectTexts({
        {"replaces the whole line of a facility that comes first in its selectors",
         xasSyslogLocalText("local0.*;local7.*    /var/log/both\n", settings()),
         "local0.none    /var/log/network\n"},
        {"skips dots in front of a facility", xasSyslogLocalText("..local0.info /var/log/a\n", settings()),
         "local0.none    /var/log/network\n"},
        {"takes a line of a facility alone as one without a path",
         xasSyslogLocalText("kern\nlocal0\nlocal0.", settings()), ""},
        {"drops every line with an at sign but comments",
         xasSyslogLocalText("*.* @@loghost:514\nmail.*    /var/log/a@b\n#*.* @loghost\n"
                            " #*.* @loghost\nlocal0.*    /var/log/a@b\n",
                            settings()),
         "#*.* @loghost\n"},
        {"ends a replaced last line but not a copied one", xasSyslogLocalText("local0.*\t/a", settings()),
         "local0.none    /var/log/network\n"},
        {"ends a replaced last line but not a copied one", xasSyslogLocalText("mail.*\t/a", settings()),
         "mail.*\t/a"},
        {"reads lines with carriage returns and keeps them in copied lines",
         xasSyslogLocalText("mail.*\t/a\r\nlocal0.*\t/a\r\nkern.*\troot\r\n\r\n", settings()),
         "mail.*\t/a\r\nlocal0.none    /var/log/network\n\r\n"},
    });
}

TEST(SyslogText, KeepsLinesWhoseTextBeforeTheFirstDotIsNoFacilityOfOurs)
{
    constexpr std::string_view TEXT = " local0.info /var/log/a\nlocal0,local1.info /var/log/a\n"
                                      "local00.info /var/log/a\nlocal2.info /var/log/a\nLOCAL0.info /a\n"
                                      "auth.info /var/log/a\n\n...\n$ModLoad imuxsock\n";
    EXPECT_EQ(xasSyslogLocalText(TEXT, settings()), TEXT);
}

TEST(SyslogText, TakesALongLineInPiecesOf511Bytes)
{
    // The first piece is a comment; the second one a rule, the third one with a path but no facility.
    const std::string comment = "#" + std::string(510, 'c');
    const std::string rule = "local0.*" + std::string(503, '/');
    ASSERT_EQ(comment.size(), 511U);
    ASSERT_EQ(rule.size(), 511U);
    EXPECT_EQ(xasSyslogLocalText(comment + rule + "/tail\n", settings()),
              comment + "local0.none    /var/log/network\n" + "/tail\n");
}

TEST(SyslogRemoteText, IsEmptyWithoutServers)
{
    EXPECT_EQ(xasSyslogRemoteText(settings()), "");
}

TEST(SyslogRemoteText, IsABlockForEachServer)
{
    XasSyslogPayload sysLogInfo = settings();
    sysLogInfo.remotes[0] = xasNamedHost("loghost.example.org");
    sysLogInfo.remotes[1] = xasHostWithAddress("10.0.0.5");
    EXPECT_EQ(xasSyslogRemoteText(sysLogInfo), "local0.none    @loghost.example.org\n"
                                               "local1.info    @loghost.example.org\n"
                                               "authpriv.warning    @loghost.example.org\n"
                                               "local3.err    @loghost.example.org\n"
                                               "local4.debug    @loghost.example.org\n"
                                               "local5.info    @loghost.example.org\n"
                                               "local6.info    @loghost.example.org\n"
                                               "kern.info    @loghost.example.org\n"
                                               "auth.info    @loghost.example.org\n"
                                               "local0.none    @10.0.0.5\n"
                                               "local1.info    @10.0.0.5\n"
                                               "authpriv.warning    @10.0.0.5\n"
                                               "local3.err    @10.0.0.5\n"
                                               "local4.debug    @10.0.0.5\n"
                                               "local5.info    @10.0.0.5\n"
                                               "local6.info    @10.0.0.5\n"
                                               "kern.info    @10.0.0.5\n"
                                               "auth.info    @10.0.0.5\n");
}

TEST(SyslogRemoteText, IsWrittenForTheSecondServerAloneAndForTheAddressOfZeroes)
{
    XasSyslogPayload sysLogInfo = settings();
    sysLogInfo.remotes[1] = xasHostWithAddress("2001:db8::5");
    EXPECT_THAT(xasSyslogRemoteText(sysLogInfo), StartsWith("local0.none    @2001:db8::5\n"));
    sysLogInfo.remotes[1] = {};
    EXPECT_THAT(xasSyslogRemoteText(sysLogInfo), StartsWith("local0.none    @0.0.0.0\n"));
}

TEST_F(SyslogFile, HasTheLocalRulesAndThenTheForwardingRules)
{
    sysLogInfo.remotes[0] = xasNamedHost("loghost");
    const std::string path = dir.write("syslog.conf", "local0.info    /a\nmail.*    /b\n");
    EXPECT_EQ(xasEditSyslogCfgFile(path.c_str(), &sysLogInfo, &reply), 0);
    EXPECT_EQ(dir.read("syslog.conf"), "local0.none    /var/log/network\n"
                                       "mail.*    /b\n"
                                       "local0.none    @loghost\n"
                                       "local1.info    @loghost\n"
                                       "authpriv.warning    @loghost\n"
                                       "local3.err    @loghost\n"
                                       "local4.debug    @loghost\n"
                                       "local5.info    @loghost\n"
                                       "local6.info    @loghost\n"
                                       "kern.info    @loghost\n"
                                       "auth.info    @loghost\n");
    EXPECT_EQ(dir.read("syslog.conf.old"), "local0.info    /a\nmail.*    /b\n");
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(SyslogFile, DoesNotChangeWhenItIsWrittenTwice)
{
    sysLogInfo.remotes[1] = xasNamedHost("loghost");
    const std::string path = dir.write("syslog.conf", LIFELIKE);
    EXPECT_EQ(xasEditSyslogCfgFile(path.c_str(), &sysLogInfo, &reply), 0);
    const std::string once = dir.read("syslog.conf");
    EXPECT_EQ(xasEditSyslogCfgFile(path.c_str(), &sysLogInfo, &reply), 0);
    EXPECT_EQ(dir.read("syslog.conf"), once);
}

TEST_F(SyslogFile, LosesALastLineWithoutLineFeedTheSecondTimeBecauseARuleHadJoinedIt)
{
    sysLogInfo.remotes[0] = xasNamedHost("loghost");
    const std::string path = dir.write("syslog.conf", "mail.*    /b");
    EXPECT_EQ(xasEditSyslogCfgFile(path.c_str(), &sysLogInfo, &reply), 0);
    EXPECT_THAT(dir.read("syslog.conf"), StartsWith("mail.*    /blocal0.none    @loghost\n"));
    EXPECT_EQ(xasEditSyslogCfgFile(path.c_str(), &sysLogInfo, &reply), 0);
    EXPECT_THAT(dir.read("syslog.conf"), StartsWith("local0.none    @loghost\n"));
}
