// The users' messages: commands in order, lists, port files, refusals; with the real shell.
#include "auth/users.h"

#include "auth/local_users.h"
#include "auth/user_ports.h"
#include "support/faults.h"
#include "support/log.h"
#include "support/message.h"
#include "support/reply.h"
#include "support/stub.h"
#include "support/users.h"

namespace {

constexpr const char *NO_PERMISSIONS = "ALLOW_LISTEN=0x0\nALLOW_DIRECT=0x0\nALLOW_CLEAR=0x0\n"
                                       "ESCAPE_SEQ=\"\"\nBREAK_SEQ=\"\"\n";

class LocalUsers : public testing::Test {
  protected:
    LocalUsers()
    {
        std::filesystem::remove_all("/etc/zel");
        std::filesystem::create_directories("/etc/zel");
        xasWriteFile(XAS_USER_LIST, "");
        stubs.put("/bin/adduser");
        stubs.put("/bin/deluser");
    }

    /** System accounts of these logins. */
    static void giveAccounts(const std::vector<std::string> &logins)
    {
        std::string passwd = "root:x:0:0:root:/root:/bin/sh\n";
        for (const std::string &login : logins)
            passwd += login + ":x:1000:1000::/:/bin/cli\n";
        xasWriteFile("/etc/passwd", passwd);
    }

    int single(const XasUserRecord &user, std::uint32_t action)
    {
        XasMessage msg = XasMessageBuilder{XMSG_USER}.payload(user).set("action", action);
        return xasUpdateSingleLocalUsersCfg(&msg, &cfgFiles, &reply);
    }

    int rebuild(const std::vector<XasUserRecord> &users)
    {
        const XasUserRecord *reference = users.data();
        XasMessage msg = XasMessageBuilder{XMSG_LOCALUSERS}
                             .set("users_included", 1)
                             .set("num_users", static_cast<std::uint16_t>(users.size()))
                             .bytes(XAS_USER_REFERENCE_OFFSET,
                                    {reinterpret_cast<const char *>(&reference), sizeof reference});
        return xasUpdateLocalUsersCfg(&msg, &cfgFiles, &reply);
    }

    static std::string portFile(const std::string &login)
    {
        return xasReadFile("/etc/zel/" + login + ".conf");
    }

    XasStubs stubs;
    XasLogCapture log;
    XasCfgFileList cfgFiles;
    XasReplyStatus reply;
};

} // namespace

TEST_F(LocalUsers, RefuseALoginThatIsNoneWhateverTheAction)
{
    for (const std::string_view login : {"", "-r", "../../tmp/x", "a b", "a\nb", "\t", "a:b"}) {
        for (const std::uint32_t action : {0U, 1U, 2U, 3U, 5U})
            EXPECT_EQ(single(xasTestUser(login, "p"), action), 1) << login;
    }
    EXPECT_THAT(log.lines(), Each(xasErrorLine("Invalid user to add\n")));
    EXPECT_EQ(log.lines().size(), 35U);
    EXPECT_THAT(stubs.calls(), IsEmpty());
    EXPECT_EQ(xasReadFile(XAS_USER_LIST), "");
    EXPECT_TRUE(std::filesystem::is_empty("/etc/zel"));
}

TEST_F(LocalUsers, RefuseAnActionThatIsNone)
{
    EXPECT_EQ(single(xasTestUser("alice"), 5), 1);
    EXPECT_EQ(single(xasTestUser("alice"), 4), 1);
    EXPECT_EQ(single(xasTestUser("alice"), 0xFFFFFFFFU), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Invalid user action 5\n"), xasErrorLine("Invalid user action 4\n"),
                            xasErrorLine("Invalid user action -1\n")));
    EXPECT_THAT(stubs.calls(), IsEmpty());
}

TEST_F(LocalUsers, AddFailsSilentlyWhenTheListCannotBeOpened)
{
    std::filesystem::remove(XAS_USER_LIST);
    std::filesystem::create_directories(std::string{XAS_USER_LIST} + "/inside");
    EXPECT_EQ(single(xasTestUser("alice"), 0), 1);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_THAT(stubs.calls(), IsEmpty());
    std::filesystem::remove_all(XAS_USER_LIST);
}

TEST_F(LocalUsers, AddFailsWithTheWaitStatusAndTheLoginStaysListed)
{
    stubs.put("/bin/adduser", 3);
    EXPECT_EQ(single(xasTestUser("alice", "", 501), 0), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("adduser command for alice, uid 501 failed with code 768\n")));
    EXPECT_EQ(xasReadFile(XAS_USER_LIST), "alice\n");
    EXPECT_FALSE(xasExists("/etc/zel/alice.conf"));
}

