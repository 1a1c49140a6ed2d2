// Backups: of secrets they are closed to others, and a failed emptying brings back only its own.
#include "files/config_file.h"

#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"

#include <cerrno>
#include <gmock/gmock.h>
#include <sys/stat.h>

using testing::ElementsAre;

namespace {

class Backup : public XasFilesTest {
  protected:
    [[nodiscard]] XasLogLine notRenamed() const
    {
        return xasErrorLine("Error renaming old config file \"" + live + "\"\n");
    }

    int saveSecret()
    {
        XasCfgFile cf;
        EXPECT_EQ(xasCfgOpenOutFile(live.c_str(), &cf, XasSecrecy::secret), 0);
        return xasSaveCfgFile(&cf);
    }

    std::string live = dir.path("live");
    XasLogCapture log;
};

} // namespace

TEST_F(Backup, OfASecretIsClosedToOthersBeforeItHasAName)
{
    for (const mode_t mode : {0644U, 0640U, 0604U}) {
        dir.write("live", "secret", mode);
        {
            const XasFault fault{"rename", EIO}; // it keeps its name then
            EXPECT_EQ(saveSecret(), 1);
        }
        EXPECT_EQ(xasModeOf(live), 0600U) << "closed before";
        EXPECT_EQ(saveSecret(), 0);
        EXPECT_EQ(xasModeOf(live + ".old"), 0600U);
    }
    dir.write("live", "secret", 0400);
    EXPECT_EQ(saveSecret(), 0);
    EXPECT_EQ(xasModeOf(live + ".old"), 0400U) << "closed it was";
}

TEST_F(Backup, OfASecretIsNoneWhenItCannotBeClosedToOthers)
{
    dir.write("live", "secret", 0644);
    const XasFault fault{"chmod", EPERM};
    EXPECT_EQ(saveSecret(), 1);
    EXPECT_THAT(log.lines(), ElementsAre(notRenamed()));
    EXPECT_FALSE(dir.has("live.old"));
    EXPECT_EQ(xasModeOf(live), 0600U) << "the new one";
}

TEST_F(Backup, ThatAnEmptyingDidNotMakeIsNotBroughtBack)
{
    dir.write("live.old", "of an earlier message\n");
    const XasFault fault{"open", EACCES};
    EXPECT_EQ(xasEmptyCfgFile(live.c_str()), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(notRenamed(), xasErrorLine("Error opening file \"" + live + "\"\n")));
    EXPECT_EQ(dir.read("live.old"), "of an earlier message\n");
    EXPECT_FALSE(dir.has("live"));
}

TEST_F(Backup, ThatAnEmptyingMadeIsBroughtBack)
{
    dir.write("live", "old\n");
    dir.write("live.old", "of an earlier message\n");
    {
        const XasFault fault{"open", EACCES};
        EXPECT_EQ(xasEmptyCfgFile(live.c_str()), 1);
    }
    EXPECT_EQ(dir.read("live"), "old\n");
    EXPECT_THAT(dir.names(), ElementsAre("live"));
}

TEST_F(Backup, StaysWhenItCannotBeBroughtBack)
{
    dir.write("live", "old\n");
    const XasFault fault{"rename", EIO, 1}; // the first one makes the backup
    EXPECT_EQ(xasEmptyCfgFile(live.c_str()), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error opening file \"" + live + "\"\n"), notRenamed()));
    EXPECT_EQ(dir.read("live.old"), "old\n");
    EXPECT_EQ(dir.read("live"), "old\n");
    EXPECT_THAT(dir.names(), ElementsAre("live", "live.old"));
}

TEST_F(Backup, IsBroughtBackWhenTheEmptyFileIsNotKept)
{
    dir.write("live", "old\n");
    const XasFault fault{"fsync", EIO};
    EXPECT_EQ(xasEmptyCfgFile(live.c_str()), 1);
    EXPECT_EQ(dir.read("live"), "old\n");
    EXPECT_THAT(dir.names(), ElementsAre("live"));
}

TEST_F(Backup, IsOfRegularFilesAndAPipeIsNotEvenOpened)
{
    ASSERT_EQ(::mkfifo(live.c_str(), 0644), 0);
    XasCfgFile cf;
    EXPECT_EQ(xasCfgOpenFiles(live.c_str(), &cf), 1) << "and nobody is waited for";
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error opening config file \"" + live + "\"\n")));
    EXPECT_THAT(dir.names(), ElementsAre("live"));
}
