#include "core/text.h"

#include "support/test.h"

namespace {

std::vector<std::string> linesOf(std::string_view text)
{
    std::vector<std::string> lines;
    xasForEachLine(text, [&](std::string_view line) { lines.emplace_back(line); });
    return lines;
}

std::vector<std::string> tokensOf(std::string_view text, std::string_view delimiters)
{
    std::vector<std::string> tokens;
    for (auto token = xasNextToken(text, delimiters); !token.empty(); token = xasNextToken(text, delimiters))
        tokens.emplace_back(token);
    return tokens;
}

} // namespace

TEST(Text, IsFormattedAsPrintfDoes)
{
    EXPECT_EQ(xasFormat("%s=%d%%", "a", -1), "a=-1%");
    EXPECT_EQ(xasFormat("%s", ""), "");
    const std::string longText(5000, 'x');
    EXPECT_EQ(xasFormat("%s", longText.c_str()), longText);
}

TEST(Text, OfABuiltLineIsCutAt511Characters)
{
    const std::string longText(600, 'x');
    EXPECT_EQ(xasFormatLine("%s\n", longText.c_str()), std::string(511, 'x'));
    EXPECT_EQ(xasFormatLine("%s\n", std::string(511, 'x').c_str()), std::string(511, 'x'));
    EXPECT_EQ(xasFormatLine("%s\n", std::string(510, 'x').c_str()), std::string(510, 'x') + "\n");
}

TEST(Text, LosesItsLineEndAndNothingElse)
{
    EXPECT_EQ(xasWithoutLineEnd("a\n"), "a");
    EXPECT_EQ(xasWithoutLineEnd("a\r\n"), "a");
    EXPECT_EQ(xasWithoutLineEnd("a\n\n"), "a\n");
    EXPECT_EQ(xasWithoutLineEnd("a \t"), "a \t");
    EXPECT_EQ(xasWithoutLineEnd("\n"), "");
    EXPECT_EQ(xasWithoutLineEnd(""), "");
}

TEST(Tokens, AreNoneInATextOfDelimitersOnly)
{
    EXPECT_THAT(tokensOf("", " "), ElementsAre());
    EXPECT_THAT(tokensOf("   ", " "), ElementsAre());
    EXPECT_THAT(tokensOf(" = =", " ="), ElementsAre());
}

TEST(Tokens, AreSeparatedByRunsOfDelimiters)
{
    EXPECT_THAT(tokensOf("  a  b c ", " "), ElementsAre("a", "b", "c"));
    EXPECT_THAT(tokensOf("key = value", " ="), ElementsAre("key", "value"));
    EXPECT_THAT(tokensOf("a\tb c", " "), ElementsAre("a\tb", "c"));
}

TEST(Tokens, NeverIncludeTheLineEnd)
{
    EXPECT_EQ(xasFirstToken("broadcastclient\n", " "), "broadcastclient");
    EXPECT_EQ(xasFirstToken("broadcastclient\r\n", " "), "broadcastclient");
    EXPECT_EQ(xasFirstToken("==HOSTNAME=a\n", "="), "HOSTNAME");
    EXPECT_EQ(xasFirstToken("\n", "="), "");
    EXPECT_EQ(xasFirstToken("", "="), "");
}

TEST(Lines, AreNoneInAnEmptyText)
{
    EXPECT_THAT(linesOf(""), ElementsAre());
}

TEST(Lines, KeepTheirLineFeedAndTheLastItsLackOfOne)
{
    EXPECT_THAT(linesOf("a\n\nb"), ElementsAre("a\n", "\n", "b"));
    EXPECT_THAT(linesOf("a\n"), ElementsAre("a\n"));
}

TEST(Lines, LongerThan511CharactersComeInPieces)
{
    const std::string x(511, 'x');
    EXPECT_THAT(linesOf(x + "y\n"), ElementsAre(x, "y\n"));
    EXPECT_THAT(linesOf(x + "\n"), ElementsAre(x, "\n"));
    EXPECT_THAT(linesOf(std::string(510, 'x') + "\nz\n"), ElementsAre(std::string(510, 'x') + "\n", "z\n"));
    EXPECT_THAT(linesOf(std::string(1100, 'x')), ElementsAre(x, x, std::string(78, 'x')));
}

TEST(Lines, EndAtAnEmbeddedNul)
{
    using namespace std::string_literals;
    EXPECT_THAT(linesOf("ab\0cd\nef\n"s), ElementsAre("ab", "ef\n"));
}
