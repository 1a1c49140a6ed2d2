#include "core/appmgr.h"

#include "core/file.h"

#include <algorithm>

namespace {

const char *textOrNull(const std::optional<std::string> &text)
{
    return text ? text->c_str() : "NULL";
}

void dumpApp(FILE *out, const XasApp &app)
{
    std::fprintf(out, "App: %s\n", textOrNull(app.name));
    std::fprintf(out, "     Start Script: %s\n", textOrNull(app.startScript));
    std::fprintf(out, "     Stop Script: %s\n", textOrNull(app.stopScript));
    for (const XasDaemon &daemon : app.daemons)
        std::fprintf(out, "     Exe: %s\n", daemon.exe.c_str());
    for (const XasCfgFileEntry &entry : app.cfgFiles) {
        std::fprintf(out, "     CfgFile Type: %s\n", textOrNull(entry.type));
        std::fprintf(out, "     CfgFile Path: %s\n", textOrNull(entry.path));
    }
}

} // namespace

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

void xasDumpAppList(const XasAppList &apps)
{
    const XasFile out = xasOpenFile("/tmp/outfp.txt", "a");
    if (!out)
        return;
    for (const XasApp &app : apps)
        dumpApp(out.get(), app);
}
