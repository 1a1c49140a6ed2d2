// The name-service switch: its sources and its lines.
#include "auth/nsswitch.h"

#include "support/test.h"

namespace {

/** Only these four methods are sources. */
XasAuthOrder orderOf(std::uint32_t local, std::uint32_t nis, std::uint32_t radius, std::uint32_t securid)
{
    XasAuthOrder order{};
    order.local = local;
    order.nis = nis;
    order.radius = radius;
    order.securid = securid;
    return order;
}

} // namespace

TEST(NsswitchSources, AreTheLocalFilesWhenNothingElseIs)
{
    EXPECT_EQ(xasNsswitchSources({}, true), "files\n");
    EXPECT_EQ(xasNsswitchSources({}, false), "files\n");
    EXPECT_EQ(xasNsswitchSources(orderOf(8, 9, 10, 11), true), "files\n");
}

TEST(NsswitchSources, FollowTheOrderOfTheMethods)
{
    struct Case {
        XasAuthOrder order;
        std::string passwd;
        std::string others;
    };
    const std::vector<Case> cases = {
        {orderOf(1, 0, 0, 0), "files\n", "files\n"},
        {orderOf(7, 0, 0, 0), "files\n", "files\n"},
        {orderOf(1, 2, 0, 0), "files nis\n", "files nis\n"},
        {orderOf(2, 1, 0, 0), "nis files\n", "nis files\n"},
        {orderOf(1, 1, 0, 0), "files nis\n", "files nis\n"},
        {orderOf(0, 1, 0, 0), "nis files\n", "nis files\n"},
        {orderOf(1, 0, 2, 0), "files files radius\n", "files\n"},
        {orderOf(3, 0, 1, 0), "files radius\n", "files\n"},
        {orderOf(1, 0, 1, 0), "files radius\n", "files\n"},
        {orderOf(0, 0, 4, 0), "files radius\n", "files\n"},
        {orderOf(0, 0, 0, 3), "securid files\n", "files\n"},
        {orderOf(1, 0, 0, 3), "files securid\n", "files\n"},
        {orderOf(3, 0, 0, 1), "securid files\n", "files\n"},
        {orderOf(2, 0, 0, 2), "securid files\n", "files\n"},
        {orderOf(0, 0, 2, 2), "files radius securid\n", "files\n"},
        {orderOf(0, 0, 3, 2), "securid files radius\n", "files\n"},
        {orderOf(2, 2, 2, 2), "files radius securid nis\n", "files nis\n"},
        {orderOf(1, 2, 3, 4), "files nis files radius securid\n", "files nis\n"},
        {orderOf(4, 3, 2, 1), "securid files radius nis\n", "nis files\n"},
        {orderOf(9, 2, 1, 0), "files radius nis\n", "nis files\n"},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(xasNsswitchSources(c.order, true), c.passwd);
        EXPECT_EQ(xasNsswitchSources(c.order, false), c.others) << "beside passwd: " << c.passwd;
    }
}

TEST(NsswitchSources, DoNotKnowLdapKerberosAndTacacs)
{
    XasAuthOrder order{};
    order.ldap = 1;
    order.kerberos = 2;
    order.tacacs = 3;
    order.local = 4;
    EXPECT_EQ(xasNsswitchSources(order, true), "files\n");
}

namespace {

/** The rules once more, slowly: every word with its place, sorted, then superfluous ones taken out. */
std::string modelOf(const XasAuthOrder &order, bool isPasswd)
{
    struct Word {
        std::uint32_t position;
        int rank;
        std::string text;
        auto operator<=>(const Word &) const = default;
    };
    std::vector<Word> words = {{order.local, 3, "files"}, {order.nis, 4, "nis"}};
    if (isPasswd) {
        words.push_back({order.radius, 1, "files radius"});
        words.push_back({order.securid, 2, "securid"});
    }
    std::erase_if(words, [](const Word &word) { return word.position == 0 || word.position > 7; });
    std::ranges::sort(words);
    const auto radius = std::ranges::find(words, "files radius", &Word::text);
    const auto local = std::ranges::find(words, "files", &Word::text);
    if (radius < local && local != words.end())
        words.erase(local);
    std::string sources;
    for (const Word &word : words)
        sources += word.text + " ";
    if (sources.find("files") == std::string::npos)
        sources += "files ";
    sources.pop_back();
    return sources + "\n";
}

} // namespace

TEST(NsswitchSources, FollowTheRulesForEveryOrder)
{
    for (std::uint32_t code = 0; code < 9 * 9 * 9 * 9; ++code) {
        const XasAuthOrder order = orderOf(code % 9, code / 9 % 9, code / 81 % 9, code / 729);
        ASSERT_EQ(xasNsswitchSources(order, true), modelOf(order, true)) << code;
        ASSERT_EQ(xasNsswitchSources(order, false), modelOf(order, false)) << code;
    }
}

TEST(NsswitchText, ReplacesTheSevenDatabasesAndCopiesEverythingElse)
{
    const std::string oldText = "# passwd: comment\n"
                                "passwd: compat systemd\n"
                                "shadow:\n"
                                "group:compat\n"
                                " passwd: indented\n"
                                "\n"
                                "hosts: files dns\n"
                                "networks:  files\n"
                                "protocols: db\n"
                                "services:\tdb\n"
                                "ethers: db\n"
                                "netgroup: nisplus\n"
                                "automount: ldap\n"
                                "passwd_compat: nis\n"
                                "Passwd: x\n"
                                "passwd: second\n";
    EXPECT_EQ(xasNsswitchText(oldText, orderOf(1, 3, 2, 0)), "# passwd: comment\n"
                                                             "passwd:     files files radius nis\n"
                                                             "shadow:     files nis\n"
                                                             "group:      files nis\n"
                                                             " passwd: indented\n"
                                                             "\n"
                                                             "hosts: files dns\n"
                                                             "networks:  files\n"
                                                             "protocols:  files nis\n"
                                                             "services:   files nis\n"
                                                             "ethers: db\n"
                                                             "netgroup:   files nis\n"
                                                             "automount:  files nis\n"
                                                             "passwd_compat: nis\n"
                                                             "Passwd: x\n"
                                                             "passwd:     files files radius nis\n");
}

TEST(NsswitchText, AppendsNothing)
{
    EXPECT_EQ(xasNsswitchText("", orderOf(1, 2, 3, 4)), "");
    EXPECT_EQ(xasNsswitchText("hosts: dns", orderOf(1, 2, 3, 4)), "hosts: dns");
    EXPECT_EQ(xasNsswitchText("group: x", orderOf(1, 2, 3, 4)), "group:      files nis\n");
}
