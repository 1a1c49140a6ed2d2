/** The difference of two texts, line by line, in the unified form that people and `patch` know. */
#ifndef XAS_XMS_DIFFERENCE_H
#define XAS_XMS_DIFFERENCE_H

#include <string>
#include <string_view>

/** "@@ -1,3 +1,4 @@" and lines that begin with " ", "-" or "+", two lines of context around each change;
 * empty when the texts are the same. */
std::string xmsDifference(std::string_view before, std::string_view after);

#endif