TEST_F(LocalUsers, AddFailsWhenNoShellCanBeRun)
{
    const XasFault fault{"fork", EAGAIN};
    EXPECT_EQ(single(xasTestUser("alice", "", 501), 0), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("adduser command for alice, uid 501 failed with code -1\n")));
}

TEST_F(LocalUsers, AddFailsWhenThePasswordsQuotesMakeTheCommandTooLong)
{
    EXPECT_EQ(single(xasTestUser("alice", std::string(66, '\''), 501), 0), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("adduser command for alice, uid 501 failed with code -1\n")));
    EXPECT_THAT(stubs.calls(), IsEmpty());
}

TEST_F(LocalUsers, AddFailsWhenThePortFileCannotBeWritten)
{
    std::filesystem::remove_all("/etc/zel");
    EXPECT_EQ(single(xasTestUser("alice"), 0), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error opening config file \"/etc/zel/alice.conf\"\n"),
                                         xasErrorLine("Error setting port permissions for alice\n")));
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
}

TEST_F(LocalUsers, APortFileThatIsALinkIsNotFollowed)
{
    xasWriteFile("/tmp/victim", "precious\n");
    ASSERT_EQ(::symlink("/tmp/victim", "/etc/zel/alice.conf"), 0);
    const XasUserRecord user = xasTestUser("alice");
    EXPECT_EQ(xasLocalUserPortFiles(&user, &reply), 1);
    EXPECT_EQ(xasReadFile("/tmp/victim"), "precious\n");
}

TEST_F(LocalUsers, AddMakesTheAccountTheListEntryAndThePortFile)
{
    XasUserRecord user = xasTestUser("alice", "$1$ab$cd");
    user.listen = ~0ULL;
    user.clear = 0x10;
    xasSetFieldText(user.escseq, "^Ec?");
    EXPECT_EQ(single(user, 0), 0);
    EXPECT_EQ(single(xasTestUser("bob", "", 502), 0), 0);
    EXPECT_THAT(stubs.lines(), ElementsAre("/bin/adduser -D -H -u 501 -s /bin/cli -h / -p $1$ab$cd alice",
                                           "/bin/adduser -D -H -u 502 -s /bin/cli -h / bob"));
    EXPECT_EQ(xasReadFile(XAS_USER_LIST), "alice\nbob\n");
    EXPECT_EQ(portFile("alice"), "ALLOW_LISTEN=0xffffffffffffffff\nALLOW_DIRECT=0x0\nALLOW_CLEAR=0x10\n"
                                 "ESCAPE_SEQ=\"^Ec?\"\nBREAK_SEQ=\"\"\n");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(LocalUsers, APortFileKeepsItsMode)
{
    EXPECT_EQ(single(xasTestUser("bob"), 0), 0);
    EXPECT_EQ(xasModeOf("/etc/zel/bob.conf"), 0644U);
    xasWriteFile("/etc/zel/bob.conf", "old", 0640);
    EXPECT_EQ(single(xasTestUser("bob"), 1), 0);
    EXPECT_EQ(portFile("bob"), NO_PERMISSIONS);
    EXPECT_EQ(xasModeOf("/etc/zel/bob.conf"), 0640U);
}

TEST_F(LocalUsers, TextsWithShellCharactersReachTheToolAsSingleWords)
{
    for (const std::string login : {"$(touch${IFS}owned)", "a;touch", "a'b", "a\"b", "`x`", "a&b|c>d<e",
                                    "a*?", "~root", "a\\b", "#a", "!!", "\xc3\xa4"}) {
        stubs.forget();
        EXPECT_EQ(single(xasTestUser(login, "p' $(touch /tmp/owned) `id` \"\\;"), 3), 0) << login;
        EXPECT_THAT(stubs.calls(),
                    ElementsAre(ElementsAre("/bin/deluser", login),
                                ElementsAre("/bin/adduser", "-D", "-H", "-u", "501", "-s", "/bin/cli", "-h",
                                            "/", "-p", "p' $(touch /tmp/owned) `id` \"\\;", login)));
    }
    EXPECT_FALSE(xasExists("owned")); // where the daemon and its commands work
    EXPECT_FALSE(xasExists("/tmp/owned"));
}

TEST_F(LocalUsers, EditMakesTheAccountAnewWithoutTheAdministratorsForm)
{
    EXPECT_EQ(single(xasTestUser("sysadmin", "p", 200), 1), 0);
    EXPECT_EQ(single(xasTestUser("bob"), 1), 0);
    EXPECT_THAT(stubs.lines(),
                ElementsAre("/bin/deluser sysadmin",
                            "/bin/adduser -D -H -u 200 -s /bin/cli -h / -p p sysadmin", "/bin/deluser bob",
                            "/bin/adduser -D -H -u 501 -s /bin/cli -h / bob"));
    EXPECT_EQ(xasReadFile(XAS_USER_LIST), "");
    EXPECT_EQ(portFile("bob"), NO_PERMISSIONS);
}

TEST_F(LocalUsers, EditGoesOnWhenTheAccountCannotBeRemovedAndFailsWhenItCannotBeMade)
{
    stubs.put("/bin/deluser", 1);
    EXPECT_EQ(single(xasTestUser("bob"), 1), 0);
    stubs.put("/bin/adduser", 1);
    EXPECT_EQ(single(xasTestUser("eve"), 1), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("adduser command failed\n")));
    EXPECT_FALSE(xasExists("/etc/zel/eve.conf"));
}

