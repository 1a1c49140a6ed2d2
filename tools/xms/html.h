/** Texts of others inside an HTML document, where they can be nothing but text. */
#ifndef XAS_XMS_HTML_H
#define XAS_XMS_HTML_H

#include <string>
#include <string_view>

/** `text` with everything escaped that HTML gives a meaning; characters that are not seen, or change the
 * direction of others, are shown by their numbers, and bytes that are no UTF-8 as U+FFFD. Line ends stay. */
std::string xmsHtml(std::string_view text);

#endif
