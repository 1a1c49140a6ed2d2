/** What the references of all messages tell besides the fields of each type: the Markdown document and the
 * manual page are made of the same rows. */
#ifndef XAS_XMS_REFERENCE_H
#define XAS_XMS_REFERENCE_H

#include <cstdint>
#include <string>
#include <vector>

using XmsRows = std::vector<std::vector<std::string>>;

/** How records travel. */
extern const char *const XMS_WIRE_TEXT;

/** The list of users behind a message. */
extern const char *const XMS_USERS_TEXT;

/** Field, offset, bytes, meaning; the field is empty for what has no name. */
XmsRows xmsHeaderRows();

/** The kinds of fields and what they are in bytes. */
XmsRows xmsKindRows();

/** The message types that have a name. */
std::vector<std::uint32_t> xmsNamedTypes();

#endif
