/**
 * Dispatch is data: one row for each message type that is acted upon, with everything that differs by type.
 * Every other type is refused. process_msg.h takes the steps of a row in order and knows no type by name.
 *
 * A message is described beside its struct; the list joins description and row (settings_list.h), so that
 * the daemon carries only what it needs.
 */
#ifndef XAS_DISPATCH_SETTINGS_H
#define XAS_DISPATCH_SETTINGS_H

#include "files/update.h"
#include "wire/text_rule.h"

#include <span>
#include <string_view>

/** When the application is started after the update. Word n is the payload word at offset 120 + 4n. */
enum class XasStartRule {
    always,
    word0,        /**< word 0 is non-zero */
    word0or1,     /**< word 0 or word 1 is non-zero */
    word1AndModel /**< word 1 is non-zero, and for "xpb" the appliance's model has the device */
};

/** One message being handled. */
struct XasSettingWork {
    XasAppList &apps;
    XasMessage &msg;
    XasApp &app;
    XasReplyStatus &reply;
};

/** A row. The steps that most types do not have are null. Those that return bool have logged why when they
 * return false, and the message has failed. */
struct XasSetting {
    std::string_view application; /**< empty: the message names its own */
    XasUpdate update = {};
    XasStartRule start = XasStartRule::always;
    /** Done first, whether or not the application is in the list. */
    void (*onArrival)() = nullptr;
    /** Writes the parameters of the application's scripts, before it is stopped. */
    bool (*setScripts)(const XasSettingWork &work) = nullptr;
    /** The application to start in place of the message's own; empty: its own. */
    std::string_view (*startedInstead)(const XasMessage &msg) = nullptr;
    /** Done after the start; `updated` tells whether the files were updated. */
    bool (*after)(const XasSettingWork &work, bool updated) = nullptr;

    XasMsgType msgtype = {}; /**< of the message's description, as are the next */
    bool answered = true;
    std::span<const XasTextField> texts = {}; /**< those of its texts that are checked on arrival */
};

/** All rows, by message type. */
std::span<const XasSetting> xasSettings();

/** The row of a message type, or none. */
const XasSetting *xasFindSetting(std::uint32_t msgtype);

/** The application that a message with this row concerns; "INVALID_APP" for an index outside the list. */
std::string_view xasApplicationName(const XasSetting &setting, const XasMessage &msg);

/** Whether the application is started after the update. */
[[nodiscard]] bool xasIsStartWanted(const XasSetting &setting, const XasMessage &msg);

#endif
