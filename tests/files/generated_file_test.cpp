// Files that are written directly: their modes, and failures.
#include "files/generated_file.h"

#include "support/faults.h"
#include "support/files.h"

namespace {

class GeneratedFile : public XasFilesTest {
  protected:
    GeneratedFile() : before{::umask(0)} {}
    ~GeneratedFile() override { ::umask(before); }

    /** Writes "new" and closes; false when any of it fails. */
    static bool writeNew(const std::string &path, XasFileAccess access)
    {
        XasFile file = xasOpenGeneratedFile(path, access);
        return file && xasWriteGenerated(file.get(), "new") && xasCloseGenerated(std::move(file));
    }

    mode_t before;
};

} // namespace

TEST_F(GeneratedFile, IsRefusedWhereADirectoryStands)
{
    dir.write("busy/file", "");
    EXPECT_FALSE(xasOpenGeneratedFile(dir.path("busy"), XasFileAccess::kept));
    EXPECT_FALSE(xasOpenGeneratedFile(dir.path("missing/file"), XasFileAccess::kept));
    EXPECT_FALSE(xasOpenGrowingFile(dir.path("missing/file")));
}

TEST_F(GeneratedFile, FollowsALinkUnlessItIsToBeRefused)
{
    const std::string target = dir.write("target", "old");
    ASSERT_EQ(::symlink(target.c_str(), dir.path("link").c_str()), 0);
    EXPECT_FALSE(xasOpenGeneratedFile(dir.path("link"), XasFileAccess::kept, XasFileLink::refused));
    EXPECT_EQ(dir.read("target"), "old");
    EXPECT_TRUE(writeNew(dir.path("link"), XasFileAccess::kept));
    EXPECT_EQ(dir.read("target"), "new");
}

TEST_F(GeneratedFile, StaysAsItWasWhenItCannotBeClosedToOthers)
{
    const std::string path = dir.write("file", "old");
    const XasFault fault{"fchmod", EPERM};
    EXPECT_FALSE(xasOpenGeneratedFile(path, XasFileAccess::owner));
    EXPECT_EQ(dir.read("file"), "old");
}

TEST_F(GeneratedFile, TellsThatItsDiskIsFull)
{
    XasFile file = xasOpenGeneratedFile("/dev/full", XasFileAccess::kept);
    ASSERT_TRUE(file);
    EXPECT_FALSE(xasWriteGenerated(file.get(), "text"));
}

TEST_F(GeneratedFile, IsReadableByAllWhenNewAndKeepsTheModeItHas)
{
    EXPECT_TRUE(writeNew(dir.path("fresh"), XasFileAccess::kept));
    EXPECT_EQ(xasModeOf(dir.path("fresh")), 0644U);
    EXPECT_TRUE(writeNew(dir.write("file", "longer old text", 0640), XasFileAccess::kept));
    EXPECT_EQ(xasModeOf(dir.path("file")), 0640U);
    EXPECT_EQ(dir.read("file"), "new");
}

TEST_F(GeneratedFile, IsOpenedToEverybodyOnRequest)
{
    EXPECT_TRUE(writeNew(dir.write("file", "old", 0600), XasFileAccess::everybody));
    EXPECT_EQ(xasModeOf(dir.path("file")), 0644U);
    EXPECT_TRUE(writeNew(dir.path("fresh"), XasFileAccess::everybody));
    EXPECT_EQ(xasModeOf(dir.path("fresh")), 0644U);
}

TEST_F(GeneratedFile, IsTheOwnersAloneBeforeItsFirstByteWhenItHoldsASecret)
{
    for (const char *name : {"fresh", "file"}) {
        if (name == std::string{"file"})
            dir.write(name, "old", 0666);
        XasFile file = xasOpenGeneratedFile(dir.path(name), XasFileAccess::owner);
        ASSERT_TRUE(file);
        EXPECT_EQ(xasModeOf(dir.path(name)), 0600U) << name;
        EXPECT_EQ(dir.read(name), "");
        EXPECT_TRUE(xasWriteGenerated(file.get(), "secret"));
        EXPECT_TRUE(xasCloseGenerated(std::move(file)));
        EXPECT_EQ(xasModeOf(dir.path(name)), 0600U) << name;
        EXPECT_EQ(dir.read(name), "secret");
    }
}

TEST_F(GeneratedFile, GrowsAtItsEndAndIsNotOpenToOthersForWriting)
{
    for (const char *text : {"a\n", "b\n"}) {
        XasFile file = xasOpenGrowingFile(dir.path("list"));
        ASSERT_TRUE(file);
        EXPECT_TRUE(xasWriteGenerated(file.get(), text));
        EXPECT_TRUE(xasCloseGenerated(std::move(file)));
    }
    EXPECT_EQ(dir.read("list"), "a\nb\n");
    EXPECT_EQ(xasModeOf(dir.path("list")), 0644U);
}
