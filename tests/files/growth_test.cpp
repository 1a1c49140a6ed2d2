// Editing a text takes the same time for each of its lines, however many there are, and memory for the text
// alone.
#include "support/growth.h"

#include "support/line_editors.h"
#include "support/test.h"

TEST(TimeOfALine, IsTheSameInAnyFile)
{
    for (const XasLineEditor &edit : xasLineEditors())
        EXPECT_LT(xasGrowthPerLine(edit.run, edit.line), XAS_CONSTANT_GROWTH) << edit.editor;
}

TEST(MemoryOfALine, ThatIsKeptIsItsPlaceInTheNewText)
{
    for (const XasLineEditor &edit : xasEditorsThatKeepLines()) {
        const std::string few = xasRepeated(edit.line, 1'000);
        const std::string many = xasRepeated(edit.line, 10'000);
        std::string newText;
        const XasAllocated forFew = xasAllocatedBy([&] { newText = edit.run(few); });
        ASSERT_GE(newText.size(), few.size()) << edit.editor << ": the lines were not kept";
        const XasAllocated forMany = xasAllocatedBy([&] { newText = edit.run(many); });
        ASSERT_GE(newText.size(), many.size()) << edit.editor << ": the lines were not kept";
        EXPECT_EQ(forMany.blocks, forFew.blocks) << edit.editor;
        EXPECT_LE(forMany.bytes, many.size() * 6 / 5) << edit.editor << ": the text was moved as it grew";
    }
}
