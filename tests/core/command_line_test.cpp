#include "core/command_line.h"

#include "support/test.h"

namespace {

std::string repeatedWord(int count)
{
    std::string line;
    for (int i = 1; i <= count; ++i)
        line += (i > 1 ? " w" : "w") + std::to_string(i);
    return line;
}

} // namespace

TEST(CommandLine, HasNoWordsWhenItIsEmptyOrBlank)
{
    EXPECT_THAT(xasBuildArguments("").words, IsEmpty());
    EXPECT_THAT(xasBuildArguments("   ").words, IsEmpty());
}

TEST(CommandLine, HasNoWordsWhenItIsLongerThan255Characters)
{
    EXPECT_THAT(xasBuildArguments(std::string(256, 'x')).words, IsEmpty());
    EXPECT_THAT(xasBuildArguments(std::string(255, 'x')).words, ElementsAre(std::string(255, 'x')));
}

TEST(CommandLine, IsSplitAtBlanksAndRunsOfThem)
{
    EXPECT_THAT(xasBuildArguments("/bin/a  -x   b ").words, ElementsAre("/bin/a", "-x", "b"));
    EXPECT_THAT(xasBuildArguments(" /bin/a").words, ElementsAre("/bin/a"));
}

TEST(CommandLine, IsNotSplitAtTabsAndKnowsNoQuotes)
{
    EXPECT_THAT(xasBuildArguments("/bin/a\tb 'c d'").words, ElementsAre("/bin/a\tb", "'c", "d'"));
}

TEST(CommandLine, KeepsALineFeedAtItsEndInItsLastWord)
{
    EXPECT_THAT(xasBuildArguments("/bin/a b\n").words, ElementsAre("/bin/a", "b\n"));
}

TEST(CommandLine, DropsWordsBehindTheTwentieth)
{
    const auto words = xasBuildArguments(repeatedWord(21)).words;
    ASSERT_EQ(words.size(), 20U);
    EXPECT_EQ(words.front(), "w1");
    EXPECT_EQ(words.back(), "w20");
    EXPECT_EQ(xasBuildArguments(repeatedWord(20)).words.size(), 20U);
}

TEST(CommandLine, EndsItsVectorWithANull)
{
    XasArguments arguments = xasBuildArguments("/bin/a b");
    const std::vector<char *> pointers = arguments.vector();
    ASSERT_EQ(pointers.size(), 3U);
    EXPECT_STREQ(pointers[0], "/bin/a");
    EXPECT_STREQ(pointers[1], "b");
    EXPECT_EQ(pointers[2], nullptr);
}

TEST(CommandLine, HasItsFirstWordForAProgram)
{
    EXPECT_EQ(xasProgramOf(""), "");
    EXPECT_EQ(xasProgramOf("  "), "");
    EXPECT_EQ(xasProgramOf("/bin/a"), "/bin/a");
    EXPECT_EQ(xasProgramOf("  /bin/a  -b /c"), "/bin/a");
    EXPECT_EQ(xasProgramOf("/bin/a\n"), "/bin/a\n");
    EXPECT_EQ(xasProgramOf("/bin/a\t-b"), "/bin/a\t-b");
}
