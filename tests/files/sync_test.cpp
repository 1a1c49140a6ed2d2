// Directories are synced once each when a message is done.
#include "files/sync.h"

#include "files/config_file.h"
#include "files/generated_file.h"
#include "support/faults.h"
#include "support/files.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Syncing : public XasFilesTest {
  protected:
    Syncing() { xasSyncTouched(); }

    /** The calls of what is synced at last. */
    static std::vector<std::string> synced()
    {
        const XasCallOrder order;
        xasSyncTouched();
        return order.calls();
    }
};

} // namespace

TEST_F(Syncing, IsOfNothingWhenNothingWasTouched)
{
    EXPECT_THAT(synced(), IsEmpty());
}

TEST_F(Syncing, IsOfEachDirectoryOnce)
{
    dir.write("one/file", "");
    dir.write("two/file", "");
    for (const char *name : {"one/file", "two/file", "one/other", "two/file"})
        xasNoteTouched(dir.path(name));
    EXPECT_THAT(synced(), ElementsAre("fsync " + dir.path("one"), "fsync " + dir.path("two")));
    EXPECT_THAT(synced(), IsEmpty());
}

TEST_F(Syncing, IsOfTheWorkingDirectoryForANameAlone)
{
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(dir.path());
    xasNoteTouched("file");
    EXPECT_THAT(synced(), ElementsAre("fsync " + dir.path()));
    std::filesystem::current_path(before);
}

TEST_F(Syncing, PassesOverADirectoryThatIsGone)
{
    xasNoteTouched(dir.path("gone/file"));
    xasNoteTouched(dir.path("file"));
    EXPECT_THAT(synced(), ElementsAre("fsync " + dir.path()));
}

TEST_F(Syncing, OfAFileThatACommandWroteIsAtOnceAndOfItsDirectoryLater)
{
    const std::string path = dir.write("file", "text");
    {
        const XasCallOrder order;
        xasSyncFile(path.c_str());
        EXPECT_THAT(order.calls(), ElementsAre("fsync " + path));
    }
    EXPECT_THAT(synced(), ElementsAre("fsync " + dir.path()));
}

TEST_F(Syncing, FollowsEveryChangeOfAName)
{
    const std::string path = dir.write("file", "old");
    const auto save = [&] {
        XasCfgFile cf;
        EXPECT_EQ(xasCfgOpenFiles(path.c_str(), &cf), 0);
        EXPECT_EQ(xasSaveCfgFile(&cf), 0);
    };
    const std::vector<std::function<void()>> changes = {
        save,
        [&] { EXPECT_EQ(xasRestoreCfgFile(path.c_str()), 0); },
        [&] { EXPECT_EQ(xasEmptyCfgFile(path.c_str()), 0); },
        [&] { EXPECT_EQ(xasGenerateFile(path, "new", XasFileAccess::kept), 0); },
        [&] { EXPECT_EQ(xasAppendToFile(path, "more"), 0); },
        [&] { xasRemoveFile(path.c_str()); },
    };
    for (std::size_t i = 0; i < changes.size(); ++i) {
        changes[i]();
        EXPECT_THAT(synced(), ElementsAre("fsync " + dir.path())) << i;
    }
}

TEST_F(Syncing, OfASavedFileComesBeforeItsRename)
{
    const std::string path = dir.write("file", "old");
    XasCfgFile cf;
    ASSERT_EQ(xasCfgOpenFiles(path.c_str(), &cf), 0);
    const XasCallOrder order;
    EXPECT_EQ(xasSaveCfgFile(&cf), 0);
    xasSyncTouched();
    EXPECT_THAT(order.calls(),
                ElementsAre("fsync " + path + ".tmp", "rename " + path + ".old.tmp -> " + path + ".old",
                            "rename " + path + ".tmp -> " + path, "fsync " + dir.path()));
}

TEST_F(Syncing, OfAnEmptiedFileComesBeforeItsRename)
{
    const std::string path = dir.write("file", "old");
    const XasCallOrder order;
    EXPECT_EQ(xasEmptyCfgFile(path.c_str()), 0);
    EXPECT_THAT(order.calls(),
                ElementsAre("rename " + path + ".old.tmp -> " + path + ".old", "fsync " + path + ".empty",
                            "rename " + path + ".empty -> " + path));
}
