#include "xms/man.h"

#include "core/sysapp_parser.h"
#include "dispatch/settings.h"
#include "support/files.h"
#include "xms/check.h"

namespace {

/** The page's text from the line `begin` to the line `end`, both left out. */
std::string between(const std::string &page, const std::string &begin, const std::string &end)
{
    const std::size_t from = page.find("\n" + begin + "\n");
    EXPECT_NE(from, std::string::npos) << begin;
    if (from == std::string::npos)
        return {};
    const std::size_t start = from + begin.size() + 2;
    return page.substr(start, page.find("\n" + end, start - 1) + 1 - start);
}

/** The words of a part of a page, without its commas. */
std::vector<std::string> wordsOf(const std::string &text)
{
    std::istringstream stream{text};
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

class XmsManSysapp : public XasFilesTest {
  protected:
    std::string page = xasReadFile(XAS_DOCS_DIR "/man/sysapp.xml.5");
};

} // namespace

TEST(XmsMan, ThePageOfTheMessagesIsUpToDate)
{
    EXPECT_TRUE(xasReadFile(XAS_DOCS_DIR "/man/xasd-messages.7") == xmsMessagesMan())
        << "docs/man/xasd-messages.7 is not what the fields' descriptions give: run ./dev docs";
}

TEST(XmsMan, AFieldIsAnEntryWithItsPlaceAndDefault)
{
    EXPECT_THAT(xmsMessagesMan(),
                HasSubstr("\n.Ss nat_notify\n"
                          "XMSG_NAT_NOTIFY (63): address translation changes (never answered); never\n"
                          "answered, not stored; application nat.\n"
                          ".Bl -tag -width Ds -compact\n"
                          ".It Li add\n"
                          "offset 120, 4 bytes, flag, default yes: yes: add the address, no: delete it\n"
                          ".It Li address\n"
                          "offset 124, 4 bytes, IPv4, default 0.0.0.0: the address to translate\n"
                          ".El\n"));
}

TEST(XmsMan, ATextCannotBecomeAMacro)
{
    EXPECT_EQ(xmsManText(".Sh is no heading"), "\\&.Sh is no heading\n");
    EXPECT_EQ(xmsManText("a\\b\n'quoted'"), "a\\eb 'quoted'\n");
    EXPECT_EQ(xmsManText("'quoted"), "\\&'quoted\n");
    EXPECT_EQ(xmsManText("One. Two."), "One.\nTwo.\n") << "the formatter sets the space behind a sentence";
    EXPECT_EQ(xmsManText(std::string(70, 'a') + " bbbbbbbb c"), std::string(70, 'a') + " bbbbbbbb\nc\n")
        << "79 characters fill a line";
    EXPECT_EQ(xmsManText(""), "");
}

TEST_F(XmsManSysapp, EverySettingStandsThereWithTheTypesItNeeds)
{
    const std::string settings = between(page, ".Ss Settings", ".Sh FILES");
    for (const XasSetting &setting : xasSettings()) {
        if (setting.application.empty())
            continue;
        const std::string entry = ".It Li " + std::string{setting.application};
        const std::vector<std::string> words = wordsOf(between(settings, entry, ".It"));
        EXPECT_FALSE(words.empty()) << entry;
        if (setting.update.files == nullptr)
            continue;
        for (const XasFileRow &row : setting.update.files->files)
            EXPECT_THAT(words, Contains(std::string{row.type})) << entry;
    }
}

TEST_F(XmsManSysapp, TheExampleIsAListThatTheDaemonReads)
{
    XasAppList apps;
    const std::string example = between(page, ".Bd -literal", ".Ed");
    ASSERT_EQ(xasLoadAppList(dir.write("sysapp.xml", example).c_str(), apps), 0);
    for (const XmsFinding &finding : xmsCheckList(dir.path("sysapp.xml"), ""))
        EXPECT_EQ(finding.worry, XmsWorry::hint) << finding.text;
    ASSERT_EQ(apps.size(), 5U);
    const XasApp *eth = xasFindApp("eth", apps);
    ASSERT_NE(eth, nullptr);
    EXPECT_EQ(eth->stopScript, "/r58/bin/eth stop 0 0 0");
    EXPECT_STREQ(xasGetCfgFilePath("kernel", eth->cfgFiles), "/etc/sysctl.conf");
    const XasApp *samba = xasFindApp("samba", apps);
    ASSERT_NE(samba, nullptr);
    ASSERT_EQ(samba->daemons.size(), 2U);
    EXPECT_EQ(samba->daemons[1].exe, "/usr/samba/sbin/nmbd -D");
}
