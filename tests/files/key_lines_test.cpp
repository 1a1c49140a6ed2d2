// Files of "KEY=value" lines in which some keys get new values.
#include "files/key_lines.h"

#include "support/test.h"

namespace {

const std::array KEY_LINES = {XasKeyLine{"ONE", "ONE=1\n"}, XasKeyLine{"TWO", "TWO=2\n"}};

std::string replaced(std::string_view oldText)
{
    return xasReplaceKeyLines(oldText, "=", KEY_LINES);
}

} // namespace

TEST(KeyLines, AreNotAddedToAnEmptyFile)
{
    EXPECT_EQ(replaced(""), "");
}

TEST(KeyLines, AreNotAddedWhereTheKeyIsMissing)
{
    EXPECT_EQ(replaced("THREE=x\n\n# ONE\n"), "THREE=x\n\n# ONE\n");
}

TEST(KeyLines, LeaveCommentedAndLongerAndShorterKeysAlone)
{
    EXPECT_EQ(replaced("#ONE=x\nONES=x\nON=x\none=x\n"), "#ONE=x\nONES=x\nON=x\none=x\n");
}

TEST(KeyLines, LeaveAKeyWithABlankAloneWhereBlanksAreNoDelimiters)
{
    EXPECT_EQ(replaced("ONE =x\n ONE=x\n"), "ONE =x\n ONE=x\n");
}

TEST(KeyLines, AreReplacedWhereTheyStandAndAsOftenAsTheyStand)
{
    EXPECT_EQ(replaced("a\nTWO=x\nb\nONE=y\nTWO=z\n"), "a\nTWO=2\nb\nONE=1\nTWO=2\n");
}

TEST(KeyLines, AreReplacedWithoutAValueAndBehindDelimiters)
{
    EXPECT_EQ(replaced("ONE\nTWO=\n==ONE==x\n"), "ONE=1\nTWO=2\nONE=1\n");
}

TEST(KeyLines, AreReplacedWholeInAFileOfAnotherSystemsLineEnds)
{
    EXPECT_EQ(replaced("ONE=x\r\nrest\r\nTWO\r\n"), "ONE=1\nrest\r\nTWO=2\n");
}

TEST(KeyLines, KeepALastLineWithoutLineFeedAsItIs)
{
    EXPECT_EQ(replaced("ONE=x\nrest"), "ONE=1\nrest");
}

TEST(KeyLines, GetALineFeedWhereTheLastLineHadNone)
{
    EXPECT_EQ(replaced("rest\nONE=x"), "rest\nONE=1\n");
}

TEST(KeyLines, AreSoughtInEveryPieceOfAnOverlongLine)
{
    // The first piece of 511 characters is replaced, the rest of the line is a piece of its own.
    const std::string longLine = "ONE=" + std::string(507, 'x') + "TWO=y\nlast\n";
    EXPECT_EQ(replaced(longLine), "ONE=1\nTWO=2\nlast\n");
}

TEST(KeyLines, KeepAnOverlongLineOfAnotherKeyWhole)
{
    const std::string longLine = "THREE=" + std::string(2000, 'x') + "\n";
    EXPECT_EQ(replaced(longLine + "ONE=x\n"), longLine + "ONE=1\n");
}

TEST(KeyLines, EndALineAtAnEmbeddedNul)
{
    using namespace std::string_view_literals;
    EXPECT_EQ(replaced("THREE=x\0y\nONE\0=x\n"sv), "THREE=xONE=1\n");
}

TEST(KeyLines, AreFoundBehindAnyOfTheDelimiters)
{
    EXPECT_EQ(xasReplaceKeyLines("  ONE = x\nTWO=x\nONE\tx\n", " =", KEY_LINES), "ONE=1\nTWO=2\nONE\tx\n");
}