TEST_F(LocalUsers, EditTellsThatNoShellCanBeRun)
{
    const XasFault fault{"fork", EAGAIN};
    EXPECT_EQ(single(xasTestUser("bob"), 1), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("system call deluser failed \n"),
                                         xasErrorLine("adduser command failed\n")));
}

TEST_F(LocalUsers, EditFailsWhenThePortFileCannotBeWritten)
{
    std::filesystem::remove_all("/etc/zel");
    EXPECT_EQ(single(xasTestUser("bob"), 1), 1);
    EXPECT_THAT(log.lines(), Contains(xasErrorLine("Error setting port permissions for bob\n")));
}

TEST_F(LocalUsers, PasswordMakesTheAccountAnewWithAnEmptyPasswordTooAndNoPortFile)
{
    EXPECT_EQ(single(xasTestUser("bob"), 3), 0);
    EXPECT_THAT(stubs.calls(), ElementsAre(ElementsAre("/bin/deluser", "bob"),
                                           ElementsAre("/bin/adduser", "-D", "-H", "-u", "501", "-s",
                                                       "/bin/cli", "-h", "/", "-p", "", "bob")));
    EXPECT_FALSE(xasExists("/etc/zel/bob.conf"));
    stubs.put("/bin/adduser", 1);
    EXPECT_EQ(single(xasTestUser("bob"), 3), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("adduser command failed\n")));
}

TEST_F(LocalUsers, DeleteFailsWithoutAList)
{
    std::remove(XAS_USER_LIST);
    EXPECT_EQ(single(xasTestUser("bob"), 2), -1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error deleting user: bob\n")));
}

TEST_F(LocalUsers, DeleteFailsWhenTheNewListCannotBeMade)
{
    giveAccounts({"bob"});
    xasWriteFile(XAS_USER_LIST, "bob\n");
    std::filesystem::create_directories("/etc/.lusers_tmp/inside");
    EXPECT_EQ(single(xasTestUser("bob"), 2), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error deleting user: bob\n")));
    EXPECT_THAT(stubs.calls(), IsEmpty());
    EXPECT_EQ(xasReadFile(XAS_USER_LIST), "bob\n");
    std::filesystem::remove_all("/etc/.lusers_tmp");
}

TEST_F(LocalUsers, DeleteRemovesTheAccountOfTheFirstEntryAndKeepsThePortFile)
{
    giveAccounts({"alice", "bob", "eve"});
    xasWriteFile(XAS_USER_LIST, "alice\nbob\ngone\nbob\neve\n");
    xasWriteFile("/etc/zel/bob.conf", "kept");
    EXPECT_EQ(single(xasTestUser("bob"), 2), 0);
    EXPECT_THAT(stubs.lines(), ElementsAre("/bin/deluser bob"));
    EXPECT_EQ(xasReadFile(XAS_USER_LIST), "alice\nbob\neve\n") << "one entry, and the one without account";
    EXPECT_EQ(portFile("bob"), "kept");
    EXPECT_FALSE(xasExists("/etc/.lusers_tmp"));
    EXPECT_EQ(xasModeOf(XAS_USER_LIST), 0644U);
}

TEST_F(LocalUsers, DeleteLeavesTheUsersWhoseLoginsBeginLikeTheOneThatGoes)
{
    giveAccounts({"bobby", "bob", "bo"});
    xasWriteFile(XAS_USER_LIST, "bobby\nbob\nbo\n");
    EXPECT_EQ(single(xasTestUser("bob"), 2), 0);
    EXPECT_THAT(stubs.lines(), ElementsAre("/bin/deluser bob"));
    EXPECT_EQ(xasReadFile(XAS_USER_LIST), "bobby\nbo\n");
}

TEST_F(LocalUsers, DeleteOfAUserThatIsNotListedRemovesNoAccount)
{
    giveAccounts({"alice", "bob"});
    xasWriteFile(XAS_USER_LIST, "alice\n");
    EXPECT_EQ(single(xasTestUser("bob"), 2), 0);
    EXPECT_EQ(single(xasTestUser("root"), 2), 0);
    EXPECT_THAT(stubs.calls(), IsEmpty());
    EXPECT_EQ(xasReadFile(XAS_USER_LIST), "alice\n");
}

TEST_F(LocalUsers, DeleteTellsThatNoShellCanBeRun)
{
    giveAccounts({"bob"});
    xasWriteFile(XAS_USER_LIST, "bob\n");
    const XasFault fault{"fork", EAGAIN};
    EXPECT_EQ(single(xasTestUser("bob"), 2), 0);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("system call deluser failed \n"),
                                         xasErrorLine("system call mv -f failed\n")));
}

