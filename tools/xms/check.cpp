#include "xms/check.h"

#include "core/sysapp_parser.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

constexpr std::string_view LIST_PATH = "/r58/sysapp.xml";

constexpr std::array WORRY_NAMES = {"error", "warning", "hint"};

const char *nameOf(XmsWorry worry)
{
    return WORRY_NAMES.at(static_cast<std::size_t>(worry));
}

/** The elements of applications that the daemon's reader closes, in its order. */
std::vector<const XmsListElement *> appElements(const XmsListScan &scan)
{
    std::vector<const XmsListElement *> found;
    for (const XmsListElement &element : scan.elements) {
        if (element.name == "APP")
            found.push_back(&element);
    }
    return found;
}

std::string countText(const XmsFindings &findings, XmsWorry worry)
{
    const auto count = std::ranges::count(findings, worry, &XmsFinding::worry);
    return std::to_string(count) + " " + nameOf(worry) + (count == 1 ? "" : "s");
}

} // namespace

int XmsCheckedApp::lineOf(std::string_view name, std::size_t n) const
{
    for (const XmsListElement *found : scan.inside(element, name)) {
        if (xmsHasText(found->text) && n-- == 0)
            return found->line;
    }
    return element.line;
}

int XmsCheckedApp::lineOfFile(std::size_t n) const
{
    const auto files = scan.inside(element, "CFGFILE");
    return n < files.size() ? files[n]->line : element.line;
}

XmsFindings xmsCheckList(const std::string &path, const std::string &root)
{
    const XmsListScan scan = xmsScanList(path);
    if (!scan.problem.empty())
        return {{scan.problemLine, XmsWorry::error, "xml", "the daemon ends at once: " + scan.problem}};
    XmsFindings findings;
    xmsCheckElements(scan, findings);
    XasAppList apps;
    if (xasLoadAppList(path.c_str(), apps) != 0)
        return {{0, XmsWorry::error, "xml", "the daemon cannot read it"}};
    const auto elements = appElements(scan);
    if (elements.size() == apps.size()) { // otherwise applications stand in each other, which has been said
        std::vector<XmsCheckedApp> checked;
        checked.reserve(apps.size());
        std::size_t next = 0;
        for (const XasApp &app : apps)
            checked.push_back({app, *elements[next++], scan});
        xmsCheckSettings(checked, findings);
        xmsCheckCommands(checked, findings);
        if (!root.empty())
            xmsCheckFiles(checked, root, findings);
    }
    std::ranges::stable_sort(findings, {}, &XmsFinding::line);
    return findings;
}

std::string xmsFindingText(const XmsFinding &finding, XmsPaint paint)
{
    const XmsInk ink = finding.worry == XmsWorry::hint ? XmsInk::faint : XmsInk::bad;
    return std::to_string(finding.line) + ": " + xmsPainted(paint, ink, nameOf(finding.worry)) + ": " +
           xmsEscaped(finding.text) + " [" + finding.kind + "]";
}

XmsJson xmsFindingJson(const XmsFinding &finding)
{
    return {{"line", finding.line},
            {"worry", nameOf(finding.worry)},
            {"kind", finding.kind},
            {"text", finding.text}};
}

XmsExit xmsCheckCommand(const XmsOptions &options, std::string path, std::string root)
{
    if (path.empty() && root.empty())
        root = "/";
    if (path.empty())
        path = (root == "/" ? "" : root) + std::string{LIST_PATH};
    const XmsFindings findings = xmsCheckList(path, root);
    for (const XmsFinding &finding : findings) {
        const std::string line = options.json ? xmsJsonLine(xmsFindingJson(finding))
                                              : path + ":" + xmsFindingText(finding, options.paint);
        std::printf("%s\n", line.c_str());
    }
    if (!options.json)
        std::printf("%s: %s, %s, %s\n", path.c_str(), countText(findings, XmsWorry::error).c_str(),
                    countText(findings, XmsWorry::warning).c_str(),
                    countText(findings, XmsWorry::hint).c_str());
    const auto isHint = [](const XmsFinding &finding) {
        return finding.worry == XmsWorry::hint;
    };
    return std::ranges::all_of(findings, isHint) ? XmsExit::applied : XmsExit::refused;
}
