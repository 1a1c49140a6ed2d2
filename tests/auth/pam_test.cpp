// The PAM stack: whole texts for many orders, and the settings read back from other files.
#include "auth/pam.h"

#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"

#include <map>
#include <memory>
#include <random>

namespace {

/** Seven positions: local, NIS, LDAP, RADIUS, SecurID, Kerberos, TACACS+. */
using Positions = std::array<std::uint32_t, 7>;

XasAuthOrder orderOf(const Positions &positions, bool first = false)
{
    return {.local = positions[0],
            .nis = positions[1],
            .ldap = positions[2],
            .radius = positions[3],
            .securid = positions[4],
            .kerberos = positions[5],
            .tacacs = positions[6],
            .firstResponding = first ? 1U : 0U};
}

XasPamModuleData settings(std::uint32_t useLdap = 0)
{
    XasPamModuleData moduleData;
    moduleData.useLdap = useLdap;
    moduleData.encrypt = 1;
    moduleData.server1 = "10.0.0.1";
    moduleData.server1_secret = "s3cret";
    moduleData.login = "login";
    return moduleData;
}

// The lines of the file, spelled out once. A case below names them by letters.

const std::map<char, std::string> AUTH = {
    {'U', "auth      sufficient\t/lib/security/pam_unix.so  use_first_pass\n"},
    {'L', "auth      sufficient\t/lib/security/pam_ldap.so  use_first_pass\n"},
    {'R', "auth      sufficient\t/lib/security/pam_radius_auth.so  use_first_pass\n"},
    {'S', "auth      sufficient\t/lib/security/pam_securid.so  use_first_pass\n"},
    {'K', "auth      sufficient\t/lib/security/pam_krb5.so  use_first_pass\n"},
    {'k', "auth      sufficient\t/lib/security/pam_krb5.so no_user_check create_local  use_first_pass\n"},
    {'T', "auth      sufficient\t/lib/security/pam_tacplus.so  use_first_pass server=10.0.0.1 secret=s3cret "
          "login=login  encrypt\n"},
};

const std::map<char, std::string> ACCOUNT = {
    {'L', "account   optional      /lib/security/pam_ldap.so\n"},
    {'R', "account   optional  \t   /lib/security/pam_radius_auth.so\n"},
    {'S', "account   optional  \t   /lib/security/pam_securid.so\n"},
    {'K', "account   optional  \t   /lib/security/pam_krb5.so\n"},
    {'T', "account   optional  \t   /lib/security/pam_tacplus.so\n"},
};

const std::map<char, std::string> PASSWORD = {
    {'L', "password  sufficient\t/lib/security/pam_ldap.so use_authtok\n"},
    {'R', "password  sufficient\t/lib/security/pam_radius_auth.so use_authtok\n"},
    {'S', "password  sufficient\t/lib/security/pam_securid.so use_authtok\n"},
    {'K', "password  sufficient\t/lib/security/pam_krb5.so use_authtok\n"},
    {'T', "password  sufficient\t/lib/security/pam_tacplus.so use_authtok\n"},
};

const std::map<char, std::string> SESSION = {
    {'L', "session     sufficient\t/lib/security/pam_ldap.so\n"},
    {'K', "session     sufficient\t/lib/security/pam_krb5.so\n"},
    {'T', "session     sufficient\t/lib/security/pam_tacplus.so\n"},
};

/** A line of AUTH where the first method that answers decides. */
std::string deciding(std::string line)
{
    const std::string_view sufficient = "sufficient";
    return line.replace(line.find(sufficient), sufficient.size(),
                        "[success=done new_authtok_reqd=done authinfo_unavail=ignore default=die]");
}

std::string linesOf(const std::map<char, std::string> &section, std::string_view letters, bool first = false)
{
    std::string lines;
    for (const char letter : letters)
        lines += first ? deciding(section.at(letter)) : section.at(letter);
    return lines;
}

/** The whole file whose sections have these lines besides the fixed ones. */
std::string fileOf(bool first, std::string_view auth, std::string_view remotes, std::string_view sessions)
{
    return "#%PAM-1.0 system-auth file\n"
           "auth      required\t/lib/security/pam_env.so readenv=0\n"
           "auth      sufficient\t/lib/security/pam_sp_user.so\n" +
           linesOf(AUTH, auth, first) +
           "auth      required      /lib/security/pam_deny.so\n"
           "account   optional      /lib/security/pam_unix.so\n" +
           linesOf(ACCOUNT, remotes) +
           "password  sufficient\t/lib/security/pam_unix.so retry=3 nullok md5 shadow nis\n" +
           linesOf(PASSWORD, remotes) +
           "session   required      /lib/security/pam_limits.so\n"
           "session   sufficient\t/lib/security/pam_unix.so\n" +
           linesOf(SESSION, sessions);
}

/** The TACACS+ line of a file in which TACACS+ is the only method. */
std::string tacacsLine(const XasPamModuleData &moduleData)
{
    const std::string text = xasPamSystemAuthText(orderOf({0, 0, 0, 0, 0, 0, 1}), moduleData);
    const std::size_t begin = text.find("pam_tacplus.so");
    return text.substr(begin, text.find('\n', begin) + 1 - begin);
}

class PamFile : public XasFilesTest {
  protected:
    XasLogCapture log;
};

using ConfData = PamFile;

} // namespace

