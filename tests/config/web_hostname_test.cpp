// The host name in the web front end's settings.
#include "config/web_hostname.h"

#include "support/test.h"

namespace {

std::string element(const std::string &name)
{
    return "  <HOSTNAME>" + name + "</HOSTNAME>\n";
}

} // namespace

TEST(WebHostname, IsNoneInAnEmptyText)
{
    EXPECT_EQ(xasWebHostname(""), "");
}

TEST(WebHostname, IsNoneWithoutItsElement)
{
    EXPECT_EQ(xasWebHostname("<?xml version=\"1.0\"?>\n<NETWORK>\n<NAME>console</NAME>\n</HOSTNAME>\n"), "");
    EXPECT_EQ(xasWebHostname("<hostname>console</hostname>\n"), "");
}

TEST(WebHostname, IsNoneWhenItIsEmpty)
{
    EXPECT_EQ(xasWebHostname(element("")), "");
}

TEST(WebHostname, IsNoneWhenNothingFollowsIt)
{
    EXPECT_EQ(xasWebHostname("<HOSTNAME>console\n</HOSTNAME>\n"), "");
    EXPECT_EQ(xasWebHostname("<HOSTNAME>"), "");
}

TEST(WebHostname, IsNoneWhenItIsTooLong)
{
    EXPECT_EQ(xasWebHostname(element(std::string(64, 'a'))), "");
}

TEST(WebHostname, IsTakenUpToItsGreatestLength)
{
    EXPECT_EQ(xasWebHostname(element("a")), "a");
    EXPECT_EQ(xasWebHostname(element(std::string(63, 'a'))), std::string(63, 'a'));
}

TEST(WebHostname, IsNoneBehindAnotherElementOnItsLine)
{
    EXPECT_EQ(xasWebHostname("<NETWORK><HOSTNAME>console</HOSTNAME>\n"), "");
}

TEST(WebHostname, IsWhatFollowsTheFirstElementOfItsLine)
{
    EXPECT_EQ(xasWebHostname("<DOMAIN>example.net</DOMAIN><HOSTNAME>console</HOSTNAME>\n"), "example.net");
}

TEST(WebHostname, IsTheLastThatCanBeTaken)
{
    EXPECT_EQ(
        xasWebHostname(element("first") + element("second") + element("") + element(std::string(64, 'a'))),
        "second");
}

TEST(WebHostname, IsTakenFromALastLineWithoutLineFeedAndFromOneOfAnotherSystem)
{
    EXPECT_EQ(xasWebHostname("<HOSTNAME>console</HOSTNAME>"), "console");
    EXPECT_EQ(xasWebHostname("<HOSTNAME>console-1.example.net</HOSTNAME>\r\n"), "console-1.example.net");
}

TEST(WebHostname, IsSoughtInEveryPieceOfAnOverlongLine)
{
    const std::string blanks(511, ' ');
    EXPECT_EQ(xasWebHostname(blanks + element("console")), "console");
    EXPECT_EQ(xasWebHostname(std::string(505, ' ') + element("console")), "");
}

TEST(WebHostname, IsNoneWhenAShellWouldNotReadItAsOneWord)
{
    for (const char *name :
         {"a b", "a\tb", "$(reboot)", "`reboot`", "$HOME", "a;reboot", "a&reboot", "a|reboot",
          "a>b", "'a",   "\"a",       "a\\",      "#a",    "a\rb",     "~root",    "*",
          "?",   "[a]",  "{a,b}",     "(a)",      "!a",    "^a",       "\x01",     "\xc3\xa4"})
        EXPECT_EQ(xasWebHostname(element(name)), "") << name;
}
