// Files that are generated directly: replaced whole or not at all; their modes, and failures.
#include "files/generated_file.h"

#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
namespace {

class GeneratedFile : public XasFilesTest {
  protected:
    GeneratedFile() : before{::umask(0)} {}
    ~GeneratedFile() override { ::umask(before); }

    static int generate(const std::string &path, XasFileAccess access = XasFileAccess::kept,
                        XasFileLink link = XasFileLink::followed)
    {
        return xasGenerateFile(path, "new", access, link);
    }

    static XasLogLine notOpened(const std::string &path)
    {
        return xasErrorLine("Error opening config file \"" + path + "\"\n");
    }

    mode_t before;
    XasLogCapture log;
};

const XasLogLine NOT_WRITTEN = xasErrorLine("Error printing line to file\n");

} // namespace

TEST_F(GeneratedFile, IsRefusedWhereNoRegularFileCanStand)
{
    dir.write("busy/file", "");
    ASSERT_EQ(::mkfifo(dir.path("pipe").c_str(), 0600), 0);
    for (const std::string &path :
         {dir.path("busy"), dir.path("missing/file"), dir.path("pipe"), dir.path("busy/file/inside")}) {
        EXPECT_EQ(generate(path), 1);
        EXPECT_THAT(log.take(), ElementsAre(notOpened(path)));
    }
    EXPECT_THAT(dir.names(), ElementsAre("busy", "pipe"));
}

TEST_F(GeneratedFile, KeepsItsOldContentUntilTheNewOneIsWholeAndOnItsMedium)
{
    const std::string path = dir.write("file", "old");
    XasGeneratedFile file{path, XasFileAccess::kept};
    ASSERT_TRUE(file);
    EXPECT_TRUE(file.write("new"));
    EXPECT_EQ(dir.read("file"), "old");
    const XasCallOrder order;
    EXPECT_TRUE(file.save());
    EXPECT_THAT(order.calls(), ElementsAre("fsync " + path + ".tmp", "rename " + path + ".tmp -> " + path));
    EXPECT_EQ(dir.read("file"), "new");
}

TEST_F(GeneratedFile, StaysAsItWasWhateverFails)
{
    const std::string path = dir.write("file", "old", 0640);
    for (const char *call : {"fsync", "rename"}) {
        const XasFault fault{call, EIO};
        EXPECT_EQ(generate(path), 1) << call;
        EXPECT_THAT(log.take(), ElementsAre(NOT_WRITTEN)) << call;
    }
    {
        const XasFault fault{"fchmod", EPERM};
        EXPECT_EQ(generate(path, XasFileAccess::owner), 1);
        EXPECT_THAT(log.take(), ElementsAre(notOpened(path))) << "it cannot be closed to others";
    }
    EXPECT_EQ(dir.read("file"), "old");
    EXPECT_EQ(xasModeOf(path), 0640U);
    EXPECT_THAT(dir.names(), ElementsAre("file"));
}

TEST_F(GeneratedFile, LeavesNoTraceWhenItIsGivenUp)
{
    const std::string path = dir.write("file", "old");
    {
        XasGeneratedFile file{path, XasFileAccess::kept};
        ASSERT_TRUE(file);
        EXPECT_TRUE(file.write("new"));
    }
    EXPECT_THAT(dir.names(), ElementsAre("file"));
    EXPECT_EQ(dir.read("file"), "old");
}

TEST_F(GeneratedFile, IsReplacedBesideWhatALinkLeadsTo)
{
    dir.write("elsewhere/target", "old", 0640);
    std::filesystem::create_symlink("elsewhere/second", dir.path("link"));
    std::filesystem::create_symlink("target", dir.path("elsewhere/second"));
    const XasCallOrder order;
    EXPECT_EQ(generate(dir.path("link")), 0);
    EXPECT_EQ(order.calls().back(),
              "rename " + dir.path("elsewhere/target") + ".tmp -> " + dir.path("elsewhere/target"));
    EXPECT_EQ(dir.read("elsewhere/target"), "new");
    EXPECT_EQ(xasModeOf(dir.path("elsewhere/target")), 0640U);
    EXPECT_EQ(std::filesystem::read_symlink(dir.path("link")), "elsewhere/second");
    EXPECT_EQ(std::filesystem::read_symlink(dir.path("elsewhere/second")), "target");
}

