#include "files/config_file.h"

#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"

namespace {

class CfgFile : public XasFilesTest {
  protected:
    CfgFile() { ::umask(022); }

    [[nodiscard]] std::string live() const { return dir.path("live"); }

    /** Regenerates the live file with this text and saves it. */
    int replace(std::string_view text, XasSecrecy secrecy = XasSecrecy::plain)
    {
        XasCfgFile file;
        if (xasCfgOpenOutFile(live().c_str(), &file, secrecy) != 0)
            return -1;
        EXPECT_EQ(xasOutputLine(file.outFile.get(), std::string{text}.c_str(), false), 0);
        return xasSaveCfgFile(&file);
    }

    [[nodiscard]] XasLogLine aboutLive(const std::string &what) const
    {
        return xasErrorLine(what + " \"" + live() + "\"\n");
    }

    XasLogCapture log;
    XasCfgFile cf;
};

using CfgOpen = CfgFile;
using CfgSave = CfgFile;
using CfgRestore = CfgFile;

} // namespace

TEST_F(CfgOpen, ForEditingFailsWhenTheFileIsNotThere)
{
    EXPECT_EQ(xasCfgOpenFiles(live().c_str(), &cf), 1);
    EXPECT_THAT(log.lines(), ElementsAre(aboutLive("Error opening config file")));
    EXPECT_EQ(cf.inFile, nullptr);
    EXPECT_EQ(cf.outFile, nullptr);
    EXPECT_THAT(dir.names(), IsEmpty());
}

TEST_F(CfgOpen, ForEditingFailsWhenTheTemporaryCannotBeMade)
{
    dir.write("live", "old\n");
    const XasFault fault{"open", EACCES, 1}; // the first one is the live file's
    EXPECT_EQ(xasCfgOpenFiles(live().c_str(), &cf), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error opening output file \"" + dir.path("live.tmp") + "\"\n")));
    EXPECT_EQ(cf.inFile, nullptr);
    EXPECT_EQ(cf.outFile, nullptr);
}

TEST_F(CfgOpen, ForRegenerationFailsWhenTheTemporaryCannotBeMade)
{
    EXPECT_EQ(xasCfgOpenOutFile(dir.path("missing/live").c_str(), &cf), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error opening output file \"" +
                                                      dir.path("missing/live.tmp") + "\"\n")));
    EXPECT_EQ(cf.outFile, nullptr);
}

TEST_F(CfgOpen, FailsWhenTheTemporaryCannotBecomeAStream)
{
    const XasFault fault{"fdopen", ENOMEM};
    EXPECT_EQ(xasCfgOpenOutFile(live().c_str(), &cf), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error opening output file \"" + dir.path("live.tmp") + "\"\n")));
}

TEST_F(CfgOpen, NeedsNoLiveFileForRegeneration)
{
    EXPECT_EQ(xasCfgOpenOutFile(live().c_str(), &cf), 0);
    EXPECT_EQ(cf.inFile, nullptr);
    EXPECT_NE(cf.outFile, nullptr);
    EXPECT_EQ(cf.cfgFileName, live());
    EXPECT_EQ(cf.tmpFileName, live() + ".tmp");
    EXPECT_THAT(dir.names(), ElementsAre("live.tmp"));
}

TEST_F(CfgOpen, RemovesAStaleTemporary)
{
    dir.write("live.tmp", "left behind, longer than what is written now\n");
    EXPECT_EQ(replace("new\n"), 0);
    EXPECT_EQ(dir.read("live"), "new\n");
}

TEST_F(CfgOpen, NeverFollowsALinkThatStandsAtTheTemporarysPlace)
{
    dir.write("victim", "precious\n");
    ASSERT_EQ(::symlink("victim", dir.path("live.tmp").c_str()), 0);
    EXPECT_EQ(replace("new\n"), 0);
    EXPECT_EQ(dir.read("victim"), "precious\n");
    EXPECT_EQ(dir.read("live"), "new\n");
}

TEST_F(CfgOpen, TakesADirectoryForReadingAsAnEmptyFile)
{
    ASSERT_TRUE(std::filesystem::create_directory(live()));
    EXPECT_EQ(xasCfgOpenFiles(live().c_str(), &cf), 0);
    char line[16];
    EXPECT_EQ(std::fgets(line, sizeof line, cf.inFile.get()), nullptr);
}