TEST_F(LocalUsers, TheListLosesTheLastCharacterOfALineWhateverItIs)
{
    giveAccounts({"alice", "alic"});
    xasWriteFile(XAS_USER_LIST, "alice\nalice");
    EXPECT_EQ(xasDeleteLocalUsers("nobody"), 0);
    EXPECT_EQ(xasReadFile(XAS_USER_LIST), "alice\nalic\n");
}

TEST_F(LocalUsers, TheListIsReadInPiecesOf127Characters)
{
    giveAccounts({"alice"});
    xasWriteFile(XAS_USER_LIST, std::string(127, 'x') + "alice\n");
    EXPECT_EQ(xasDeleteLocalUsers("nobody"), 0);
    EXPECT_EQ(xasReadFile(XAS_USER_LIST), "alice\n");
}

TEST_F(LocalUsers, ARebuildWithoutItsUsersChangesNothing)
{
    giveAccounts({"alice"});
    xasWriteFile(XAS_USER_LIST, "alice\n");
    XasMessage msg = XasMessageBuilder{XMSG_LOCALUSERS}.set("enabled", 1).set("num_users", 3);
    EXPECT_EQ(xasUpdateLocalUsersCfg(&msg, &cfgFiles, &reply), 0);
    EXPECT_THAT(stubs.calls(), IsEmpty());
    EXPECT_EQ(xasReadFile(XAS_USER_LIST), "alice\n");
}

TEST_F(LocalUsers, ARebuildWithoutRecordsRemovesAllAndFails)
{
    giveAccounts({"alice", "bob"});
    xasWriteFile(XAS_USER_LIST, "alice\nbob\n");
    XasMessage msg = XasMessageBuilder{XMSG_LOCALUSERS}.set("users_included", 2);
    EXPECT_EQ(xasUpdateLocalUsersCfg(&msg, &cfgFiles, &reply), 1);
    EXPECT_THAT(stubs.lines(), ElementsAre("/bin/deluser alice", "/bin/deluser bob"));
    EXPECT_EQ(xasReadFile(XAS_USER_LIST), "");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(LocalUsers, ARebuildRemovesListedAccountsThatExistAndMakesTheNewOnesInOrder)
{
    giveAccounts({"alice", "bob", "other"});
    xasWriteFile(XAS_USER_LIST, "alice\ngone\nbob\n");
    EXPECT_EQ(rebuild({xasTestUser("sysadmin", "a", 200), xasTestUser("bob", "", 502),
                       xasTestUser("eve", "e", 503), xasTestUser("bob", "b", 502)}),
              0);
    EXPECT_THAT(stubs.lines(),
                ElementsAre("/bin/deluser alice", "/bin/deluser bob",
                            "/bin/adduser -D -H -u 200 -G root -s /bin/cli -g System Administrator -h / -p a "
                            "sysadmin",
                            "/bin/adduser -D -H -u 502 -s /bin/cli -h / bob",
                            "/bin/adduser -D -H -u 503 -s /bin/cli -h / -p e eve",
                            "/bin/adduser -D -H -u 502 -s /bin/cli -h / -p b bob"));
    EXPECT_EQ(xasReadFile(XAS_USER_LIST), "sysadmin\nbob\neve\nbob\n");
    for (const char *login : {"sysadmin", "bob", "eve"})
        EXPECT_EQ(portFile(login), NO_PERMISSIONS);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(LocalUsers, ARebuildDoesNotNoticeAFailedCommandButAShellThatCannotBeRun)
{
    stubs.put("/bin/adduser", 1);
    EXPECT_EQ(rebuild({xasTestUser("alice")}), 0);
    EXPECT_THAT(log.take(), IsEmpty());
    const XasFault fault{"fork", EAGAIN};
    EXPECT_EQ(rebuild({xasTestUser("alice")}), 0);
    EXPECT_THAT(log.take(), Contains(xasErrorLine("adduser command failed\n")));
}

TEST_F(LocalUsers, ARebuildTellsThatNoShellCanBeRunWithoutABlankBeforeTheLineFeed)
{
    giveAccounts({"alice", "bob"});
    xasWriteFile(XAS_USER_LIST, "alice\nbob\n");
    const XasFault fault{"fork", EAGAIN};
    EXPECT_EQ(rebuild({xasTestUser("eve")}), 0);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("system call deluser failed\n"),
                                         xasErrorLine("system call deluser failed\n"),
                                         xasErrorLine("system call mv -f failed\n"),
                                         xasErrorLine("adduser command failed\n")));
}

