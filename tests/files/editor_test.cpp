// What the loops that all editors share do with a file that cannot be read.
#include "files/editor.h"
#include "support/files.h"
#include "support/log.h"
#include "support/reply.h"

namespace {

class Editor : public XasFilesTest {};

} // namespace

TEST_F(Editor, LeavesAFileAloneThatCannotBeReadToItsEnd)
{
    const std::string live = dir.path("live");
    std::filesystem::create_symlink("/proc/self/mem", live); // opens, but its first page cannot be read
    const XasLogCapture log;
    XasReplyStatus reply;
    constexpr XasEditTexts texts{
        .openReason = "Error opening it", .writeLog = "not written", .saveReason = "not saved"};
    bool wasEdited = false;
    const int result = xasEditFile(live.c_str(), texts, &reply, [&](std::string_view oldText) {
        wasEdited = true;
        return XasNewText{std::string{oldText}};
    });
    EXPECT_FALSE(wasEdited);
    EXPECT_EQ(result, 1);
    EXPECT_EQ(xasReplyText(reply), "2 Error opening it");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error reading config file \"" + live + "\"\n")));
    EXPECT_TRUE(std::filesystem::is_symlink(live));
    EXPECT_FALSE(dir.has("live.old"));
}