TEST(OutputLine, FailsWhenTheMediumIsFull)
{
    const XasLogCapture log;
    const XasFile full{std::fopen("/dev/full", "we")};
    std::setvbuf(full.get(), nullptr, _IONBF, 0);
    EXPECT_EQ(xasOutputLine(full.get(), "line\n", false), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error printing line to file\n")));
}

TEST_F(CfgFile, WritesLinesAsTheyAreOrCommentedOut)
{
    ASSERT_EQ(xasCfgOpenOutFile(live().c_str(), &cf), 0);
    EXPECT_EQ(xasOutputLine(cf.outFile.get(), "plain %s\n", false), 0);
    EXPECT_EQ(xasOutputLine(cf.outFile.get(), "comment %d\n", true), 0);
    EXPECT_EQ(xasOutputLine(cf.outFile.get(), "no line feed", true), 0);
    EXPECT_EQ(xasOutputLine(cf.outFile.get(), "", false), 0);
    EXPECT_EQ(xasSaveCfgFile(&cf), 0);
    EXPECT_EQ(dir.read("live"), "plain %s\n#comment %d\n#no line feed");
}

TEST_F(CfgFile, ThatIsAbandonedLeavesItsTemporaryAndTheLiveFile)
{
    dir.write("live", "old\n");
    ASSERT_EQ(xasCfgOpenFiles(live().c_str(), &cf), 0);
    ASSERT_EQ(xasOutputLine(cf.outFile.get(), "so far\n", false), 0);
    xasCloseCfgFile(&cf);
    EXPECT_EQ(cf.inFile, nullptr);
    EXPECT_EQ(cf.outFile, nullptr);
    EXPECT_EQ(dir.read("live"), "old\n");
    EXPECT_EQ(dir.read("live.tmp"), "so far\n");
    EXPECT_THAT(dir.names(), ElementsAre("live", "live.tmp"));
    xasCloseCfgFile(&cf);
}

TEST_F(CfgSave, LeavesTheLiveFileWhenTheNewOneCannotBeWrittenToItsEnd)
{
    dir.write("live", "old\n");
    {
        const XasFault fault{"fflush", EIO, 1}; // the first one is the line's
        EXPECT_EQ(replace("new\n"), 1);
    }
    {
        const XasFault fault{"fsync", EIO};
        EXPECT_EQ(replace("new\n"), 1);
    }
    EXPECT_EQ(dir.read("live"), "old\n");
    EXPECT_FALSE(dir.has("live.old"));
}

TEST_F(CfgSave, ReportsBothFailuresWhenNothingCanBeRenamed)
{
    dir.write("live", "old\n");
    const XasFault fault{"rename", EIO};
    EXPECT_EQ(replace("new\n"), 1);
    EXPECT_THAT(log.lines(), ElementsAre(aboutLive("Error renaming old config file"),
                                         aboutLive("Error renaming new config file")));
    EXPECT_EQ(dir.read("live"), "old\n");
}

TEST_F(CfgSave, NeverRemovesADirectoryThatStandsInTheFilesPlace)
{
    dir.write("live/inside", "kept\n");
    EXPECT_EQ(replace("new\n"), 1);
    EXPECT_THAT(log.lines(), ElementsAre(aboutLive("Error renaming new config file")));
    EXPECT_EQ(dir.read("live/inside"), "kept\n");
    EXPECT_FALSE(dir.has("live.old"));
}

TEST_F(CfgSave, MakesNoBackupWhenThereWasNoLiveFile)
{
    EXPECT_EQ(replace("new\n"), 0);
    EXPECT_EQ(dir.read("live"), "new\n");
    EXPECT_THAT(dir.names(), ElementsAre("live"));
    EXPECT_EQ(xasRestoreCfgFile(live().c_str()), 1);
}

TEST_F(CfgSave, KeepsOnlyTheContentBeforeTheLastSave)
{
    dir.write("live", "first\n");
    EXPECT_EQ(replace("second\n"), 0);
    EXPECT_EQ(replace("third\n"), 0);
    EXPECT_EQ(dir.read("live"), "third\n");
    EXPECT_EQ(dir.read("live.old"), "second\n");
    EXPECT_THAT(dir.names(), ElementsAre("live", "live.old"));
}

TEST_F(CfgSave, MovesTheLiveFileAsideWhereTheFileSystemHasNoHardLinks)
{
    for (const int error : {EPERM, EOPNOTSUPP, ENOSYS, EMLINK}) {
        dir.write("live", "old\n");
        const XasFault fault{"link", error};
        EXPECT_EQ(replace("new\n"), 0);
        EXPECT_EQ(dir.read("live"), "new\n");
        EXPECT_EQ(dir.read("live.old"), "old\n");
    }
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(CfgSave, BringsTheFileThatWasMovedAsideBackWhenTheNewOneDoesNotCome)
{
    dir.write("live", "old\n");
    const XasFault noLinks{"link", EPERM};
    const XasFault fault{"rename", EIO, 1, 1}; // the first one moves the live file aside
    EXPECT_EQ(replace("new\n"), 1);
    EXPECT_THAT(log.lines(), ElementsAre(aboutLive("Error renaming new config file")));
    EXPECT_EQ(dir.read("live"), "old\n");
    EXPECT_FALSE(dir.has("live.old"));
}

TEST_F(CfgSave, FailsWhenTheLiveFileCannotEvenBeMovedAside)
{
    dir.write("live", "old\n");
    const XasFault noLinks{"link", EMLINK};
    const XasFault fault{"rename", EIO, 0, 1};
    EXPECT_EQ(replace("new\n"), 1);
    EXPECT_THAT(log.lines(), ElementsAre(aboutLive("Error renaming old config file")));
    EXPECT_FALSE(dir.has("live.old"));
}

TEST_F(CfgSave, TakesTheNameThatAnInterruptedSaveLeft)
{
    dir.write("live", "old\n");
    dir.write("live.old.tmp", "left\n");
    EXPECT_EQ(replace("new\n"), 0);
    EXPECT_EQ(dir.read("live.old"), "old\n");
    EXPECT_THAT(dir.names(), ElementsAre("live", "live.old"));
    dir.write("live.old.tmp", "left\n");
    const XasFault fault{"unlink", EACCES};
    EXPECT_EQ(replace("newer\n"), 1);
    EXPECT_THAT(log.lines(), ElementsAre(aboutLive("Error renaming old config file")));
    EXPECT_EQ(dir.read("live.old"), "old\n") << "the earlier backup";
}

TEST_F(CfgSave, KeepsTheModeOfTheLiveFileWhateverTheUmaskIs)
{
    ::umask(077);
    for (const mode_t mode : {0600U, 0640U, 0755U, 0444U}) {
        dir.write("live", "old\n", mode);
        EXPECT_EQ(replace("new\n"), 0);
        EXPECT_EQ(xasModeOf(live()), mode);
        EXPECT_EQ(xasModeOf(dir.path("live.old")), mode);
    }
}

TEST_F(CfgSave, KeepsTheOwnerOfTheLiveFile)
{
    constexpr uid_t USER = 1234;
    constexpr gid_t GROUP = 4321;
    dir.write("live", "old\n");
    if (::chown(live().c_str(), USER, GROUP) != 0)
        GTEST_SKIP() << "only root gives files away";
    EXPECT_EQ(replace("new\n"), 0);
    struct stat status {};
    ASSERT_EQ(::stat(live().c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, USER);
    EXPECT_EQ(status.st_gid, GROUP);
}

TEST_F(CfgSave, ReplacesAFileWhoseOwnerCannotBeKeptAllTheSame)
{
    dir.write("live", "old\n", 0640);
    const XasFault fault{"fchown", EPERM};
    EXPECT_EQ(replace("new\n"), 0);
    EXPECT_EQ(fault.calls(), 1U);
    EXPECT_EQ(dir.read("live"), "new\n");
    EXPECT_EQ(xasModeOf(live()), 0640U);
}

TEST_F(CfgSave, MakesANewFileReadableForAllWhateverTheUmaskIs)
{
    for (const mode_t mask : {0U, 022U, 077U}) {
        ::umask(mask);
        std::remove(live().c_str());
        EXPECT_EQ(replace("new\n"), 0);
        EXPECT_EQ(xasModeOf(live()), 0644U);
    }
}

TEST_F(CfgSave, LetsNobodyElseReadAFileThatHoldsASecretFromItsBeginning)
{
    ::umask(0);
    ASSERT_EQ(xasCfgOpenOutFile(live().c_str(), &cf, XasSecrecy::secret), 0);
    EXPECT_EQ(xasModeOf(dir.path("live.tmp")), 0600U);
    EXPECT_EQ(xasSaveCfgFile(&cf), 0);
    EXPECT_EQ(xasModeOf(live()), 0600U);
    dir.write("live", "old\n", 0644);
    EXPECT_EQ(replace("secret\n", XasSecrecy::secret), 0);
    EXPECT_EQ(xasModeOf(live()), 0600U);
}

TEST_F(CfgRestore, FailsWithoutABackup)
{
    dir.write("live", "new\n");
    EXPECT_EQ(xasRestoreCfgFile(live().c_str()), 1);
    EXPECT_THAT(log.lines(), ElementsAre(aboutLive("Error restoring old config file")));
    EXPECT_EQ(dir.read("live"), "new\n");
}

TEST_F(CfgRestore, BringsTheBackupBackOnce)
{
    dir.write("live", "old\n");
    ASSERT_EQ(replace("new\n"), 0);
    EXPECT_EQ(xasRestoreCfgFile(live().c_str()), 0);
    EXPECT_EQ(dir.read("live"), "old\n");
    EXPECT_THAT(dir.names(), ElementsAre("live"));
    EXPECT_EQ(xasRestoreCfgFile(live().c_str()), 1);
}

TEST_F(CfgRestore, LeavesNoBackupAlsoWhenTheNewFileNeverCameIntoPlace)
{
    dir.write("live", "old\n");
    {
        const XasFault fault{"rename", EIO, 1};
        ASSERT_EQ(replace("new\n"), 1);
    }
    EXPECT_EQ(xasRestoreCfgFile(live().c_str()), 0);
    EXPECT_EQ(dir.read("live"), "old\n");
    EXPECT_FALSE(dir.has("live.old"));
}

TEST(FileHasSlash, TellsAPathFromAName)
{
    EXPECT_EQ(xasFileHasSlash(nullptr), 0);
    EXPECT_EQ(xasFileHasSlash(""), 0);
    EXPECT_EQ(xasFileHasSlash("host.example.org"), 0);
    EXPECT_EQ(xasFileHasSlash("/var/log/x"), 1);
    EXPECT_EQ(xasFileHasSlash("x/"), 1);
}

TEST(CfgNumber, IsNoneForAnotherKeyAndLeavesTheValueAlone)
{
    std::uint32_t value = 7;
    EXPECT_EQ(xasGetCfgNumber("timeout", "port = 5\n", &value), 0);
    EXPECT_EQ(xasGetCfgNumber("timeout", "time", &value), 0);
    EXPECT_EQ(xasGetCfgNumber("timeout", "", &value), 0);
    EXPECT_EQ(xasGetCfgNumber("timeout", "#timeout=5", &value), 0);
    EXPECT_EQ(value, 7U);
}

TEST(CfgNumber, IsNoneWithoutASecondPieceOrADigitInIt)
{
    std::uint32_t value = 7;
    EXPECT_EQ(xasGetCfgNumber("timeout", "timeout\n", &value), 0);
    EXPECT_EQ(xasGetCfgNumber("timeout", "timeout=", &value), 0);
    EXPECT_EQ(xasGetCfgNumber("timeout", "timeout = none\n", &value), 0);
    EXPECT_EQ(value, 7U);
}

TEST(CfgNumber, StandsBetweenTheFirstAndTheLastDigitBehindTheEqualsSign)
{
    std::uint32_t value = 0;
    EXPECT_EQ(xasGetCfgNumber("timeout", "  timeout = 30s\n", &value), 1);
    EXPECT_EQ(value, 30U);
    EXPECT_EQ(xasGetCfgNumber("timeout", "\t\ntimeout=x12y34z", &value), 1);
    EXPECT_EQ(value, 12U) << "the number ends where its digits do";
    EXPECT_EQ(xasGetCfgNumber("timeout", "timeout=-5=9", &value), 1);
    EXPECT_EQ(value, 5U);
}

TEST(CfgNumber, ComparesTheKeysLengthOnly)
{
    std::uint32_t value = 0;
    EXPECT_EQ(xasGetCfgNumber("timeout", "timeouts=5", &value), 1);
    EXPECT_EQ(value, 5U);
}

TEST(ReplaceString, RefusesAnEmptyPatternAndChangesNothing)
{
    std::string text = "text";
    EXPECT_EQ(xasReplaceString(text, "", "x"), 1);
    EXPECT_EQ(xasReplaceString(text, nullptr, "x"), 1);
    EXPECT_EQ(text, "text");
}

TEST(ReplaceString, ReplacesEveryOccurrenceFromLeftToRight)
{
    std::string text = "aXbXc";
    EXPECT_EQ(xasReplaceString(text, "X", "--"), 0);
    EXPECT_EQ(text, "a--b--c");
    text = "aaaa";
    EXPECT_EQ(xasReplaceString(text, "aaa", "b"), 0);
    EXPECT_EQ(text, "ba");
    text = "none";
    EXPECT_EQ(xasReplaceString(text, "X", "y"), 0);
    EXPECT_EQ(text, "none");
}

TEST(ReplaceString, DoesNotReplaceWhatItPutIn)
{
    std::string text = "a.a";
    EXPECT_EQ(xasReplaceString(text, "a", "aa"), 0);
    EXPECT_EQ(text, "aa.aa");
}

TEST(ReplaceString, DeletesForANullReplacement)
{
    std::string text = "[host] = [host]\n";
    EXPECT_EQ(xasReplaceString(text, "[host]", nullptr), 0);
    EXPECT_EQ(text, " = \n");
    EXPECT_EQ(xasReplaceString(text, " = ", ""), 0);
    EXPECT_EQ(text, "\n");
}

TEST(ReplaceString, WorksOnAtMost5000Characters)
{
    std::string text = std::string(4999, '.') + "XX";
    EXPECT_EQ(xasReplaceString(text, "X", "yy"), 0);
    EXPECT_EQ(text, std::string(4999, '.') + "yy");
}
