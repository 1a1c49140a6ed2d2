#include "support/apps.h"

#include <string_view>

namespace {

std::optional<std::string> optionalText(const std::string &text)
{
    return text.empty() ? std::nullopt : std::optional{text};
}

std::string escapedText(std::string_view text)
{
    std::string escaped;
    for (const char c : text) {
        if (c == '&')
            escaped += "&amp;";
        else if (c == '<')
            escaped += "&lt;";
        else
            escaped += c;
    }
    return escaped;
}

std::string element(const std::string &name, const std::string &text)
{
    return text.empty() ? "" : "    <" + name + ">" + escapedText(text) + "</" + name + ">\n";
}

} // namespace

XasCfgFileList xasTestCfgFiles(const std::vector<std::pair<std::string, std::string>> &cfgFiles)
{
    XasCfgFileList list;
    for (const auto &[type, path] : cfgFiles)
        list.push_back({.type = type, .path = path});
    return list;
}

XasAppList xasTestAppList(const std::vector<XasTestApp> &apps)
{
    XasAppList list;
    for (const XasTestApp &described : apps) {
        XasApp &app = list.emplace_back();
        app.name = described.name;
        app.startScript = optionalText(described.startScript);
        app.stopScript = optionalText(described.stopScript);
        for (const std::string &exe : described.exes)
            app.daemons.push_back({.exe = exe});
        app.cfgFiles = xasTestCfgFiles(described.cfgFiles);
    }
    return list;
}

std::string xasSysappText(const std::vector<XasTestApp> &apps)
{
    std::string text = "<?xml version=\"1.0\"?>\n<SYSAPP>\n";
    for (const XasTestApp &app : apps) {
        text += "  <APP>\n" + element("NAME", app.name) + element("STARTSCRIPT", app.startScript) +
                element("STOPSCRIPT", app.stopScript);
        for (const std::string &exe : app.exes)
            text += element("EXE", exe);
        for (const auto &[type, path] : app.cfgFiles)
            text += "    <CFGFILE>\n" + element("TYPE", type) + element("PATH", path) + "    </CFGFILE>\n";
        text += "  </APP>\n";
    }
    return text + "</SYSAPP>\n";
}
