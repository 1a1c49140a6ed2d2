/**
 * The application list: any bytes as the file. What must hold:
 *  - a list that is refused leaves what was there as it was, and says why in one line;
 *  - a list that is taken, written down again element by element, is read as the same;
 *  - every application and every file is found by its name, the first one of that name;
 *  - the checker of lists takes whatever the reader takes, and says each finding in one line.
 */
#include "core/sysapp_parser.h"
#include "support/fuzz.h"
#include "wire/control.h"
#include "xms/check.h"
#include "xms/error.h"

#include <algorithm>
#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

namespace {

/** A file without a name that holds `text`; its path. */
class MemoryFile {
  public:
    const char *holding(std::string_view text)
    {
        if (::ftruncate(fd, 0) != 0 || ::pwrite(fd, text.data(), text.size(), 0) < 0)
            std::abort();
        return path.c_str();
    }

  private:
    int fd = ::memfd_create("list", MFD_CLOEXEC);
    std::string path = "/proc/self/fd/" + std::to_string(fd);
};

MemoryFile &file()
{
    static MemoryFile only;
    return only;
}

std::string escaped(const std::string &text)
{
    std::string out;
    for (const char c : text) {
        if (c == '&')
            out += "&amp;";
        else if (c == '<')
            out += "&lt;";
        else if (c == '>')
            out += "&gt;";
        else if (c == '\r')
            out += "&#13;";
        else
            out += c;
    }
    return out;
}

void append(std::string &xml, const char *element, const std::optional<std::string> &text)
{
    if (text)
        xml.append("<")
            .append(element)
            .append(">")
            .append(escaped(*text))
            .append("</")
            .append(element)
            .append(">");
}

std::string asXml(const XasAppList &apps)
{
    std::string xml = "<LIST>";
    for (const XasApp &app : apps) {
        xml += "<APP>";
        append(xml, "NAME", app.name);
        append(xml, "STARTSCRIPT", app.startScript);
        append(xml, "STOPSCRIPT", app.stopScript);
        for (const XasDaemon &daemon : app.daemons)
            append(xml, "EXE", daemon.exe);
        for (const XasCfgFileEntry &entry : app.cfgFiles) {
            xml += "<CFGFILE>";
            append(xml, "TYPE", entry.type);
            append(xml, "PATH", entry.path);
            xml += "</CFGFILE>";
        }
        xml += "</APP>";
    }
    return xml + "</LIST>";
}

void requireLookUps(XasAppList &apps)
{
    for (XasApp &app : apps) {
        const XasApp *found = app.name ? xasFindApp(*app.name, apps) : &app;
        xasFuzzRequire(found != nullptr && found->name == app.name, "an application is found by its name");
        xasFuzzRequire(app.running == 0 && app.auxList.empty(), "nothing runs yet");
        for (const XasCfgFileEntry &entry : app.cfgFiles) {
            const auto first = std::ranges::find(app.cfgFiles, entry.type, &XasCfgFileEntry::type);
            const char *path = entry.type ? xasGetCfgFilePath(*entry.type, app.cfgFiles) : nullptr;
            xasFuzzRequire(!entry.type || (path == nullptr ? !first->path : first->path == path),
                           "a file is found by its type");
        }
    }
}

void requireChecked(const char *path)
{
    try {
        for (const XmsFinding &finding : xmsCheckList(path, {})) {
            const std::string text = xmsFindingText(finding, XmsPaint::plain);
            xasFuzzRequire(std::ranges::none_of(text, xasIsControl), "a finding is one line", text);
        }
    } catch (const XmsError &) {
        return; // it says so
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view text{reinterpret_cast<const char *>(data), size};
    xasFuzzLog().clear();
    XasAppList apps;
    apps.emplace_back().name = "before";
    const char *path = file().holding(text);
    const int result = xasLoadAppList(path, apps);
    requireChecked(path);
    if (result != 0) {
        xasFuzzRequire(result == -1 && apps.size() == 1 && apps.front().name == "before" &&
                           !xasFuzzLog().empty(),
                       "a refused list changes nothing");
        return 0;
    }
    requireLookUps(apps);
    const std::string xml = asXml(apps);
    XasAppList again;
    xasFuzzRequire(xasLoadAppList(file().holding(xml), again) == 0, "a list written down again is taken",
                   xml);
    xasFuzzRequire(asXml(again) == xml, "a list written down again is the same", xml, asXml(again));
    return 0;
}
