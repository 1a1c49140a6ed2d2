/**
 * Dispatch is data: for each message type that is acted upon, the application that it concerns, its update
 * handler and when the application is started afterwards. Every other type is refused.
 */
#ifndef XAS_DISPATCH_DISPATCH_TABLE_H
#define XAS_DISPATCH_DISPATCH_TABLE_H

#include "files/update.h"

#include <span>
#include <string_view>

/** When the application is started after the update. Word n is the payload word at offset 120 + 4n. */
enum class XasStartRule {
    always,
    word0,        /**< word 0 is non-zero */
    word0or1,     /**< word 0 or word 1 is non-zero */
    word1AndModel /**< word 1 is non-zero, and for "xpb" the appliance's model has the device */
};

struct XasDispatchRow {
    XasMsgType msgtype;
    std::string_view application; /**< empty for XMSG_APPLICATION, which names its own */
    XasUpdateHandler handler;     /**< null: there is nothing to update */
    XasStartRule startRule;
};

/** All rows, by message type. */
std::span<const XasDispatchRow> xasDispatchRows();

/** The row of a message type, or none. */
const XasDispatchRow *xasFindDispatchRow(std::uint32_t msgtype);

/** The application that a message with this row concerns; "INVALID_APP" for an index outside the list. */
std::string_view xasApplicationName(const XasDispatchRow &row, const XasMessage &msg);

/** Whether the application is started after the update. */
bool xasIsStartWanted(const XasDispatchRow &row, const XasMessage &msg);

#endif
