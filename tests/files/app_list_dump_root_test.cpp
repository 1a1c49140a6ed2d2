// The listing of the applications, which goes to a fixed file.
#include "files/app_list_dump.h"
#include "support/apps.h"
#include "support/files.h"

TEST(AppListDump, ListsEveryApplicationAndSaysNullForWhatIsAbsent)
{
    XasAppList apps = xasTestAppList({{.name = "ntp",
                                       .startScript = "/s/start 1",
                                       .stopScript = "/s/stop",
                                       .exes = {"/bin/ntpd -n", "/bin/other"},
                                       .cfgFiles = {{"ntp", "/etc/ntp.conf"}, {"stepTickers", "/etc/st"}}}});
    apps.emplace_back().cfgFiles.emplace_back();
    std::remove("/tmp/outfp.txt");
    xasDumpAppList(apps);
    EXPECT_EQ(xasReadFile("/tmp/outfp.txt"), "App: ntp\n"
                                             "     Start Script: /s/start 1\n"
                                             "     Stop Script: /s/stop\n"
                                             "     Exe: /bin/ntpd -n\n"
                                             "     Exe: /bin/other\n"
                                             "     CfgFile Type: ntp\n"
                                             "     CfgFile Path: /etc/ntp.conf\n"
                                             "     CfgFile Type: stepTickers\n"
                                             "     CfgFile Path: /etc/st\n"
                                             "App: NULL\n"
                                             "     Start Script: NULL\n"
                                             "     Stop Script: NULL\n"
                                             "     CfgFile Type: NULL\n"
                                             "     CfgFile Path: NULL\n");
}

TEST(AppListDump, IsAppended)
{
    xasWriteFile("/tmp/outfp.txt", "before\n");
    xasDumpAppList(xasTestAppList({{.name = "a"}}));
    EXPECT_EQ(xasReadFile("/tmp/outfp.txt"), "before\n"
                                             "App: a\n"
                                             "     Start Script: NULL\n"
                                             "     Stop Script: NULL\n");
}

TEST(AppListDump, DoesNothingWhenItsFileCannotBeOpened)
{
    std::filesystem::remove("/tmp/outfp.txt");
    std::filesystem::create_directory("/tmp/outfp.txt");
    xasDumpAppList(xasTestAppList({{.name = "a"}}));
    EXPECT_TRUE(std::filesystem::is_empty("/tmp/outfp.txt"));
    std::filesystem::remove("/tmp/outfp.txt");
}
