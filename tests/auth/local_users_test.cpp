// Which logins are accepted, and the account commands.
#include "auth/local_users.h"

#include "support/test.h"
#include "support/users.h"

TEST(Login, IsRefusedWhenItCouldBeAnOptionAPathOrSeveralWords)
{
    for (const std::string_view login : {"", "-", "-r", "--help", "/", "a/b", "../x", "/etc/passwd", "a b",
                                         " a", "a ", "a\tb", "a\nb", "a\r", "\x7f", "a\x01"})
        EXPECT_FALSE(xasIsValidLogin(login)) << login;
}

TEST(Login, IsAcceptedWithAnyOtherCharacters)
{
    for (const std::string_view login :
         {"a", "alice", "Bob-2", "a.b_c", "sysadmin", "..", ".", "$(reboot)", "a;b", "a'b", "a\"b", "`x`",
          "a|b&c>d", "\xc3\xa4", "a*", "~root", "%s"})
        EXPECT_TRUE(xasIsValidLogin(login)) << login;
}

TEST(AccountCommand, HasTheWordsOfItsUserAndItsAction)
{
    xasExpectTexts({
        {"of the administrator names group and comment and always a password",
         xasAddUserCommand(xasTestUser("sysadmin", "$1$ab$cd", 200)).str(),
         "/bin/adduser -D -H -u 200 -G root -s /bin/cli -g \"System Administrator\" -h / -p '$1$ab$cd' "
         "sysadmin"},
        {"of the administrator names group and comment and always a password",
         xasAddUserCommand(xasTestUser("sysadmin", "", 0)).str(),
         "/bin/adduser -D -H -u 0 -G root -s /bin/cli -g \"System Administrator\" -h / -p '' sysadmin"},
        {"of another user has a password when there is one",
         xasAddUserCommand(xasTestUser("alice", "$1$ab$cd", 501)).str(),
         "/bin/adduser -D -H -u 501 -s /bin/cli -h / -p '$1$ab$cd' alice"},
        {"of another user has a password when there is one",
         xasAddUserCommand(xasTestUser("alice", "", 501)).str(),
         "/bin/adduser -D -H -u 501 -s /bin/cli -h / alice"},
        {"of an edited administrator loses group and comment",
         xasEditUserCommand(xasTestUser("sysadmin", "x", 200)).str(),
         "/bin/adduser -D -H -u 200 -s /bin/cli -h / -p 'x' sysadmin"},
        {"of an edited administrator loses group and comment",
         xasEditUserCommand(xasTestUser("sysadmin", "", 200)).str(),
         "/bin/adduser -D -H -u 200 -s /bin/cli -h / sysadmin"},
        {"of a new password has an empty one too",
         xasPasswordUserCommand(xasTestUser("alice", "", 501)).str(),
         "/bin/adduser -D -H -u 501 -s /bin/cli -h / -p '' alice"},
        {"prints the user id as a signed number",
         xasAddUserCommand(xasTestUser("alice", "", 4294967295U)).str(),
         "/bin/adduser -D -H -u -1 -s /bin/cli -h / alice"},
        {"quotes what the shell would read",
         xasAddUserCommand(xasTestUser("a;reboot", "p'; reboot; '", 501)).str(),
         "/bin/adduser -D -H -u 501 -s /bin/cli -h / -p 'p'\\''; reboot; '\\''' 'a;reboot'"},
        {"quotes what the shell would read", xasAddUserCommand(xasTestUser("a'b", "$(x)`y`\\\"", 501)).str(),
         "/bin/adduser -D -H -u 501 -s /bin/cli -h / -p '$(x)`y`\\\"' 'a'\\''b'"},
    });
}

TEST(AccountCommand, ReadsFieldsWithoutEndUpToTheirWidth)
{
    const XasUserRecord user = xasTestUser(std::string(33, 'l'), std::string(67, 'p'), 4294967295U);
    EXPECT_EQ(xasAddUserCommand(user).str(), "/bin/adduser -D -H -u -1 -s /bin/cli -h / -p '" +
                                                 std::string(67, 'p') + "' " + std::string(33, 'l'));
}
