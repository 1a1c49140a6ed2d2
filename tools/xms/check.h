/** `xms check`: what is wrong or suspicious in an application list, by the rows that the daemon runs. */
#ifndef XAS_XMS_CHECK_H
#define XAS_XMS_CHECK_H

#include "core/appmgr.h"
#include "xms/commands.h"
#include "xms/list_scan.h"

#include <cstdint>
#include <string>
#include <vector>

enum class XmsWorry : std::uint8_t {
    error,   /**< a setting fails, or something is never run */
    warning, /**< the daemon does something else than the list seems to say */
    hint     /**< may be meant so */
};

struct XmsFinding {
    int line = 0;
    XmsWorry worry = XmsWorry::error;
    std::string kind; /**< one word, the same for all findings of a kind */
    std::string text;
};

using XmsFindings = std::vector<XmsFinding>;

/** An application as the daemon has read it, and its element. */
struct XmsCheckedApp {
    const XasApp &app;
    const XmsListElement &element;
    const XmsListScan &scan;

    /** The line of its n-th element of a name that has a text; its own where there is none. */
    [[nodiscard]] int lineOf(std::string_view name, std::size_t n = 0) const;

    /** The line of its n-th configuration file. */
    [[nodiscard]] int lineOfFile(std::size_t n) const;

    /** "eth", or "an application without a name". */
    [[nodiscard]] std::string name() const { return app.name.value_or("an application without a name"); }
};

/** Elements that the daemon ignores or takes for something else. */
void xmsCheckElements(const XmsListScan &scan, XmsFindings &findings);

/** Names, TYPEs and paths against the settings. */
void xmsCheckSettings(const std::vector<XmsCheckedApp> &apps, XmsFindings &findings);

/** Command lines: their limits, and the parameters that are overwritten at run time. */
void xmsCheckCommands(const std::vector<XmsCheckedApp> &apps, XmsFindings &findings);

/** Programs and files below `root`. */
void xmsCheckFiles(const std::vector<XmsCheckedApp> &apps, const std::string &root, XmsFindings &findings);

/** Everything that is found in the list at `path`, by line; programs and files are looked for below `root`
 * unless that is empty. Throws XmsError when the list cannot be read. */
XmsFindings xmsCheckList(const std::string &path, const std::string &root);

/** "12: error: ... [type]" */
std::string xmsFindingText(const XmsFinding &finding, XmsPaint paint);
XmsJson xmsFindingJson(const XmsFinding &finding);

/** Prints what is found. With neither a list nor a root it is the appliance's own that is checked; with only
 * a root, the list in there; with only a list, no files are looked for. Refused when there is more than
 * hints. */
XmsExit xmsCheckCommand(const XmsOptions &options, std::string path, std::string root);

#endif
