// The time-zone link.
#include "config/timezone.h"

#include "support/apps.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"
#include "support/message.h"
#include "support/reply.h"

namespace fs = std::filesystem;

namespace {

class TimezoneUpdate : public XasFilesTest {
  protected:
    std::string base = dir.path("zoneinfo");
    std::string utc = dir.write("zoneinfo/UTC", "TZif2");
    std::string berlin = dir.write("zoneinfo/Europe/Berlin", "TZif2");
    std::string link = dir.path("localtime");
    XasCfgFileList files = xasTestCfgFiles({{"tzpathbase", base}, {"cfglink", link}});
    XasLogCapture log;
    XasReplyStatus reply;

    TimezoneUpdate() { fs::create_symlink(utc, link); }

    int update(std::string_view zone)
    {
        XasMessage msg = XasMessageBuilder{XMSG_TIMEZONE}.set("zone", zone);
        return xasUpdateTimezoneCfg(&msg, &files, &reply);
    }

    /** Nothing is ever put into the reply, and no other name is left beside the link. */
    void TearDown() override
    {
        EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
        EXPECT_FALSE(dir.has("localtime.tmp"));
    }
};

const XasLogLine NOT_UNLINKED = xasWarningLine("failure unlinking timezone symlink file\n");

} // namespace

TEST_F(TimezoneUpdate, NeedsALinkInTheListButLooksForTheZoneFirst)
{
    files = xasTestCfgFiles({{"tzpathbase", base}});
    EXPECT_EQ(update("Europe/Paris"), 1);
    EXPECT_EQ(update("Europe/Berlin"), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("timezone file " + base + "/Europe/Paris does not exist\n"),
                            xasErrorLine("Error determining timezone config file link\n")));
}

TEST_F(TimezoneUpdate, LeavesTheOldLinkForAZoneWithoutAFile)
{
    EXPECT_EQ(update("Mars/Olympus"), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("timezone file " + base + "/Mars/Olympus does not exist\n")));
    EXPECT_EQ(fs::read_symlink(link), utc);
}

TEST_F(TimezoneUpdate, LeavesTheOldLinkForAZoneThatCannotBeLookedAt)
{
    EXPECT_EQ(update("UTC/beneath"), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("failure getting information about file " + base +
                                                      "/UTC/beneath\n")));
    EXPECT_EQ(fs::read_symlink(link), utc);
}

TEST_F(TimezoneUpdate, LeavesTheOldLinkForANameThatFillsTheRecord)
{
    const std::string longName(2488 - 120, 'z');
    EXPECT_EQ(update(longName), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("failure getting information about file " + base + "/" +
                                                      longName + "\n")));
    EXPECT_EQ(fs::read_symlink(link), utc);
}

TEST_F(TimezoneUpdate, PointsTheLinkAtTheDirectoryForAnEmptyName)
{
    EXPECT_EQ(update(""), 0);
    EXPECT_EQ(fs::read_symlink(link), base + "/");
}

TEST_F(TimezoneUpdate, WarnsOfAMissingLinkAndMakesIt)
{
    fs::remove(link);
    EXPECT_EQ(update("Europe/Berlin"), 0);
    EXPECT_THAT(log.lines(), ElementsAre(NOT_UNLINKED));
    EXPECT_EQ(fs::read_symlink(link), berlin);
}

TEST_F(TimezoneUpdate, ReplacesADanglingLinkAndAPlainFile)
{
    fs::remove(link);
    fs::create_symlink("/nowhere", link);
    EXPECT_EQ(update("Europe/Berlin"), 0);
    EXPECT_EQ(fs::read_symlink(link), berlin);
    dir.write("localtime", "TZif2");
    EXPECT_EQ(update("Europe/Berlin"), 0);
    EXPECT_EQ(fs::read_symlink(link), berlin);
    EXPECT_EQ(xasReadFile(utc), "TZif2");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(TimezoneUpdate, ReplacesWhatAnEarlierRunLeftBesideTheLink)
{
    dir.write("localtime.tmp", "left over");
    EXPECT_EQ(update("Europe/Berlin"), 0);
    EXPECT_EQ(fs::read_symlink(link), berlin);
}

TEST_F(TimezoneUpdate, LeavesADirectoryWhereTheLinkShouldBeAlone)
{
    fs::remove(link);
    dir.write("localtime/inside", "text");
    EXPECT_EQ(update("Europe/Berlin"), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(NOT_UNLINKED, xasErrorLine("Error creating symlink to path " + berlin + "\n")));
    EXPECT_EQ(dir.read("localtime/inside"), "text");
}

TEST_F(TimezoneUpdate, FailsWhereNoLinkCanBeMade)
{
    link = dir.path("missing/localtime");
    files = xasTestCfgFiles({{"tzpathbase", base}, {"cfglink", link}});
    EXPECT_EQ(update("Europe/Berlin"), 1);
    EXPECT_THAT(log.lines(),
                ElementsAre(NOT_UNLINKED, xasErrorLine("Error creating symlink to path " + berlin + "\n")));
}

TEST_F(TimezoneUpdate, LogsBothWhenTheDirectoryLetsNoNameBeChanged)
{
    for (const int error : {EACCES, EPERM, EROFS}) {
        const XasFault fault{"rename", error};
        EXPECT_EQ(update("Europe/Berlin"), 1);
        EXPECT_THAT(log.take(), ElementsAre(NOT_UNLINKED,
                                            xasErrorLine("Error creating symlink to path " + berlin + "\n")));
        EXPECT_EQ(fs::read_symlink(link), utc);
    }
}

TEST_F(TimezoneUpdate, RenamesTheNewLinkOverTheOldAndNeverRemovesIt)
{
    const XasFault noUnlink{"unlink", EPERM};
    const XasCallOrder order;
    EXPECT_EQ(update("Europe/Berlin"), 0);
    EXPECT_THAT(order.calls(), ElementsAre("rename " + link + ".tmp -> " + link));
    EXPECT_EQ(fs::read_symlink(link), berlin);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(TimezoneUpdate, LeavesTheOldLinkWhenTheNewOneCannotTakeItsPlace)
{
    const XasFault fault{"rename", EIO};
    EXPECT_EQ(update("Europe/Berlin"), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error creating symlink to path " + berlin + "\n")));
    EXPECT_EQ(fs::read_symlink(link), utc);
}
