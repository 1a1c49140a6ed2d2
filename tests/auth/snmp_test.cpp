// The SNMP agent's file.
#include "auth/snmp.h"

#include "support/hosts.h"
#include "support/test.h"

using testing::Values;

namespace {

/** A file as it may have grown on an appliance, by hand and by earlier settings. */
constexpr const char *LIFELIKE = "###########################################################\n"
                                 "# snmpd.conf: the agent of the console server\n"
                                 "agentAddress  udp:161,udp6:[::1]:161\n"
                                 "\n"
                                 "#  System Information\n"
                                 "syslocation    Sitting on the Dock of the Bay\n"
                                 "syscontact\tMe <me@example.org>\n"
                                 "sysServices    72\n"
                                 "#  Users\n"
                                 "createUser  olduser  MD5 \"old pass phrase\" DES\n"
                                 "rouser   olduser   priv   .1.3.6.1.2.1\n"
                                 "rwuser\tolduser\n"
                                 "createUser oldwriter SHA oldoldold AES oldoldold\n"
                                 "#  Communities\n"
                                 "rocommunity public  default -V systemonly\n"
                                 " rocommunity6 public default\n"
                                 "\trwcommunity private localhost\n"
                                 "rwcommunity6 private ::1\n"
                                 "#rocommunity secret 10.0.0.0/16\n"
                                 "# rwcommunity secret 10.0.0.0/16\n"
                                 "#  Traps\n"
                                 "trapcommunity public\n"
                                 "trapsink     localhost public\n"
                                 "trap2sink    localhost\n"
                                 "informsink   localhost public\n"
                                 "view   systemonly  included   .1.3.6.1.2.1.1\n"
                                 "extend    test1   /bin/echo  Hello, world!\n";

XasSnmpPayload settings()
{
    XasSnmpPayload snmpCfg{};
    for (XasHostAddr &host : snmpCfg.trap_hosts)
        host = xasNamedHost("");
    xasSetFieldText(snmpCfg.syslocation, "Rack 4, row B");
    xasSetFieldText(snmpCfg.syscontact, "noc@example.org");
    xasSetFieldText(snmpCfg.v3user, "monitor");
    xasSetFieldText(snmpCfg.v3pass, "monitorpass");
    xasSetFieldText(snmpCfg.v3phrase, "monitorphrase");
    xasSetFieldText(snmpCfg.v3rwuser, "manager");
    xasSetFieldText(snmpCfg.v3rwpass, "managerpass");
    xasSetFieldText(snmpCfg.v3rwphrase, "managerphrase");
    xasSetFieldText(snmpCfg.ro_community, "reader");
    xasSetFieldText(snmpCfg.rw_community, "writer");
    xasSetFieldText(snmpCfg.trap_community, "alarms");
    return snmpCfg;
}

/** The settings that leave the communities as they are, so that only what a test is about changes. */
XasSnmpPayload keeping()
{
    XasSnmpPayload snmpCfg = settings();
    snmpCfg.community_mode = 2;
    return snmpCfg;
}

/** What becomes of one line when the communities that the file has not are not added. */
std::string lineText(const std::string &line, const XasSnmpPayload &snmpCfg = keeping())
{
    return xasSnmpText(line + "\n", snmpCfg);
}

/** A keyword and what a line of it becomes in each community mode. */
struct CommunityRow {
    const char *keyword;
    const char *written;
};

class SnmpCommunities : public testing::TestWithParam<CommunityRow> {};

} // namespace

TEST(SnmpText, OfAnEmptyFileStaysEmptyInEveryOtherMode)
{
    for (const std::uint32_t mode : {1U, 2U, 3U, 0xFFFFFFFFU}) {
        XasSnmpPayload snmpCfg = settings();
        snmpCfg.community_mode = mode;
        EXPECT_EQ(xasSnmpText("", snmpCfg), "") << mode;
    }
}

