/** The reference of all messages as a manual page, in the mdoc macros: docs/man/xasd-messages.7. */
#ifndef XAS_XMS_MAN_H
#define XAS_XMS_MAN_H

#include <string>
#include <string_view>

/** `text` as lines of at most 79 characters, a sentence beginning a line, nothing taken for a macro. */
std::string xmsManText(std::string_view text);

/** The whole page, made from the descriptions of the fields. */
std::string xmsMessagesMan();

#endif
