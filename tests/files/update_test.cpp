// All settings that need no file at a fixed path, one as the other (support/settings_tests.h); and what the
// appliance ships for all of them.
#include "core/sysapp_parser.h"
#include "support/settings_tests.h"

bool xasIsTestedHere(const XasExpectedSetting &setting)
{
    return !setting.hasFixedPaths;
}

TEST(ShippedList, NamesEveryFileOfEverySetting)
{
    XasAppList apps;
    ASSERT_EQ(xasLoadAppList(XAS_DOCS_DIR "/../appliance/root/r58/sysapp.xml", apps), 0);
    for (const XasExpectedSetting &setting : xasExpectedSettings()) {
        const XasApp *app = xasFindApp(setting.application, apps);
        ASSERT_NE(app, nullptr) << setting.application;
        for (const XasExpectedFile &file : setting.files) {
            const char *path = xasGetCfgFilePath(file.type, app->cfgFiles);
            ASSERT_NE(path, nullptr) << setting.name << ' ' << file.type;
            EXPECT_EQ(path, file.path.empty() ? path : file.path);
        }
    }
}
