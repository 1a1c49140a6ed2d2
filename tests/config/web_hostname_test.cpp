// The host name in the web front end's settings.
#include "config/web_hostname.h"

#include "support/test.h"

namespace {

std::string element(const std::string &name)
{
    return "  <HOSTNAME>" + name + "</HOSTNAME>\n";
}

} // namespace

TEST(WebHostname, IsNoneWithoutAWholeElementThatBeginsItsLineAndIsShortEnough)
{
    for (const std::string &text :
         {std::string{}, std::string{"<NETWORK>\n<NAME>console</NAME>\n</HOSTNAME>\n"},
          std::string{"<hostname>console</hostname>\n"}, element(""),
          std::string{"<HOSTNAME>console\n</HOSTNAME>\n"}, std::string{"<HOSTNAME>"},
          element(std::string(64, 'a')), std::string{"<NETWORK><HOSTNAME>console</HOSTNAME>\n"}})
        EXPECT_EQ(xasWebHostname(text), "") << text;
}

TEST(WebHostname, IsTheLastThatCanBeTaken)
{
    EXPECT_EQ(xasWebHostname(element("a")), "a");
    EXPECT_EQ(xasWebHostname(element(std::string(63, 'a'))), std::string(63, 'a'));
    EXPECT_EQ(xasWebHostname("<DOMAIN>example.net</DOMAIN><HOSTNAME>console</HOSTNAME>\n"), "example.net");
    EXPECT_EQ(
        xasWebHostname(element("first") + element("second") + element("") + element(std::string(64, 'a'))),
        "second");
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
