/** The reference of all messages, byte by byte, as a Markdown document: docs/messages.md. */
#ifndef XAS_XMS_MARKDOWN_H
#define XAS_XMS_MARKDOWN_H

#include <string>

/** The whole document, made from the descriptions of the fields. */
std::string xmsMarkdown();

#endif
