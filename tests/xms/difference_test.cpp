#include "xms/difference.h"

#include "support/test.h"

#include <random>

namespace {

/** `before` with the hunks of a difference applied to it. */
std::string applied(const std::string &before, const std::string &difference)
{
    std::istringstream old{before};
    std::istringstream hunks{difference};
    std::string result;
    std::string line;
    std::size_t at = 1;
    const auto copyTo = [&](std::size_t number) {
        for (std::string text; at < number && std::getline(old, text); ++at)
            result += text + "\n";
    };
    while (std::getline(hunks, line)) {
        std::string text;
        if (line.starts_with("@@ -")) {
            std::size_t used = 0;
            const std::size_t first = std::stoul(line.substr(4), &used);
            copyTo(line.substr(4 + used).starts_with(",0") ? first + 1 : first);
        } else if (line.starts_with("+")) {
            result += line.substr(1) + "\n";
        } else {
            std::getline(old, text);
            EXPECT_EQ(text, line.substr(1));
            result += line.starts_with(" ") ? text + "\n" : "";
            ++at;
        }
    }
    copyTo(SIZE_MAX);
    return result;
}

} // namespace

TEST(XmsDifference, ThereIsNoneBetweenTheSame)
{
    EXPECT_EQ(xmsDifference("", ""), "");
    EXPECT_EQ(xmsDifference("a\nb", "a\nb"), "");
}

TEST(XmsDifference, ATextThatComesOrGoesIsWhole)
{
    EXPECT_EQ(xmsDifference("", "a\nb\n"), "@@ -0,0 +1,2 @@\n+a\n+b\n");
    EXPECT_EQ(xmsDifference("a\n", ""), "@@ -1 +0,0 @@\n-a\n");
}

TEST(XmsDifference, AMissingLineEndIsSaid)
{
    EXPECT_EQ(xmsDifference("a\nb", "a\nb\n"), "@@ -1,2 +1,2 @@\n a\n-b\n\\ No newline at end of file\n+b\n");
}

TEST(XmsDifference, TwoLinesAroundAChangeAreShown)
{
    EXPECT_EQ(xmsDifference("1\n2\n3\n4\n5\n6\n7\n", "1\n2\n3\nfour\n5\n6\n7\n"),
              "@@ -2,5 +2,5 @@\n 2\n 3\n-4\n+four\n 5\n 6\n");
}

TEST(XmsDifference, ChangesThatStandApartAreHunksOfTheirOwn)
{
    EXPECT_EQ(xmsDifference("a\n1\n2\n3\n4\nb\n", "A\n1\n2\n3\n4\nB\n"),
              "@@ -1,6 +1,6 @@\n-a\n+A\n 1\n 2\n 3\n 4\n-b\n+B\n");
    EXPECT_EQ(xmsDifference("a\n1\n2\n3\n4\n5\nb\n", "A\n1\n2\n3\n4\n5\nB\n"),
              "@@ -1,3 +1,3 @@\n-a\n+A\n 1\n 2\n@@ -5,3 +5,3 @@\n 4\n 5\n-b\n+B\n");
}

TEST(XmsDifference, LinesThatMoveAreFewest)
{
    EXPECT_EQ(xmsDifference("a\nb\nc\n", "b\nc\na\n"), "@@ -1,3 +1,3 @@\n-a\n b\n c\n+a\n");
}

TEST(XmsDifference, OfAnyTwoTextsGivesTheOneFromTheOther)
{
    std::mt19937 random{16};
    for (int round = 0; round < 2000; ++round) {
        std::string before;
        std::string after;
        for (auto n = random() % 30; n > 0; --n) {
            const std::string line = std::to_string(random() % 6) + "\n";
            before += random() % 4 == 0 ? "" : line;
            after += random() % 4 == 0 ? "" : line;
        }
        EXPECT_EQ(applied(before, xmsDifference(before, after)), after) << before << "---\n" << after;
    }
}

TEST(XmsDifference, AVeryLargeChangeIsEverythingReplaced)
{
    std::string before;
    std::string after;
    for (int n = 0; n < 3000; ++n) {
        before += "a" + std::to_string(n) + "\n";
        after += "b" + std::to_string(n) + "\n";
    }
    EXPECT_EQ(applied(before, xmsDifference(before, after)), after);
}
