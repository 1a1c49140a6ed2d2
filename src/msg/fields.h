/** The messages that are described, by type. */
#ifndef XAS_MSG_FIELDS_H
#define XAS_MSG_FIELDS_H

#include "wire/field.h"

/** The description of a message type, or null when the type is not described. */
const XasMsgFields *msgFieldsOf(std::uint32_t msgtype);

#endif
