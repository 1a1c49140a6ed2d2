#include "core/appmgr.h"

#include <algorithm>

XasApp *xasFindApp(std::string_view name, XasAppList &apps)
{
    const auto found = std::ranges::find_if(apps, [&](const XasApp &app) { return app.name == name; });
    return found != apps.end() ? &*found : nullptr;
}

const char *xasGetCfgFilePath(std::string_view type, const XasCfgFileList &cfgFiles)
{
    const auto found = std::ranges::find_if(cfgFiles, [&](const auto &entry) { return entry.type == type; });
    return found != cfgFiles.end() && found->path ? found->path->c_str() : nullptr;
}

void xasFreeApp(XasAppList &apps, const XasApp *app)
{
    apps.remove_if([&](const XasApp &other) { return &other == app; });
}
