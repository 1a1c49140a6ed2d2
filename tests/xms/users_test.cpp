// The list of users that goes out behind XMSG_LOCALUSERS.
#include "xms/users.h"

#include "support/message.h"
#include "support/test.h"
#include "xms/error.h"

namespace {

std::string textAt(const XmsUserEntry &entry, std::size_t offset, std::size_t size)
{
    return std::string{reinterpret_cast<const char *>(entry.data()), entry.size()}.substr(offset, size);
}

XmsUserEntry usersOf(std::vector<XmsAssignment> assignments, XasValueCheck check = XasValueCheck::allowed)
{
    return xmsTakeUsers(assignments, check);
}

/** What is complained about. */
template <class Work>
std::string complaintOf(Work work)
{
    try {
        work();
    } catch (const XmsError &error) {
        return error.what();
    }
    return "none";
}

} // namespace

TEST(XmsUsers, NeedALoginEach)
{
    EXPECT_EQ(complaintOf([] { usersOf({{"user2.login", "bob"}}); }), "user1 has no login");
    EXPECT_EQ(complaintOf([] { usersOf({{"user1.uid", "5"}}); }), "user1 has no login");
    EXPECT_EQ(usersOf({{"user2.login", "bob"}}, XasValueCheck::anyThatFits).size(), 120U + 2 * 224);
}

TEST(XmsUsers, AreRefusedWhenTheDaemonWouldSkipThem)
{
    const std::vector<XmsAssignment> refused = {
        {"login", "-r"}, {"login", "a:b"}, {"password", "x:0"}, {"password", "x\n"}, {"escseq", "\r"}};
    for (const XmsAssignment &each : refused) {
        const auto give = [&] {
            usersOf({{"user1.login", "bob"}, {"user1." + each.name, each.value}});
        };
        EXPECT_EQ(complaintOf(give), "user1: Invalid user to add") << each.name << ' ' << each.value;
    }
}

TEST(XmsUsers, HaveOnlyTheFieldsOfAUser)
{
    EXPECT_THAT(complaintOf([] { usersOf({{"user1.logn", "bob"}}); }), HasSubstr("no field \"logn\""));
    EXPECT_THAT(complaintOf([] { usersOf({{"user1.action", "add"}}); }), HasSubstr("no field \"action\""));
    EXPECT_THAT(complaintOf([] {
                    usersOf({{"user1.login", std::string(33, 'x')}});
                }),
                HasSubstr("at most 32 characters"));
}

TEST(XmsUsers, AreNamedByTheirNumberAlone)
{
    std::vector<XmsAssignment> assignments = {
        {"users_included", "yes"}, {"user0.login", "a"}, {"user.login", "b"},
        {"userx.login", "c"},      {"user1", "d"},       {"user65536.login", "e"},
        {"user1x.login", "f"}};
    EXPECT_THAT(xmsTakeUsers(assignments, XasValueCheck::allowed), IsEmpty());
    EXPECT_EQ(assignments.size(), 7U) << "left for the message's own fields, which refuse them";
}

TEST(XmsUsers, MustBeAsManyAsTheMessageSays)
{
    const XasMessage msg = XasMessageBuilder{XMSG_LOCALUSERS}.set("num_users", 2);
    EXPECT_EQ(complaintOf([&] { xmsRequireMatchingCount(msg, {}); }),
              "num_users is 2, but 0 users are given; xasd would wait for them");
    EXPECT_EQ(complaintOf([&] { xmsRequireMatchingCount(msg, XmsUserEntry(120 + 448)); }), "none");
    EXPECT_EQ(
        complaintOf([] { xmsRequireMatchingCount(XasMessageBuilder{XMSG_DNS}.set("dns3", "fd00::1"), {}); }),
        "none");
}

TEST(XmsUsers, StandOneBehindTheOtherBehindBytesThatNobodyReads)
{
    std::vector<XmsAssignment> assignments = {
        {"user1.login", "alice"}, {"enabled", "yes"},     {"user2.password", "pw"},
        {"user2.login", "bob"},   {"user2.uid", "66051"}, {"user1.listen", "0x8000000000000001"}};
    const XmsUserEntry entry = xmsTakeUsers(assignments, XasValueCheck::allowed);
    ASSERT_EQ(entry.size(), 120U + 2 * 224);
    EXPECT_EQ(textAt(entry, 0, 120), std::string(120, '\0'));
    EXPECT_EQ(textAt(entry, 120, 33), "alice" + std::string(28, '\0'));
    EXPECT_EQ(textAt(entry, 120 + 104, 8), std::string_view("\x01\0\0\0\0\0\0\x80", 8));
    EXPECT_EQ(textAt(entry, 344, 4), std::string_view("bob\0", 4));
    EXPECT_EQ(textAt(entry, 344 + 33, 3), std::string_view("pw\0", 3));
    EXPECT_EQ(textAt(entry, 344 + 100, 4), std::string_view("\x03\x02\x01\0", 4));
    ASSERT_EQ(assignments.size(), 1U);
    EXPECT_EQ(assignments.front().name, "enabled");
}

TEST(XmsUsers, AreAnnouncedByTheirMessageAndOnlyByIt)
{
    XasMessage msg = XasMessageBuilder{XMSG_LOCALUSERS}.set("users_included", 1).set("num_users", 7);
    xmsAnnounceUsers(msg, {});
    EXPECT_EQ(xasPayloadBytes(msg), std::string(2368, '\0')) << "a stored message has lost its list";
    xmsAnnounceUsers(msg, XmsUserEntry(120 + 3 * 224));
    EXPECT_EQ(xasValueIn(msg, "users_included"), "yes");
    EXPECT_EQ(xasValueIn(msg, "num_users"), "3");
    XasMessage other = XasMessageBuilder{XMSG_DNS};
    xmsAnnounceUsers(other, XmsUserEntry(120 + 224));
    EXPECT_EQ(xasPayloadBytes(other), std::string(2368, '\0'));
}

TEST(XmsUsers, AreCountedByTheSizeOfTheirEntry)
{
    EXPECT_EQ(xmsUserCount(0), std::nullopt);
    EXPECT_EQ(xmsUserCount(120), std::nullopt);
    EXPECT_EQ(xmsUserCount(343), std::nullopt);
    EXPECT_EQ(xmsUserCount(344), 1U);
    EXPECT_EQ(xmsUserCount(2488), std::nullopt) << "that is a message";
    EXPECT_EQ(xmsUserCount(120 + 224 * 1000), 1000U);
}

TEST(XmsUsers, AreShownByTheirLoginsAlone)
{
    EXPECT_EQ(xmsUsersText(usersOf({{"user1.login", "alice"}, {"user1.password", "secret"}})),
              "1 user: alice");
    EXPECT_EQ(
        xmsUsersText(usersOf({{"user1.login", "alice"}, {"user2.login", "b b"}}, XasValueCheck::anyThatFits)),
        "2 users: alice, \"b b\"");
}