TEST(SnmpText, ReplacesAWholeFile)
{
    XasSnmpPayload snmpCfg = settings();
    snmpCfg.v3security = 2;
    snmpCfg.v3auth = 1;
    snmpCfg.v3encrypt = 1;
    xasSetFieldText(snmpCfg.v3phrase, "monitor phrase");
    xasSetFieldText(snmpCfg.v3rwpass, "manager pass");
    snmpCfg.trap_hosts[0] = xasHostWithAddress("192.168.10.30");
    snmpCfg.trap_hosts[1] = xasHostWithAddress("2001:db8::30");
    EXPECT_EQ(xasSnmpText(LIFELIKE, snmpCfg), "###########################################################\n"
                                              "# snmpd.conf: the agent of the console server\n"
                                              "agentAddress  udp:161,udp6:[::1]:161\n"
                                              "\n"
                                              "#  System Information\n"
                                              "syslocation  Rack 4, row B\n"
                                              "syscontact  noc@example.org\n"
                                              "sysServices    72\n"
                                              "#  Users\n"
                                              "rouser  monitor priv\n"
                                              "createUser monitor SHA monitorpass AES \"monitor phrase\"\n"
                                              "rwuser  manager priv\n"
                                              "createUser manager SHA \"manager pass\" AES managerphrase\n"
                                              "#  Communities\n"
                                              "rocommunity  reader\n"
                                              "rocommunity6  reader\n"
                                              "rwcommunity  writer\n"
                                              "rwcommunity  writer\n"
                                              "#rocommunity secret 10.0.0.0/16\n"
                                              "# rwcommunity secret 10.0.0.0/16\n"
                                              "#  Traps\n"
                                              "trapcommunity  alarms\n"
                                              "informsink   localhost public\n"
                                              "view   systemonly  included   .1.3.6.1.2.1.1\n"
                                              "extend    test1   /bin/echo  Hello, world!\n"
                                              "trapsink 192.168.10.30\n"
                                              "trap2sink 192.168.10.30\n"
                                              "trapsink 2001:db8::30\n"
                                              "trap2sink 2001:db8::30\n");
}

TEST(SnmpText, KeepsLinesWhoseFirstWordIsNoneOfItsOwn)
{
    for (const char *line :
         {"", "  ", "\t", "#syscontact x", "# syscontact x", "SYSCONTACT x", "syscontacts x", "sysname x",
          "rouser= x", "RoUser x", "usmUser x", "createuser x MD5 y", "trapsess x", "trap3sink x",
          "trapsink6 x", "authtrapenable 1", "com2sec rocommunity", "rocommunity66 x", "\"rouser\" x"})
        EXPECT_EQ(lineText(line), std::string{line} + "\n") << line;
}

TEST(SnmpText, ReplacesContactAndLocationOnTheirOwnLines)
{
    EXPECT_EQ(lineText("syscontact"), "syscontact  noc@example.org\n");
    EXPECT_EQ(lineText(" \tsyscontact\tsomebody else"), "syscontact  noc@example.org\n");
    EXPECT_EQ(lineText("syslocation"), "syslocation  Rack 4, row B\n");
    EXPECT_EQ(lineText("\t syslocation here"), "syslocation  Rack 4, row B\n");
}

TEST(SnmpText, WritesAnEmptyContactAndLocationToo)
{
    XasSnmpPayload snmpCfg{};
    snmpCfg.community_mode = 2;
    for (XasHostAddr &host : snmpCfg.trap_hosts)
        host = xasNamedHost("");
    EXPECT_EQ(xasSnmpText("syscontact me\nsyslocation here\ntrapcommunity x\n", snmpCfg),
              "syscontact  \nsyslocation  \ntrapcommunity  \n");
}

TEST(SnmpText, GivesEveryUserLineItsOwnNewCreateUserLineBehindIt)
{
    EXPECT_EQ(
        xasSnmpText("createUser a MD5 b DES c\nrouser a\nrwuser b\nrouser c priv\ncreateUser z\n", keeping()),
        "rouser  monitor noauth\ncreateUser monitor MD5 monitorpass DES monitorphrase\n"
        "rwuser  manager noauth\ncreateUser manager MD5 managerpass DES managerphrase\n"
        "rouser  monitor noauth\ncreateUser monitor MD5 monitorpass DES monitorphrase\n");
}

