// The dumps of local users, against lines worked out by hand.
#include "msg/print.h"
#include "support/message.h"
#include "support/test.h"

namespace {

constexpr std::size_t USER_SIZE = 224;

XasMessageBuilder everyField()
{
    return XasMessageBuilder{XMSG_USER}.set(
        "login=alice password=$1$salt$hash uid=4294967295 listen=0xFFFFFFFFFFFFFFFF "
        "data=0x8000000000000001 clear=0x123456789 outlets=0xAB escseq=^Ec? brkseq=~b menu=main dialback=1 "
        "dialback_num=555-0100 perm=0xDEADBEEF cli=0xFFFF pwd_change=1 pwd_expires=-1 pwd_login_change=2 "
        "login_attempts=2147483647");
}

/** The same user in a list of users. */
std::string everyFieldListed()
{
    return xasPayloadBytes(everyField()).substr(0, USER_SIZE);
}

const std::string EVERY_FIELD_LINES =
    "  login: alice password: $1$salt$hash uid: 4294967295 listen: 0xffffffffffffffff\n"
    "  data: 0x8000000000000001 clear: 0x123456789 outlets: 0xab escseq: ^Ec? brkseq: ~b\n"
    "  menu: main dialback: y dialback_num: 555-0100 perm: 0xdeadbeef cli: 0xffff\n"
    "  pwd_change: y pwd_expires: -1 pwd_login_change: y login_attempts: 2147483647\n";

const std::string NO_FIELD_LINES = "  login:  password:  uid: 0 listen: 0x0\n"
                                   "  data: 0x0 clear: 0x0 outlets: 0x0 escseq:  brkseq: \n"
                                   "  menu:  dialback: n dialback_num:  perm: 0x0 cli: 0x0\n"
                                   "  pwd_change: n pwd_expires: 0 pwd_login_change: n login_attempts: 0\n";

/** The message's own lines with this number of users announced, everything else zero. */
std::string ownLines(int users)
{
    return "enabled: n order: 0 first_responding: n complex_passwords: n num_users: " +
           std::to_string(users) +
           "\nallow_reuse: n reuse_history: 0 pwd_lifetime: 0\n"
           "warning_period: 0 max_attempts: 0 lockout_period: 0\n";
}

std::string dump(std::uint16_t announced, const std::string &users)
{
    return msgAllText(XasMessageBuilder{XMSG_LOCALUSERS}.set("num_users", announced),
                      std::as_bytes(std::span{users}));
}

} // namespace

TEST(MsgDumpLocalUsers, NoMoreUsersAreShownThanThereAre)
{
    const std::string one = everyFieldListed();
    EXPECT_EQ(dump(65535, ""), ownLines(65535));
    EXPECT_EQ(dump(65535, one), ownLines(65535) + EVERY_FIELD_LINES);
    EXPECT_EQ(dump(2, one + std::string(USER_SIZE - 1, 'x')), ownLines(2) + EVERY_FIELD_LINES);
}

TEST(MsgDumpLocalUsers, NoMoreUsersAreShownThanAreAnnounced)
{
    const std::string one = everyFieldListed();
    EXPECT_EQ(dump(0, one), ownLines(0));
    EXPECT_EQ(dump(1, one + one), ownLines(1) + EVERY_FIELD_LINES);
}

TEST(MsgDumpLocalUsers, EveryUserHasFourLines)
{
    EXPECT_EQ(dump(2, std::string(USER_SIZE, '\0') + everyFieldListed()),
              ownLines(2) + NO_FIELD_LINES + EVERY_FIELD_LINES);
}

TEST(MsgDumpLocalUsers, TextsEndWithTheirFields)
{
    EXPECT_EQ(dump(1, std::string(USER_SIZE, 'A')),
              ownLines(1) + "  login: " + std::string(33, 'A') + " password: " + std::string(67, 'A') +
                  " uid: 1094795585 listen: 0x4141414141414141\n"
                  "  data: 0x4141414141414141 clear: 0x4141414141414141 outlets: 0x41 escseq: " +
                  std::string(11, 'A') + " brkseq: " + std::string(11, 'A') +
                  "\n  menu: " + std::string(21, 'A') + " dialback: y dialback_num: " + std::string(20, 'A') +
                  " perm: 0x41414141 cli: 0x4141\n"
                  "  pwd_change: y pwd_expires: 1094795585 pwd_login_change: y login_attempts: 1094795585\n");
}

TEST(MsgDumpLocalUsers, TheRulesForAccountsAreShownFirst)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_LOCALUSERS}.set(
                  "enabled=1 order=2 first_responding=1 complex_passwords=9 allow_reuse=1 reuse_history=10 "
                  "pwd_lifetime=365 warning_period=14 max_attempts=5 lockout_period=255")),
              "enabled: y order: 2 first_responding: y complex_passwords: y num_users: 0\n"
              "allow_reuse: y reuse_history: 10 pwd_lifetime: 365\n"
              "warning_period: 14 max_attempts: 5 lockout_period: 255\n");
}

TEST(MsgDumpUser, AnEmptyRecordIsAnAddWithoutLogin)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_USER}), "valid_user: n remote_user: n action: add login: \n"
                                                        "password:  uid: 0 listen: 0x0 data: 0x0\n"
                                                        "clear: 0x0 outlets: 0x0 escseq:  brkseq:  menu: \n");
}

TEST(MsgDumpUser, ThreeLinesShowTheUser)
{
    EXPECT_EQ(msgAllText(everyField().set("valid_user=1 remote_user=1 action=5")),
              "valid_user: y remote_user: y action: edit_clisettings login: alice\n"
              "password: $1$salt$hash uid: -1 listen: 0xffffffffffffffff data: 0x8000000000000001\n"
              "clear: 0x123456789 outlets: 0xab escseq: ^Ec? brkseq: ~b menu: main\n");
}

TEST(MsgDumpUser, TheActionHasItsName)
{
    const std::vector<std::string> names = {
        "add", "edit", "delete", "password", "UNKNOWN", "edit_clisettings", "UNKNOWN"};
    for (std::uint32_t action = 0; action < names.size(); ++action)
        EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_USER}.set("login", "bob").set("action", action)),
                  "valid_user: n remote_user: n action: " + names[action] +
                      " login: bob\n"
                      "password:  uid: 0 listen: 0x0 data: 0x0\n"
                      "clear: 0x0 outlets: 0x0 escseq:  brkseq:  menu: \n");
}
