// The settings that read files at fixed paths (support/settings_tests.h); and each of them on a full disk.
#include "support/settings_tests.h"
#include "support/small_disk.h"

bool xasIsTestedHere(const XasExpectedSetting &setting)
{
    return setting.hasFixedPaths;
}

namespace {

class AFileOnAFullDisk : public XasSettingTest {};

std::vector<XasSettingParam> allReplacedFiles()
{
    std::vector<XasSettingParam> settings;
    for (const XasExpectedSetting &setting : xasExpectedSettings())
        settings.push_back({.setting = &setting});
    return xasFileParams(settings, xasHasBackup);
}

} // namespace

TEST_P(AFileOnAFullDisk, StaysAsItWasAndFailsTheMessage)
{
    const XasSmallDisk disk;
    const std::string &oldText = GetParam().file->oldText;
    const std::string path = disk.write("file", oldText);
    const std::string filler = disk.write("filler", std::string(XasSmallDisk::FILE_SIZE, 'f'));
    expectOutcome(XasFailure::notWritten, path);
    EXPECT_EQ(disk.read("file"), oldText);
    EXPECT_FALSE(disk.has("file.old"));
}

INSTANTIATE_TEST_SUITE_P(Of, AFileOnAFullDisk, testing::ValuesIn(allReplacedFiles()), xasSettingTestName);
