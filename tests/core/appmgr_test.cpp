#include "core/appmgr.h"

#include "support/apps.h"
#include "support/log.h"

TEST(FindApp, FindsNoneInAnEmptyListNorForAnotherName)
{
    XasAppList none;
    EXPECT_EQ(xasFindApp("ntp", none), nullptr);
    XasAppList apps = xasTestAppList({{.name = "ntp "}, {.name = "NTP"}, {.name = "ntpd"}});
    EXPECT_EQ(xasFindApp("ntp", apps), nullptr);
    EXPECT_EQ(xasFindApp("", apps), nullptr);
}

TEST(FindApp, PassesOverApplicationsWithoutAName)
{
    XasAppList apps(1);
    EXPECT_EQ(xasFindApp("", apps), nullptr);
    apps.emplace_back().name = "ntp";
    EXPECT_EQ(xasFindApp("ntp", apps), &apps.back());
}

TEST(FindApp, GivesTheFirstOfEqualNames)
{
    XasAppList apps = xasTestAppList({{.name = "a"}, {.name = "b"}, {.name = "a"}});
    EXPECT_EQ(xasFindApp("a", apps), &apps.front());
}

TEST(CfgFilePath, IsNoneForATypeThatIsNotListedAndNothingIsLogged)
{
    const XasLogCapture log;
    EXPECT_EQ(xasGetCfgFilePath("hosts", {}), nullptr);
    EXPECT_EQ(xasGetCfgFilePath("hosts", xasTestCfgFiles({{"hostname", "/etc/hostname"}})), nullptr);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(CfgFilePath, IsNoneForAnEntryWithoutAPath)
{
    const XasCfgFileList cfgFiles = {{.type = "hosts", .path = {}}, {.type = {}, .path = "/etc/x"}};
    EXPECT_EQ(xasGetCfgFilePath("hosts", cfgFiles), nullptr);
    EXPECT_EQ(xasGetCfgFilePath("", cfgFiles), nullptr);
}

TEST(CfgFilePath, IsTheFirstOfEqualTypes)
{
    const XasCfgFileList cfgFiles = xasTestCfgFiles({{"x", "/0"}, {"hosts", "/1"}, {"hosts", "/2"}});
    EXPECT_STREQ(xasGetCfgFilePath("hosts", cfgFiles), "/1");
}

TEST(FreeApp, LeavesAListAloneThatDoesNotHoldTheApplication)
{
    XasAppList apps = xasTestAppList({{.name = "a"}});
    const XasApp other;
    xasFreeApp(apps, &other);
    xasFreeApp(apps, nullptr);
    EXPECT_EQ(apps.size(), 1U);
}

TEST(FreeApp, RemovesTheApplicationAndKeepsTheOthersWhereTheyAre)
{
    XasAppList apps = xasTestAppList({{.name = "a"}, {.name = "b"}, {.name = "c"}});
    const XasApp *const last = &apps.back();
    xasFreeApp(apps, xasFindApp("b", apps));
    xasFreeApp(apps, &apps.front());
    ASSERT_EQ(apps.size(), 1U);
    EXPECT_EQ(&apps.front(), last);
    EXPECT_EQ(last->name, "c");
}