TEST_F(GeneratedFile, IsMadeWhereALinkLeadsToNothing)
{
    std::filesystem::create_symlink(dir.path("target"), dir.path("link"));
    EXPECT_EQ(generate(dir.path("link")), 0);
    EXPECT_EQ(dir.read("target"), "new");
}

TEST_F(GeneratedFile, IsRefusedWhereLinksLeadInACircleOrAreNotToBeFollowed)
{
    std::filesystem::create_symlink("link", dir.path("link"));
    EXPECT_EQ(generate(dir.path("link")), 1);
    dir.write("target", "old");
    std::filesystem::create_symlink("target", dir.path("other"));
    EXPECT_EQ(generate(dir.path("other"), XasFileAccess::kept, XasFileLink::refused), 1);
    EXPECT_EQ(dir.read("target"), "old");
    EXPECT_THAT(log.lines(), ElementsAre(notOpened(dir.path("link")), notOpened(dir.path("other"))));
}

TEST_F(GeneratedFile, IsReadableByAllWhenNewAndKeepsTheModeItHas)
{
    EXPECT_EQ(generate(dir.path("fresh")), 0);
    EXPECT_EQ(xasModeOf(dir.path("fresh")), 0644U);
    EXPECT_EQ(generate(dir.write("file", "longer old text", 0640)), 0);
    EXPECT_EQ(xasModeOf(dir.path("file")), 0640U);
    EXPECT_EQ(dir.read("file"), "new");
}

TEST_F(GeneratedFile, IsOpenedToEverybodyOnRequestAndNeverForWriting)
{
    for (const mode_t mode : {0600U, 0666U}) {
        EXPECT_EQ(generate(dir.write("file", "old", mode), XasFileAccess::everybody), 0);
        EXPECT_EQ(xasModeOf(dir.path("file")), 0644U);
    }
}

TEST_F(GeneratedFile, IsTheOwnersAloneBeforeItsFirstByteWhenItHoldsASecret)
{
    for (const mode_t mode : {0666U, 0400U}) {
        XasGeneratedFile file{dir.write("file", "old", mode), XasFileAccess::owner};
        ASSERT_TRUE(file);
        EXPECT_EQ(xasModeOf(dir.path("file.tmp")), 0600U);
        EXPECT_TRUE(file.write("secret"));
        EXPECT_TRUE(file.save());
        EXPECT_EQ(xasModeOf(dir.path("file")), 0600U);
        EXPECT_EQ(dir.read("file"), "secret");
    }
}

TEST_F(GeneratedFile, GrowsByBeingReplacedWhole)
{
    const std::string path = dir.path("list");
    EXPECT_EQ(xasAppendToFile(path, "a\n"), 0);
    const XasCallOrder order;
    EXPECT_EQ(xasAppendToFile(path, "b\n"), 0);
    EXPECT_THAT(order.calls(), ElementsAre("fsync " + path + ".tmp", "rename " + path + ".tmp -> " + path));
    EXPECT_EQ(dir.read("list"), "a\nb\n");
    EXPECT_EQ(xasModeOf(path), 0644U);
    EXPECT_EQ(xasAppendToFile(path, "c\n", XasFileAccess::owner), 0);
    EXPECT_EQ(dir.read("list"), "a\nb\nc\n");
    EXPECT_EQ(xasModeOf(path), 0600U);
}

TEST_F(GeneratedFile, DoesNotGrowWhenItsOldContentCannotBeHad)
{
    const std::string large = dir.write("large", "");
    std::filesystem::resize_file(large, (16 << 20) + 1);
    EXPECT_EQ(xasAppendToFile(large, "more"), 1);
    EXPECT_EQ(std::filesystem::file_size(large), (16U << 20) + 1);
    EXPECT_THAT(dir.names(), ElementsAre("large"));
    EXPECT_THAT(log.lines(), IsEmpty());
}