TEST(SnmpText, NamesEachSecurityLevelAndTakesOthersForAuthentication)
{
    const std::array<std::pair<std::uint32_t, const char *>, 6> levels = {
        {{0, "noauth"}, {1, "auth"}, {2, "priv"}, {3, "auth"}, {4, "auth"}, {0xFFFFFFFF, "auth"}}};
    for (const auto &[level, name] : levels) {
        XasSnmpPayload snmpCfg = keeping();
        snmpCfg.v3security = level;
        EXPECT_EQ(lineText("rouser x", snmpCfg),
                  "rouser  monitor " + std::string{name} +
                      "\ncreateUser monitor MD5 monitorpass DES monitorphrase\n");
        EXPECT_EQ(lineText("rwuser x", snmpCfg),
                  "rwuser  manager " + std::string{name} +
                      "\ncreateUser manager MD5 managerpass DES managerphrase\n");
    }
}

TEST(SnmpText, UsesShaAndAesForOneMd5AndDesForEveryOtherNumber)
{
    for (const std::uint32_t number : {0U, 1U, 2U, 3U, 0x101U, 0xFFFFFFFFU}) {
        XasSnmpPayload snmpCfg = keeping();
        snmpCfg.v3auth = number;
        EXPECT_EQ(lineText("rouser x", snmpCfg), "rouser  monitor noauth\ncreateUser monitor " +
                                                     std::string{number == 1 ? "SHA" : "MD5"} +
                                                     " monitorpass DES monitorphrase\n");
        snmpCfg = keeping();
        snmpCfg.v3encrypt = number;
        EXPECT_EQ(lineText("rwuser x", snmpCfg),
                  "rwuser  manager noauth\ncreateUser manager MD5 managerpass " +
                      std::string{number == 1 ? "AES" : "DES"} + " managerphrase\n");
    }
}

TEST(SnmpText, QuotesEachPassPhraseThatHasABlankAndNoOther)
{
    struct Case {
        const char *pass;
        const char *phrase;
        const char *written;
    };
    constexpr Case CASES[] = {
        {"plain", "bare", "plain DES bare"},
        {"a b", "bare", "\"a b\" DES bare"},
        {"plain", "c d", "plain DES \"c d\""},
        {"a b", "c d", "\"a b\" DES \"c d\""},
        {" lead", "trail ", "\" lead\" DES \"trail \""},
        {"", "", " DES "},
        {"tab\tbed", "quo\"te", "tab\tbed DES quo\"te"},
    };
    for (const Case &c : CASES) {
        XasSnmpPayload snmpCfg = keeping();
        xasSetFieldText(snmpCfg.v3pass, c.pass);
        xasSetFieldText(snmpCfg.v3phrase, c.phrase);
        xasSetFieldText(snmpCfg.v3rwpass, c.pass);
        xasSetFieldText(snmpCfg.v3rwphrase, c.phrase);
        EXPECT_EQ(lineText("rouser", snmpCfg),
                  "rouser  monitor noauth\ncreateUser monitor MD5 " + std::string{c.written} + "\n");
        EXPECT_EQ(lineText("rwuser", snmpCfg),
                  "rwuser  manager noauth\ncreateUser manager MD5 " + std::string{c.written} + "\n");
    }
}