TEST_F(LocalUsers, ARebuildWithoutAListMakesItsUsersAllTheSame)
{
    std::remove(XAS_USER_LIST);
    EXPECT_EQ(rebuild({xasTestUser("alice")}), 0);
    EXPECT_EQ(xasReadFile(XAS_USER_LIST), "alice\n");
    EXPECT_EQ(xasModeOf(XAS_USER_LIST), 0644U);
}

TEST_F(LocalUsers, ARebuildSkipsRefusedLoginsMakesTheOthersAndFails)
{
    EXPECT_EQ(rebuild({xasTestUser("../passwd"), xasTestUser("alice"), xasTestUser("-D"), xasTestUser(""),
                       xasTestUser("bob")}),
              1);
    EXPECT_THAT(stubs.lines(), ElementsAre("/bin/adduser -D -H -u 501 -s /bin/cli -h / alice",
                                           "/bin/adduser -D -H -u 501 -s /bin/cli -h / bob"));
    EXPECT_EQ(xasReadFile(XAS_USER_LIST), "alice\nbob\n");
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Invalid user to add\n"), xasErrorLine("Invalid user to add\n"),
                            xasErrorLine("Invalid user to add\n")));
}

TEST_F(LocalUsers, ARebuildSkipsUsersWhoseTextsWouldMakeLinesOrColumnsOfTheirOwn)
{
    XasUserRecord badEscape = xasTestUser("c");
    XasUserRecord badBreak = xasTestUser("d");
    XasUserRecord odd = xasTestUser("e");
    std::strcpy(badEscape.escseq, "a\nb");
    std::strcpy(badBreak.brkseq, "\r");
    std::strcpy(odd.escseq, "\x1B\x01\"");
    std::strcpy(odd.menu, "\n");
    EXPECT_EQ(rebuild({xasTestUser("a", "x:0:0::/:/bin/sh"), xasTestUser("b", "x\nroot2"), badEscape,
                       badBreak, odd}),
              1);
    EXPECT_THAT(stubs.lines(), ElementsAre("/bin/adduser -D -H -u 501 -s /bin/cli -h / e"));
    EXPECT_EQ(xasReadFile(XAS_USER_LIST), "e\n");
    EXPECT_EQ(log.lines(), std::vector<XasLogLine>(4, xasErrorLine("Invalid user to add\n")));
}

TEST_F(LocalUsers, APasswordWithAColonIsRefusedWhereItWouldBeTaken)
{
    for (const std::uint32_t action : {XAS_USER_ADD, XAS_USER_EDIT, XAS_USER_PASSWORD})
        EXPECT_EQ(single(xasTestUser("alice", "x:0"), action), 1);
    EXPECT_EQ(log.take(), std::vector<XasLogLine>(3, xasErrorLine("Invalid user to add\n")));
    EXPECT_THAT(stubs.calls(), IsEmpty());
    EXPECT_EQ(single(xasTestUser("alice", "x:0"), XAS_USER_DELETE), 0);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(LocalUsers, ARebuildHasTheResultOfItsLastPortFile)
{
    std::filesystem::create_directories("/etc/zel/alice.conf/inside");
    EXPECT_EQ(rebuild({xasTestUser("alice"), xasTestUser("bob")}), 0);
    EXPECT_THAT(log.take(), ElementsAre(xasErrorLine("Error opening config file \"/etc/zel/alice.conf\"\n")));
    EXPECT_EQ(rebuild({xasTestUser("bob"), xasTestUser("alice")}), 1);
}

TEST_F(LocalUsers, TheListMessageChangesNothing)
{
    XasMessage msg = XasMessageBuilder{XMSG_USERLIST};
    EXPECT_EQ(xasUpdateUserListCfg(&msg, &cfgFiles, &reply), 0);
    EXPECT_THAT(stubs.calls(), IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
}
