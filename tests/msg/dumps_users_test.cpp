// The dumps of local users, against lines worked out by hand; offsets are those of the record.
#include "msg/print.h"
#include "support/message.h"

#include <gtest/gtest.h>

namespace {

constexpr std::size_t USER_SIZE = 224;

/** Puts values at offsets of a block, as XasMessageBuilder does in a record. */
class UserBytes {
  public:
    UserBytes &text(std::size_t offset, std::string_view value)
    {
        value.copy(bytes.data() + offset, value.size());
        return *this;
    }

    template <class T>
    UserBytes &number(std::size_t offset, T value)
    {
        return text(offset, {reinterpret_cast<const char *>(&value), sizeof value});
    }

    [[nodiscard]] std::string build() const { return bytes; }

  private:
    std::string bytes = std::string(USER_SIZE, '\0');
};

UserBytes everyField()
{
    return UserBytes{}
        .text(0, "alice")
        .text(33, "$1$salt$hash")
        .number<std::uint32_t>(100, 4294967295U)
        .number<std::uint64_t>(104, 0xFFFFFFFFFFFFFFFFU)
        .number<std::uint64_t>(112, 0x8000000000000001U)
        .number<std::uint64_t>(120, 0x123456789U)
        .number<std::uint8_t>(128, 0xAB)
        .text(129, "^Ec?")
        .text(140, "~b")
        .text(151, "main")
        .number<std::uint32_t>(172, 1)
        .text(176, "555-0100")
        .number<std::uint32_t>(196, 0xDEADBEEFU)
        .number<std::uint16_t>(200, 0xFFFF)
        .number<std::uint32_t>(204, 1)
        .number<std::int32_t>(208, -1)
        .number<std::uint32_t>(212, 2)
        .number<std::int32_t>(216, 2147483647);
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
    return msgAllText(XasMessageBuilder{XMSG_LOCALUSERS}.half(160, announced).build(),
                      std::as_bytes(std::span{users}));
}

} // namespace

TEST(MsgDumpLocalUsers, NoMoreUsersAreShownThanThereAre)
{
    const std::string one = everyField().build();
    EXPECT_EQ(dump(65535, ""), ownLines(65535));
    EXPECT_EQ(dump(65535, one), ownLines(65535) + EVERY_FIELD_LINES);
    EXPECT_EQ(dump(2, one + std::string(USER_SIZE - 1, 'x')), ownLines(2) + EVERY_FIELD_LINES);
}

TEST(MsgDumpLocalUsers, NoMoreUsersAreShownThanAreAnnounced)
{
    const std::string one = everyField().build();
    EXPECT_EQ(dump(0, one), ownLines(0));
    EXPECT_EQ(dump(1, one + one), ownLines(1) + EVERY_FIELD_LINES);
}

TEST(MsgDumpLocalUsers, EveryUserHasFourLines)
{
    EXPECT_EQ(dump(2, std::string(USER_SIZE, '\0') + everyField().build()),
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
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_LOCALUSERS}
                             .word(120, 1)
                             .byte(124, 2)
                             .word(128, 1)
                             .word(132, 9)
                             .word(136, 1)
                             .byte(140, 10)
                             .half(142, 365)
                             .byte(144, 14)
                             .byte(145, 5)
                             .byte(146, 255)
                             .build()),
              "enabled: y order: 2 first_responding: y complex_passwords: y num_users: 0\n"
              "allow_reuse: y reuse_history: 10 pwd_lifetime: 365\n"
              "warning_period: 14 max_attempts: 5 lockout_period: 255\n");
}

TEST(MsgDumpUser, AnEmptyRecordIsAnAddWithoutLogin)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_USER}.build()),
              "valid_user: n remote_user: n action: add login: \n"
              "password:  uid: 0 listen: 0x0 data: 0x0\n"
              "clear: 0x0 outlets: 0x0 escseq:  brkseq:  menu: \n");
}

TEST(MsgDumpUser, ThreeLinesShowTheUser)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_USER}
                             .bytes(120, everyField().build())
                             .word(344, 1)
                             .word(348, 1)
                             .word(352, 5)
                             .build()),
              "valid_user: y remote_user: y action: edit_clisettings login: alice\n"
              "password: $1$salt$hash uid: -1 listen: 0xffffffffffffffff data: 0x8000000000000001\n"
              "clear: 0x123456789 outlets: 0xab escseq: ^Ec? brkseq: ~b menu: main\n");
}

TEST(MsgDumpUser, TheActionHasItsName)
{
    const std::vector<std::string> names = {
        "add", "edit", "delete", "password", "UNKNOWN", "edit_clisettings", "UNKNOWN"};
    for (std::uint32_t action = 0; action < names.size(); ++action)
        EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_USER}.bytes(120, "bob").word(352, action).build()),
                  "valid_user: n remote_user: n action: " + names[action] +
                      " login: bob\n"
                      "password:  uid: 0 listen: 0x0 data: 0x0\n"
                      "clear: 0x0 outlets: 0x0 escseq:  brkseq:  menu: \n");
}