TEST_F(PamFile, ThatCannotBeOpenedIsLogged)
{
    const std::string path = dir.path("missing/system-auth");
    EXPECT_EQ(xasWritePamSystemAuthFile({}, path.c_str(), std::make_unique<XasPamModuleData>().get()), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error opening config file \"" + path + "\"\n")));
}

TEST_F(PamFile, ThatCannotBeWrittenIsLogged)
{
    const std::string path = dir.write("system-auth", "old\n");
    const XasPamModuleData moduleData;
    const XasFault fault{"fsync", EIO};
    EXPECT_EQ(xasWritePamSystemAuthFile({}, path.c_str(), &moduleData), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error printing line to file\n")));
    EXPECT_EQ(dir.read("system-auth"), "old\n");
    EXPECT_THAT(dir.names(), ElementsAre("system-auth"));
}

TEST_F(PamFile, IsReplacedAndLeavesNoTemporaryAndNoBackup)
{
    const std::string path = dir.write("system-auth", std::string(10000, 'x'), 0640);
    const XasPamModuleData moduleData;
    EXPECT_EQ(xasWritePamSystemAuthFile(orderOf({1, 0, 0, 0, 0, 0, 0}), path.c_str(), &moduleData), 0);
    EXPECT_EQ(dir.read("system-auth"), fileOf(false, "U", "", ""));
    EXPECT_THAT(dir.names(), ElementsAre("system-auth"));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(PamFile, IsTheOwnersAloneWhileItCarriesTheSecret)
{
    const std::string path = dir.path("system-auth");
    const XasPamModuleData moduleData = settings();
    EXPECT_EQ(xasWritePamSystemAuthFile(orderOf({1, 0, 0, 0, 0, 0, 2}), path.c_str(), &moduleData), 0);
    EXPECT_EQ(xasModeOf(path), 0600U);
    EXPECT_EQ(xasWritePamSystemAuthFile(orderOf({1, 0, 0, 0, 0, 0, 0}), path.c_str(), &moduleData), 0);
    EXPECT_EQ(xasModeOf(path), 0644U) << "everybody's logins are checked by it";
    EXPECT_EQ(xasWritePamSystemAuthFile(orderOf({1, 0, 0, 0, 0, 0, 1}), path.c_str(), &moduleData), 0);
    EXPECT_EQ(xasModeOf(path), 0644U) << "TACACS+ has no line of its own here, local accounts come first";
    EXPECT_EQ(xasWritePamSystemAuthFile(orderOf({0, 0, 0, 0, 0, 0, 7}), path.c_str(), &moduleData), 0);
    EXPECT_EQ(xasModeOf(path), 0600U);
}

TEST(PamText, LetsTheFirstThatAnswersDecideForAnyNumberButZero)
{
    XasAuthOrder order = orderOf({1, 0, 0, 0, 0, 0, 0});
    order.firstResponding = 7;
    EXPECT_THAT(xasPamSystemAuthText(order, {}),
                HasSubstr("\nauth      [success=done new_authtok_reqd=done authinfo_unavail=ignore "
                          "default=die]\t/lib/security/pam_unix.so  use_first_pass\n"));
}

TEST(PamText, OfAllMethodsWithTheFirstThatAnswersDeciding)
{
    XasPamModuleData moduleData = settings();
    moduleData.server2 = "10.0.0.2";
    moduleData.server3 = "[fd00::3]";
    moduleData.encrypt = 0;
    EXPECT_EQ(xasPamSystemAuthText(orderOf({1, 7, 2, 3, 4, 5, 6}, true), moduleData),
              "#%PAM-1.0 system-auth file\n"
              "auth      required\t/lib/security/pam_env.so readenv=0\n"
              "auth      sufficient\t/lib/security/pam_sp_user.so\n"
              "auth      [success=done new_authtok_reqd=done authinfo_unavail=ignore default=die]\t"
              "/lib/security/pam_unix.so  use_first_pass\n"
              "auth      [success=done new_authtok_reqd=done authinfo_unavail=ignore default=die]\t"
              "/lib/security/pam_ldap.so  use_first_pass\n"
              "auth      [success=done new_authtok_reqd=done authinfo_unavail=ignore default=die]\t"
              "/lib/security/pam_radius_auth.so  use_first_pass\n"
              "auth      [success=done new_authtok_reqd=done authinfo_unavail=ignore default=die]\t"
              "/lib/security/pam_securid.so  use_first_pass\n"
              "auth      [success=done new_authtok_reqd=done authinfo_unavail=ignore default=die]\t"
              "/lib/security/pam_krb5.so no_user_check create_local  use_first_pass\n"
              "auth      [success=done new_authtok_reqd=done authinfo_unavail=ignore default=die]\t"
              "/lib/security/pam_tacplus.so  use_first_pass server=10.0.0.1 secret=s3cret server=10.0.0.2 "
              "server=[fd00::3] login=login \n"
              "auth      required      /lib/security/pam_deny.so\n"
              "account   optional      /lib/security/pam_unix.so\n"
              "account   optional      /lib/security/pam_ldap.so\n"
              "account   optional  \t   /lib/security/pam_radius_auth.so\n"
              "account   optional  \t   /lib/security/pam_securid.so\n"
              "account   optional  \t   /lib/security/pam_krb5.so\n"
              "account   optional  \t   /lib/security/pam_tacplus.so\n"
              "password  sufficient\t/lib/security/pam_unix.so retry=3 nullok md5 shadow nis\n"
              "password  sufficient\t/lib/security/pam_ldap.so use_authtok\n"
              "password  sufficient\t/lib/security/pam_radius_auth.so use_authtok\n"
              "password  sufficient\t/lib/security/pam_securid.so use_authtok\n"
              "password  sufficient\t/lib/security/pam_krb5.so use_authtok\n"
              "password  sufficient\t/lib/security/pam_tacplus.so use_authtok\n"
              "session   required      /lib/security/pam_limits.so\n"
              "session   sufficient\t/lib/security/pam_unix.so\n"
              "session     sufficient\t/lib/security/pam_ldap.so\n"
              "session     sufficient\t/lib/security/pam_krb5.so\n"
              "session     sufficient\t/lib/security/pam_tacplus.so\n");
}

namespace {

struct PamCase {
    Positions positions; // local, NIS, LDAP, RADIUS, SecurID, Kerberos, TACACS+
    bool first;
    std::uint32_t useLdap;
    std::string_view auth;     /**< lines of AUTH */
    std::string_view remotes;  /**< lines of ACCOUNT and of PASSWORD */
    std::string_view sessions; /**< lines of SESSION */
};

const PamCase PAM_CASES[] = {
    // nothing, and positions that do not exist
    {{0, 0, 0, 0, 0, 0, 0}, false, 0, "", "", ""},
    {{255, 8, 12, 100, 77, 4294967295, 8}, false, 1, "", "", ""},
    {{8, 2, 9, 1, 10, 11, 12}, false, 0, "RU", "R", ""},
    // one method
    {{1, 0, 0, 0, 0, 0, 0}, false, 0, "U", "", ""},
    {{0, 1, 0, 0, 0, 0, 0}, false, 0, "U", "", ""},
    {{0, 0, 1, 0, 0, 0, 0}, false, 0, "L", "L", "L"},
    {{0, 0, 0, 1, 0, 0, 0}, false, 0, "R", "R", ""},
    {{0, 0, 0, 0, 1, 0, 0}, false, 0, "S", "S", ""},
    {{0, 0, 0, 0, 0, 0, 1}, false, 0, "T", "T", "T"},
    // Kerberos asks nobody else only when it is first and use_ldap is 1
    {{0, 0, 0, 0, 0, 1, 0}, false, 0, "k", "K", "K"},
    {{0, 0, 0, 0, 0, 1, 0}, false, 1, "K", "K", "K"},
    {{0, 0, 0, 0, 0, 2, 0}, false, 1, "k", "K", "K"},
    {{0, 0, 0, 0, 0, 2, 0}, false, 2, "K", "K", "K"},
    {{0, 0, 0, 0, 0, 1, 0}, false, 2, "k", "K", "K"},
    {{1, 0, 0, 0, 0, 2, 0}, false, 1, "Uk", "K", "K"},
    {{3, 0, 0, 0, 2, 1, 0}, false, 1, "KSU", "KS", "K"},
    // local accounts and NIS share a line, at the earlier of their positions
    {{1, 2, 0, 0, 0, 0, 0}, false, 0, "U", "", ""},
    {{1, 2, 2, 0, 0, 0, 0}, false, 0, "UL", "L", "L"},
    {{2, 1, 2, 0, 0, 0, 0}, false, 0, "UL", "L", "L"},
    {{4, 3, 2, 1, 0, 0, 0}, false, 0, "RLU", "RL", "L"},
    // several methods
    {{1, 2, 3, 4, 5, 6, 7}, false, 0, "ULRSkT", "LRSKT", "LKT"},
    {{7, 6, 5, 4, 3, 2, 1}, false, 0, "TkSRLU", "TKSRL", "TKL"},
    {{0, 0, 0, 0, 0, 2, 1}, false, 1, "Tk", "TK", "TK"},
    // methods that share a position: one login line, but all the others
    {{1, 1, 1, 1, 1, 1, 1}, false, 1, "U", "LRSKT", "LKT"},
    {{0, 0, 1, 1, 1, 1, 1}, false, 1, "L", "LRSKT", "LKT"},
    {{0, 0, 0, 1, 1, 1, 1}, false, 1, "R", "RSKT", "KT"},
    {{0, 0, 0, 0, 1, 1, 1}, false, 1, "S", "SKT", "KT"},
    {{0, 0, 0, 0, 0, 1, 1}, false, 1, "K", "KT", "KT"},
    {{3, 0, 2, 2, 0, 0, 0}, false, 0, "LU", "LR", "L"},
    {{0, 4, 4, 0, 0, 0, 0}, false, 0, "U", "L", "L"},
    {{2, 0, 3, 1, 3, 1, 2}, false, 1, "RUL", "RKTLS", "KTL"},
    // the first that answers decides
    {{1, 2, 3, 4, 5, 6, 7}, true, 0, "ULRSkT", "LRSKT", "LKT"},
    {{0, 0, 0, 0, 0, 1, 0}, true, 1, "K", "K", "K"},
    {{0, 0, 0, 2, 2, 1, 1}, true, 0, "kR", "KTRS", "KT"},
};

} // namespace

TEST(PamText, HasForEachOrderExactlyTheLinesOfItsRules)
{
    for (const PamCase &c : PAM_CASES) {
        EXPECT_EQ(xasPamSystemAuthText(orderOf(c.positions, c.first), settings(c.useLdap)),
                  fileOf(c.first, c.auth, c.remotes, c.sessions))
            << testing::PrintToString(c.positions) << " first " << c.first << " use_ldap " << c.useLdap;
    }
}

namespace {

/** What a method writes, by slow and obvious means: all entries of all methods, sorted by position. */
struct Entry {
    std::uint32_t position;
    int rank;
    char letter;

    auto operator<=>(const Entry &) const = default;
};

std::vector<Entry> sortedEntries(std::vector<Entry> entries)
{
    std::erase_if(entries, [](const Entry &entry) { return entry.position < 1 || entry.position > 7; });
    std::ranges::sort(entries);
    return entries;
}

std::string modelOf(const Positions &p, bool first, std::uint32_t useLdap)
{
    std::vector<Entry> unixEntries = sortedEntries({{p[0], 0, 'U'}, {p[1], 0, 'U'}});
    if (unixEntries.size() == 2)
        unixEntries.pop_back();
    const char kerberos = useLdap == p[5] ? 'K' : 'k';
    std::vector<Entry> entries = {
        {p[2], 1, 'L'}, {p[3], 2, 'R'}, {p[4], 3, 'S'}, {p[5], 4, kerberos}, {p[6], 5, 'T'}};
    entries.insert(entries.end(), unixEntries.begin(), unixEntries.end());
    std::string auth;
    std::uint32_t taken = 0;
    for (const Entry &entry : sortedEntries(entries)) {
        if (entry.position != taken)
            auth += entry.letter;
        taken = entry.position;
    }
    std::string remotes;
    for (const Entry &entry :
         sortedEntries({{p[2], 1, 'L'}, {p[3], 2, 'R'}, {p[4], 3, 'S'}, {p[5], 4, 'K'}, {p[6], 5, 'T'}}))
        remotes += entry.letter;
    std::string sessions = remotes;
    std::erase_if(sessions, [](char letter) { return letter == 'R' || letter == 'S'; });
    return fileOf(first, auth, remotes, sessions);
}

} // namespace

TEST(PamText, FollowsTheRulesForAnyOrderAndSettings)
{
    std::mt19937 random{20240517};
    std::uniform_int_distribution<std::uint32_t> anyPosition{0, 9};
    std::uniform_int_distribution<std::uint32_t> anyLdap{0, 7};
    for (int i = 0; i < 20000; ++i) {
        Positions positions{};
        std::ranges::generate(positions, [&] { return anyPosition(random); });
        const bool first = i % 2 != 0;
        const std::uint32_t useLdap = anyLdap(random);
        ASSERT_EQ(xasPamSystemAuthText(orderOf(positions, first), settings(useLdap)),
                  modelOf(positions, first, useLdap))
            << testing::PrintToString(positions);
    }
}

TEST(PamText, NamesTheTacacsServersThatThereAre)
{
    XasPamModuleData moduleData = settings();
    EXPECT_EQ(tacacsLine(moduleData), "pam_tacplus.so  use_first_pass server=10.0.0.1 secret=s3cret "
                                      "login=login  encrypt\n");
    moduleData.server3 = "tac3";
    EXPECT_EQ(tacacsLine(moduleData), "pam_tacplus.so  use_first_pass server=10.0.0.1 secret=s3cret "
                                      "server=tac3 login=login  encrypt\n");
    moduleData.server2 = "tac2";
    moduleData.encrypt = 0;
    moduleData.login = "chap";
    EXPECT_EQ(tacacsLine(moduleData), "pam_tacplus.so  use_first_pass server=10.0.0.1 secret=s3cret "
                                      "server=tac2 server=tac3 login=chap \n");
    EXPECT_EQ(tacacsLine({}), "pam_tacplus.so  use_first_pass server= secret= login= \n");
    moduleData = {};
    moduleData.encrypt = 2;
    EXPECT_EQ(tacacsLine(moduleData), "pam_tacplus.so  use_first_pass server= secret= login= \n");
}

TEST(PamText, CutsEachPieceBehindTheFirstTacacsServerAt75Characters)
{
    XasPamModuleData moduleData = settings();
    moduleData.server2 = std::string(67, 'b');
    moduleData.server3 = std::string(68, 'c');
    moduleData.login = std::string(70, 'd');
    EXPECT_EQ(tacacsLine(moduleData),
              "pam_tacplus.so  use_first_pass server=10.0.0.1 secret=s3cret server=" + std::string(67, 'b') +
                  " server=" + std::string(68, 'c') + "login=" + std::string(69, 'd') + " encrypt\n");
}

TEST(PamText, KeepsTheLineEndOfALongTacacsLine)
{
    XasPamModuleData moduleData = settings();
    moduleData.server1 = std::string(256, 'a');
    moduleData.server1_secret = std::string(127, 's');
    const std::string line = tacacsLine(moduleData);
    EXPECT_EQ(line, "pam_tacplus.so  use_first_pass server=" + std::string(256, 'a') +
                        " secret=" + std::string(127, 's') + " login=login  encrypt\n");
}

TEST_F(ConfData, IsNotFoundInAFileThatIsNotThere)
{
    std::string value = "before";
    EXPECT_EQ(xasGetConfData(dir.path("missing").c_str(), "tag", &value), 1);
    EXPECT_EQ(value, "before");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(ConfData, IsNotFoundWithoutTheBlanksAroundTheEqualsSign)
{
    const std::string path = dir.write("conf", "tag=1\ntag =2\ntag= 3\ntags = 4\nTAG = 5\n");
    std::string value = "before";
    EXPECT_EQ(xasGetConfData(path.c_str(), "tag", &value), 1);
    EXPECT_EQ(value, "before");
}

TEST_F(ConfData, IsTheLastOfItsLines)
{
    const std::string path = dir.write("conf", "tag = one\n# tag = two\n   tag = three = 3 \nother = x\n");
    std::string value;
    EXPECT_EQ(xasGetConfData(path.c_str(), "tag", &value), 0);
    EXPECT_EQ(value, "three = 3 ");
}

TEST_F(ConfData, IsFoundAnywhereInALine)
{
    std::string value;
    EXPECT_TRUE(xasFindConfData("a = b my_tag = c\n", "tag", value));
    EXPECT_EQ(value, "c");
}

TEST_F(ConfData, LosesItsLastCharacterWhateverItIs)
{
    std::string value;
    EXPECT_TRUE(xasFindConfData("tag = value", "tag", value));
    EXPECT_EQ(value, "valu");
    EXPECT_TRUE(xasFindConfData("tag = \n", "tag", value));
    EXPECT_EQ(value, "");
    EXPECT_TRUE(xasFindConfData("tag = ", "tag", value));
    EXPECT_EQ(value, "");
    EXPECT_TRUE(xasFindConfData("tag = value\r\n", "tag", value));
    EXPECT_EQ(value, "value\r");
}

TEST_F(ConfData, IsReadInPiecesOf511Characters)
{
    std::string value;
    const std::string line = "tag = " + std::string(600, 'v') + "\n";
    EXPECT_TRUE(xasFindConfData(line, "tag", value));
    EXPECT_EQ(value, std::string(504, 'v')) << "511 characters without the tag, and without the last";
    EXPECT_FALSE(xasFindConfData(std::string(509, 'x') + "tag = value\n", "tag", value));
}
