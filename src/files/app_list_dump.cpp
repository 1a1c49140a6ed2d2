#include "files/app_list_dump.h"

#include "core/text.h"
#include "files/generated_file.h"

#include <tuple>

namespace {

const char *textOrNull(const std::optional<std::string> &text)
{
    return text ? text->c_str() : "NULL";
}

std::string appText(const XasApp &app)
{
    std::string text = xasFormat("App: %s\n", textOrNull(app.name));
    text += xasFormat("     Start Script: %s\n", textOrNull(app.startScript));
    text += xasFormat("     Stop Script: %s\n", textOrNull(app.stopScript));
    for (const XasDaemon &daemon : app.daemons)
        text += xasFormat("     Exe: %s\n", daemon.exe.c_str());
    for (const XasCfgFileEntry &entry : app.cfgFiles) {
        text += xasFormat("     CfgFile Type: %s\n", textOrNull(entry.type));
        text += xasFormat("     CfgFile Path: %s\n", textOrNull(entry.path));
    }
    return text;
}

} // namespace

void xasDumpAppList(const XasAppList &apps)
{
    std::string text;
    for (const XasApp &app : apps)
        text += appText(app);
    std::ignore = xasAppendToFile("/tmp/outfp.txt", text); // a help for the reader alone
}
