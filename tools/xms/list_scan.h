/** The application list as a tree of elements with their lines, for complaints that name one. What the daemon
 * makes of the list is for its own reader to tell (core/sysapp_parser.h). */
#ifndef XAS_XMS_LIST_SCAN_H
#define XAS_XMS_LIST_SCAN_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/** The parent of the root element. */
inline constexpr std::size_t XMS_NO_ELEMENT = static_cast<std::size_t>(-1);

struct XmsListElement {
    std::string name;
    int line = 0;
    std::size_t parent = XMS_NO_ELEMENT; /**< index of the element around it */
    std::string text;                    /**< its own, without that of elements inside */
    bool hasAttributes = false;
};

struct XmsListScan {
    std::vector<XmsListElement> elements; /**< in document order */
    std::string problem;                  /**< why it could not be read to its end; empty: it could */
    int problemLine = 0;

    /** The elements called `name` right inside `parent`. */
    [[nodiscard]] std::vector<const XmsListElement *> inside(const XmsListElement &parent,
                                                             std::string_view name) const;

    /** The name of the element around; empty for the root. */
    [[nodiscard]] std::string_view parentName(const XmsListElement &element) const;
};

/** True when `text` has more than white space. */
bool xmsHasText(std::string_view text);

/** Reads the list at `path`. Throws XmsError when the file cannot be read. */
XmsListScan xmsScanList(const std::string &path);

#endif
