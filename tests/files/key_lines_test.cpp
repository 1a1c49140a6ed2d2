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

namespace {

struct KeyLinesCase {
    const char *what;
    std::string_view oldText;
    std::string_view newText;
};

constexpr KeyLinesCase KEY_LINES_CASES[] = {
    {"not added to an empty file", "", ""},
    {"not added where the key is missing", "THREE=x\n\n# ONE\n", "THREE=x\n\n# ONE\n"},
    {"commented, longer and shorter keys", "#ONE=x\nONES=x\nON=x\none=x\n", "#ONE=x\nONES=x\nON=x\none=x\n"},
    {"a blank that is no delimiter", "ONE =x\n ONE=x\n", "ONE =x\n ONE=x\n"},
    {"where and as often as they stand", "a\nTWO=x\nb\nONE=y\nTWO=z\n", "a\nTWO=2\nb\nONE=1\nTWO=2\n"},
    {"without a value and behind delimiters", "ONE\nTWO=\n==ONE==x\n", "ONE=1\nTWO=2\nONE=1\n"},
    {"another system's line ends", "ONE=x\r\nrest\r\nTWO\r\n", "ONE=1\nrest\r\nTWO=2\n"},
    {"a last line without line feed that is kept", "ONE=x\nrest", "ONE=1\nrest"},
    {"a last line without line feed that is replaced", "rest\nONE=x", "rest\nONE=1\n"},
    {"an embedded NUL", {"THREE=x\0y\nONE\0=x\n", 17}, "THREE=xONE=1\n"},
};

} // namespace

TEST(KeyLines, AreReplacedWhereTheyStandAndNeverAdded)
{
    for (const KeyLinesCase &c : KEY_LINES_CASES)
        EXPECT_EQ(replaced(c.oldText), c.newText) << c.what;
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

TEST(KeyLines, AreFoundBehindAnyOfTheDelimiters)
{
    EXPECT_EQ(xasReplaceKeyLines("  ONE = x\nTWO=x\nONE\tx\n", " =", KEY_LINES), "ONE=1\nTWO=2\nONE\tx\n");
}
