/** The reference of all messages, byte by byte, as a Markdown document: docs/messages.md. */
#ifndef XAS_XMS_MARKDOWN_H
#define XAS_XMS_MARKDOWN_H

#include <string>
#include <vector>

/** A table of Markdown; the cells are taken as they are. */
std::string xmsMarkdownTable(const std::vector<std::string> &head,
                             const std::vector<std::vector<std::string>> &rows);

/** The whole document, made from the descriptions of the fields. */
std::string xmsMarkdown();

#endif
