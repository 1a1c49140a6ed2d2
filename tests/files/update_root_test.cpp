// The settings that read files at fixed paths (support/settings_tests.h); and the files of all on a full
// disk.
#include "support/settings_tests.h"
#include "support/small_disk.h"

bool xasIsTestedHere(const XasExpectedSetting &setting)
{
    return setting.hasFixedPaths;
}

namespace {

class AFileOnAFullDisk : public XasSettingTest {};
class AGeneratedFileOnAFullDisk : public XasSettingTest {};

std::vector<XasSettingParam> allWrittenFiles()
{
    std::vector<XasSettingParam> settings;
    for (const XasExpectedSetting &setting : xasExpectedSettings())
        settings.push_back({.setting = &setting});
    return xasFileParams(settings, [](const XasExpectedFile &file) {
        return xasHasBackup(file) || file.way == XasFileWay::generated;
    });
}

} // namespace

TEST_P(AFileOnAFullDisk, FailsItsStepAndAnEditedOneStaysAsItWas)
{
    const XasSmallDisk disk;
    const std::string &oldText = GetParam().file->oldText;
    const bool isEdited = xasHasBackup(*GetParam().file);
    // A generated file is not there: whatever makes room on the disk first would find some.
    disk.write(isEdited ? "file" : "other", isEdited ? oldText : std::string(XasSmallDisk::FILE_SIZE, 'o'));
    disk.write("filler", std::string(XasSmallDisk::FILE_SIZE, 'f'));
    expectOutcome(XasFailure::notWritten, true, disk.path("file"));
    if (isEdited) {
        EXPECT_EQ(disk.read("file"), oldText);
        EXPECT_EQ(xasModeOf(disk.path("file")), 0644U);
        EXPECT_EQ(disk.read("file.tmp"), "");
        EXPECT_FALSE(disk.has("file.old"));
    }
}

TEST_P(AGeneratedFileOnAFullDisk, KeepsItsOldContent)
{
    const XasSmallDisk disk;
    disk.write("file", GetParam().file->oldText);
    disk.write("filler", std::string(XasSmallDisk::FILE_SIZE, 'f'));
    expectOutcome(XasFailure::notWritten, true, disk.path("file"));
    EXPECT_EQ(disk.read("file"), GetParam().file->oldText);
    EXPECT_FALSE(disk.has("file.tmp"));
}

XAS_FOR_FILES(AGeneratedFileOnAFullDisk, file.way == XasFileWay::generated);
INSTANTIATE_TEST_SUITE_P(Of, AFileOnAFullDisk, testing::ValuesIn(allWrittenFiles()), xasSettingTestName);
