/** Every editor of a file of lines, with a line that takes it most of its ways, for tests and measurements.
 */
#ifndef XAS_TEST_SUPPORT_LINE_EDITORS_H
#define XAS_TEST_SUPPORT_LINE_EDITORS_H

#include <functional>
#include <string>
#include <string_view>
#include <vector>

struct XasLineEditor {
    const char *editor;
    std::function<std::string(std::string_view)> run;
    const char *line;
};

/** The editors of all files that keep lines, each with a line that stays as it is. */
std::vector<XasLineEditor> xasEditorsThatKeepLines();

/** Those, and the same with lines that they change. */
std::vector<XasLineEditor> xasLineEditors();

#endif
