// New files: created exclusively, closed to others until their mode is set; working files.
#include "files/new_file.h"

#include "support/faults.h"
#include "support/files.h"

#include <cerrno>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

using testing::ElementsAre;

namespace {

class NewFile : public XasFilesTest {
  protected:
    NewFile() : before{::umask(0)} {}
    ~NewFile() override { ::umask(before); }

    mode_t before;
};

using WorkingFile = NewFile;

} // namespace

TEST_F(NewFile, TakesThePlaceOfALinkAndOfAStaleFileAndTouchesNothingElse)
{
    dir.write("victim", "precious");
    std::filesystem::create_symlink("victim", dir.path("file"));
    EXPECT_TRUE(xasCreateFile(dir.path("file"), dir.path("live"), XasFileAccess::kept));
    EXPECT_EQ(dir.read("victim"), "precious");
    EXPECT_FALSE(std::filesystem::is_symlink(dir.path("file")));
    const std::filesystem::path other = dir.path("other");
    std::filesystem::create_hard_link(dir.path("victim"), other);
    EXPECT_TRUE(xasCreateFile(other, dir.path("live"), XasFileAccess::kept));
    EXPECT_EQ(dir.read("other"), "");
    EXPECT_EQ(dir.read("victim"), "precious");
}

TEST_F(NewFile, LeavesNothingWhenItCannotBeMadeAsItMustBe)
{
    for (const char *call : {"fdopen", "fchmod"}) {
        const XasFault fault{call, EPERM};
        EXPECT_FALSE(xasCreateFile(dir.path("file"), dir.path("live"), XasFileAccess::owner)) << call;
    }
    EXPECT_TRUE(dir.names().empty());
}

TEST_F(NewFile, IsMadeWithoutItsModeOnlyWhereTheMediumKnowsNoModes)
{
    for (const int error : {EPERM, EOPNOTSUPP, ENOSYS, EIO, ENOMEM, EACCES}) {
        const XasFault fault{"fchmod", error};
        const bool isMade = xasCreateFile(dir.path("file"), dir.path("live"), XasFileAccess::kept) != nullptr;
        EXPECT_EQ(isMade, error == EPERM || error == EOPNOTSUPP || error == ENOSYS) << error;
        EXPECT_EQ(dir.has("file"), isMade) << error;
        std::filesystem::remove(dir.path("file"));
    }
}

TEST_F(NewFile, TellsHowMuchOfItsTextWasWritten)
{
    const XasFile full{std::fopen("/dev/full", "we")};
    EXPECT_EQ(xasWriteText(full.get(), "text"), 0U);
    XasFile file = xasCreateFile(dir.path("file"), dir.path("live"), XasFileAccess::kept);
    EXPECT_EQ(xasWriteText(file.get(), "text"), 4U);
    EXPECT_TRUE(xasCloseWritten(file));
    EXPECT_EQ(file, nullptr);
    EXPECT_EQ(dir.read("file"), "text");
}

TEST_F(NewFile, IsKeptWithoutBeingSyncedOnlyWhereTheMediumKnowsNoSyncing)
{
    for (const int error : {EINVAL, ENOTSUP, EIO, ENOSPC}) {
        XasFile file = xasCreateFile(dir.path("file"), dir.path("live"), XasFileAccess::kept);
        const XasFault fault{"fsync", error};
        EXPECT_EQ(xasCloseWritten(file), error == EINVAL || error == ENOTSUP) << error;
    }
}

TEST_F(WorkingFile, IsMadeAnewAndReadableByAllWhateverTheUmaskIs)
{
    dir.write("victim", "precious", 0600);
    for (const mode_t mask : {0U, 077U}) {
        ::umask(mask);
        std::filesystem::remove(dir.path("work"));
        std::filesystem::create_symlink("victim", dir.path("work"));
        EXPECT_EQ(xasMakeWorkingFile(dir.path("work"), "text\n"), 0);
        EXPECT_EQ(xasModeOf(dir.path("work")), 0644U);
        EXPECT_EQ(dir.read("work"), "text\n");
    }
    EXPECT_EQ(dir.read("victim"), "precious");
}

TEST_F(WorkingFile, IsNotMadeWhereADirectoryStands)
{
    dir.write("work/inside", "kept");
    EXPECT_EQ(xasMakeWorkingFile(dir.path("work"), "text"), 1);
    EXPECT_EQ(dir.read("work/inside"), "kept");
}

TEST_F(WorkingFile, IsOpenedAtItsEndWhenItIsOurs)
{
    const std::string path = dir.write("script", "a\n", 0755);
    XasFile file = xasOpenWorkingFile(path);
    ASSERT_TRUE(file);
    std::fputs("b\n", file.get());
    file.reset();
    EXPECT_EQ(dir.read("script"), "a\nb\n");
}

TEST_F(WorkingFile, IsRefusedUnlessItIsARegularFileOfOneNameThatNobodyElseMayWrite)
{
    EXPECT_FALSE(xasOpenWorkingFile(dir.path("missing")));
    const std::string path = dir.write("script", "a\n", 0755);
    for (const mode_t mode : {0775U, 0757U}) {
        ::chmod(path.c_str(), mode);
        EXPECT_FALSE(xasOpenWorkingFile(path)) << mode;
    }
    ::chmod(path.c_str(), 0755);
    std::filesystem::create_symlink("script", dir.path("link"));
    EXPECT_FALSE(xasOpenWorkingFile(dir.path("link")));
    std::filesystem::create_hard_link(path, dir.path("other"));
    EXPECT_FALSE(xasOpenWorkingFile(path));
    std::filesystem::remove(dir.path("other"));
    EXPECT_TRUE(xasOpenWorkingFile(path));
    ASSERT_EQ(::mkfifo(dir.path("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(xasOpenWorkingFile(dir.path("pipe"))) << "and nobody is waited for";
    EXPECT_FALSE(xasOpenWorkingFile("/dev/null"));
}