TEST_P(SnmpCommunities, AreRewrittenInModeZeroDroppedInModeOneAndKeptInEveryOther)
{
    for (const char *rest : {"", " public", "\tpublic default", "  public  10.0.0.0/8 .1.3"}) {
        const std::string line = GetParam().keyword + std::string{rest};
        const std::string indented = " \t" + line;
        XasSnmpPayload snmpCfg = settings();
        EXPECT_THAT(xasSnmpText(line + "\n", snmpCfg), StartsWith(GetParam().written)) << line;
        EXPECT_THAT(xasSnmpText(indented + "\n", snmpCfg), StartsWith(GetParam().written)) << line;
        snmpCfg.community_mode = 1;
        EXPECT_EQ(xasSnmpText(line + "\n", snmpCfg), "");
        EXPECT_EQ(xasSnmpText(indented + "\n", snmpCfg), "");
        for (const std::uint32_t mode : {2U, 3U, 0xFFFFFFFFU}) {
            snmpCfg.community_mode = mode;
            EXPECT_EQ(xasSnmpText(line + "\n", snmpCfg), line + "\n") << mode;
            EXPECT_EQ(xasSnmpText(indented + "\n", snmpCfg), indented + "\n") << mode;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Keywords, SnmpCommunities,
                         Values(CommunityRow{"rocommunity", "rocommunity  reader\n"},
                                CommunityRow{"rocommunity6", "rocommunity6  reader\n"},
                                CommunityRow{"rwcommunity", "rwcommunity  writer\n"},
                                CommunityRow{"rwcommunity6", "rwcommunity  writer\n"}),
                         [](const auto &test) { return std::string{test.param.keyword}; });

TEST(SnmpText, AddsTheCommunityThatNoLineHas)
{
    EXPECT_EQ(xasSnmpText("rocommunity x\n", settings()), "rocommunity  reader\nrwcommunity  writer\n");
    EXPECT_EQ(xasSnmpText("rocommunity6 x\n", settings()), "rocommunity6  reader\nrwcommunity  writer\n");
    EXPECT_EQ(xasSnmpText("rwcommunity x\n", settings()), "rwcommunity  writer\nrocommunity  reader\n");
    EXPECT_EQ(xasSnmpText("rwcommunity6 x\n", settings()), "rwcommunity  writer\nrocommunity  reader\n");
}

TEST(SnmpText, DropsOldTrapDestinationsAndWritesThoseThatAreGiven)
{
    constexpr const char *OLD = "trapsink a\n trap2sink b public\n\ttrapsink\nview all included .1\n";
    EXPECT_EQ(xasSnmpText(OLD, keeping()), "view all included .1\n");

    XasSnmpPayload snmpCfg = keeping();
    snmpCfg.trap_hosts[0] = xasNamedHost("traps.example.org");
    EXPECT_EQ(xasSnmpText(OLD, snmpCfg),
              "view all included .1\ntrapsink traps.example.org\ntrap2sink traps.example.org\n");

    snmpCfg.trap_hosts[0] = xasNamedHost("");
    snmpCfg.trap_hosts[1] = xasHostWithAddress("10.0.0.9");
    EXPECT_EQ(xasSnmpText(OLD, snmpCfg), "view all included .1\ntrapsink 10.0.0.9\ntrap2sink 10.0.0.9\n");
}

TEST(SnmpText, TakesAHostRecordOfZeroesForAnAddress)
{
    XasSnmpPayload snmpCfg = keeping();
    snmpCfg.trap_hosts[1] = {};
    EXPECT_EQ(xasSnmpText("", snmpCfg), "trapsink 0.0.0.0\ntrap2sink 0.0.0.0\n");
}

TEST(SnmpText, EndsAReplacedLastLineButNotACopiedOne)
{
    EXPECT_EQ(xasSnmpText("syscontact x", keeping()), "syscontact  noc@example.org\n");
    EXPECT_EQ(xasSnmpText("sysname x", keeping()), "sysname x");
    EXPECT_EQ(xasSnmpText("sysname x", settings()), "sysname xrocommunity  reader\nrwcommunity  writer\n");
}

TEST(SnmpText, ReadsLinesWithCarriageReturnsAndKeepsThemInCopiedLines)
{
    EXPECT_EQ(xasSnmpText("\r\nsyscontact\r\ntrapsink x\r\nview a\r\n", keeping()),
              "\r\nsyscontact  noc@example.org\nview a\r\n");
}

TEST(SnmpText, TakesALongLineInPiecesOf511Bytes)
{
    const std::string comment = "#" + std::string(510, 'c');
    const std::string contact = "syscontact " + std::string(500, 'x');
    ASSERT_EQ(comment.size(), 511U);
    ASSERT_EQ(contact.size(), 511U);
    EXPECT_EQ(xasSnmpText(comment + contact + "tail\n", keeping()),
              comment + "syscontact  noc@example.org\n" + "tail\n");
    const std::string longest = std::string(510, 'v') + "\n";
    EXPECT_EQ(xasSnmpText(longest + "trapsink x\n", keeping()), longest);
}

TEST(SnmpText, DoesNotChangeWhenItIsMadeTwice)
{
    XasSnmpPayload snmpCfg = settings();
    snmpCfg.trap_hosts[0] = xasNamedHost("traps.example.org");
    const std::string once = xasSnmpText(LIFELIKE, snmpCfg);
    EXPECT_EQ(xasSnmpText(once, snmpCfg), once);
}
