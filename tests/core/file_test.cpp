// What is read: regular files that are not too large, whole, and nobody is waited for.
#include "core/file.h"

#include "support/faults.h"
#include "support/files.h"
#include "support/growth.h"
#include "support/log.h"

#include <cerrno>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ReadFile : public XasFilesTest {
  protected:
    std::string text = "untouched";
    XasLogCapture log;
};

} // namespace

TEST_F(ReadFile, IsNoneWhenItIsNotThere)
{
    EXPECT_EQ(xasReadWhole(dir.path("missing"), text), XasReading::notOpened);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(text, "untouched");
    EXPECT_THAT(log.lines(), IsEmpty()) << "the callers have texts of their own";
}

TEST_F(ReadFile, IsReadToItsEndAlsoWhereItDoesNotSayHowLongItIs)
{
    const std::string all(50'000, 'x'); // less than a pipe holds
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    ASSERT_EQ(::write(ends[1], all.data(), all.size()), static_cast<ssize_t>(all.size()));
    ::close(ends[1]);
    const XasFile file{::fdopen(ends[0], "r")};
    EXPECT_EQ(xasReadAll(file.get()), all);
}

TEST_F(ReadFile, IsNoPipeAndNobodyIsWaitedForWhoMayWriteIt)
{
    ASSERT_EQ(::mkfifo(dir.path("pipe").c_str(), 0644), 0);
    EXPECT_FALSE(xasOpenFile(dir.path("pipe")));
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(xasReadWhole(dir.path("pipe"), text), XasReading::notOpened);
}

TEST_F(ReadFile, IsNoDevice)
{
    EXPECT_FALSE(xasOpenFile("/dev/zero"));
    EXPECT_FALSE(xasOpenFile("/dev/null"));
}

TEST_F(ReadFile, HasAtMost16MiB)
{
    const std::string path = dir.write("large", "begin");
    std::filesystem::resize_file(path, 16777216);
    EXPECT_EQ(xasReadWhole(path, text), XasReading::whole);
    EXPECT_EQ(text.size(), 16777216U);
    std::filesystem::resize_file(path, 16777217);
    EXPECT_EQ(xasReadWhole(path, text), XasReading::notOpened);
    EXPECT_EQ(errno, EFBIG);
}

TEST_F(ReadFile, ThatGrowsPast16MiBWhileItIsReadIsNotRead)
{
    const std::string path = dir.write("growing", "");
    const XasFile file = xasOpenFile(path);
    std::filesystem::resize_file(path, 16777217);
    EXPECT_FALSE(xasReadAll(file.get()));
}

TEST_F(ReadFile, ThatCannotBeReadToItsEndIsLoggedAndGivesNothing)
{
    std::filesystem::create_symlink("/proc/self/mem", dir.path("file")); // its first page cannot be read
    EXPECT_EQ(xasReadWhole(dir.path("file"), text), XasReading::notRead);
    EXPECT_EQ(text, "untouched");
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error reading config file \"" + dir.path("file") + "\"\n")));
}

TEST_F(ReadFile, IsEmptyOfADirectory)
{
    EXPECT_EQ(xasReadWhole(dir.path(), text), XasReading::whole);
    EXPECT_EQ(text, "");
}

TEST_F(ReadFile, IsReadWholeWithEveryByte)
{
    const std::string bytes = std::string(70000, 'x') + std::string{"\0\n\xFF", 3};
    EXPECT_EQ(xasReadWhole(dir.write("file", bytes), text), XasReading::whole);
    EXPECT_EQ(text, bytes);
}

TEST_F(ReadFile, TakesItsOwnSizeOfMemory)
{
    const XasFile file = xasOpenFile(dir.write("file", std::string(1'000'000, 'x')));
    const XasAllocated allocated = xasAllocatedBy([&] { text = xasReadAll(file.get()).value(); });
    EXPECT_EQ(allocated.blocks, 1U);
    EXPECT_LE(allocated.bytes, 1'000'002U) << "a byte at which the end shows, and the terminating one";
}

TEST_F(ReadFile, ThatGrowsWhileItIsReadIsReadToItsEnd)
{
    const std::string path = dir.write("growing", "begin");
    const XasFile file = xasOpenFile(path);
    std::filesystem::resize_file(path, 40'005);
    EXPECT_EQ(xasReadAll(file.get()), "begin" + std::string(40'000, '\0'));
}

TEST_F(ReadFile, IsNotOpenedWhenItCannotBecomeAStream)
{
    const XasFault fault{"fdopen", ENOMEM};
    EXPECT_FALSE(xasOpenFile(dir.write("file", "text")));
    EXPECT_EQ(errno, ENOMEM);
}
