// Programs tell the time by the link that we make.
#include "config/timezone.h"

#include "support/apps.h"
#include "support/message.h"
#include "support/programs.h"

namespace {

std::string localTime()
{
    return xasRunShell("unset TZ; date -d @1700000000 '+%F %T %Z'").output;
}

int choose(std::string_view zone)
{
    const XasCfgFileList files =
        xasTestCfgFiles({{"tzpathbase", "/usr/share/zoneinfo"}, {"cfglink", "/etc/localtime"}});
    XasMessage msg = XasMessageBuilder{XMSG_TIMEZONE}.set("zone", zone);
    XasReplyStatus reply;
    return xasUpdateTimezoneCfg(&msg, &files, &reply);
}

} // namespace

TEST(TimezonePrograms, TellTheTimeOfTheZoneThatWasChosenLast)
{
    EXPECT_EQ(choose("UTC"), 0);
    EXPECT_EQ(localTime(), "2023-11-14 22:13:20 UTC\n");
    EXPECT_EQ(choose("Europe/Berlin"), 0);
    EXPECT_EQ(localTime(), "2023-11-14 23:13:20 CET\n");
    EXPECT_EQ(choose("Asia/Kolkata"), 0);
    EXPECT_EQ(localTime(), "2023-11-15 03:43:20 IST\n");
    EXPECT_EQ(choose("Mars/Olympus"), 1);
    EXPECT_EQ(localTime(), "2023-11-15 03:43:20 IST\n");
}
