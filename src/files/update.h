/**
 * What a setting changes on disk, as rows, and the one runner of them. A row is a file of the setting, found
 * by its TYPE in the application's list: how it is edited, and what is said when it is missing or its edit
 * fails. An update is the rows of one message type in order, with what becomes of the files edited before
 * when one fails. It is called as any update handler is, which the dispatcher calls between stopping and
 * starting the application: update(msg, cfgFiles, reply) returns 0, or non-zero with code and reason in the
 * reply where it has any.
 *
 * Who walks the rows (the documentation of the settings, the tests of what all of them share) finds in them
 * every file and every text of a failure.
 */
#ifndef XAS_FILES_UPDATE_H
#define XAS_FILES_UPDATE_H

#include "core/appmgr.h"
#include "core/assert.h"
#include "core/reply.h"
#include "files/editor.h"
#include "wire/message.h"

#include <optional>
#include <span>
#include <string_view>

using XasUpdateHandler = int (*)(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

/** What the edit of one file is given. */
struct XasEditCall {
    const char *path;
    XasMessage &msg;
    const XasCfgFileList &cfgFiles; /**< for the paths of the other files; those in front are there */
    XasReplyStatus *reply;
};

/** How a file is edited, and the texts of its editor's failures. */
struct XasFileEdit {
    int (*run)(const XasEditCall &call) = nullptr;
    const XasEditTexts *texts = nullptr;
    const char *templateReason = nullptr; /**< the reason when its template cannot be opened (rcode 2) */
};

/** The edit by an editor whose values are the message's payload. */
template <const auto &editor>
constexpr XasFileEdit xasEditedBy{
    .run =
        [](const XasEditCall &call) {
            const auto payload =
                xasReadPayload<typename std::remove_cvref_t<decltype(editor)>::Edited>(call.msg);
            return editor(call.path, &payload, call.reply);
        },
    .texts = &editor.texts};

/** One file of a setting. */
struct XasFileRow {
    std::string_view type;
    XasFileEdit edit = {};               /**< none: the file is only read, by another row's edit */
    const char *missingLog = nullptr;    /**< logged when the list has no file of that TYPE */
    const char *missingReason = nullptr; /**< the reply's reason then (rcode 1); null: the reply stays */
    const char *editLog = nullptr;       /**< logged when the edit fails, the path for "%s"; null: nothing */
    std::span<const std::string_view> restored =
        {};                      /**< rolled back in this order, not in that of the rows */
    bool restoresItself = false; /**< it is rolled back too when its own edit fails */
    bool lookedUpLater = false;  /**< it and those behind it, when those in front of it are edited */
    bool editedLast = false;     /**< behind all the others */
};

/** When the files are looked up. */
enum class XasLookUp {
    each,    /**< each when its turn comes */
    together /**< all before the first edit */
};

/** What happens when the edit of a file fails. */
enum class XasOnFailure {
    rollBack, /**< all edited before it are rolled back, and the update ends; also when one is missing */
    goOn      /**< the next one is edited all the same, and nothing is rolled back */
};

/** The files of a message type, and the handler that updates them. */
struct XasFilesUpdate {
    XasMsgType msgtype;
    std::span<const XasFileRow> files = {};
    XasOnFailure onFailure = XasOnFailure::rollBack;
    XasLookUp lookUp = XasLookUp::each;
    /** Asked once the first files have been found: a result ends the update there; none is the usual case. */
    std::optional<int> (*settled)(const XasMessage &msg) = nullptr;
    std::span<const XasReason> reasons = {}; /**< that the handler has besides those of its files */

    [[nodiscard]] int operator()(XasMessage *msg, const XasCfgFileList *cfgFiles,
                                 XasReplyStatus *reply) const;
};

/** The handler of a message type: the runner of its files, or a function of its own, which may tell its files
 * all the same. Neither: there is nothing to update. */
struct XasUpdate {
    XasUpdateHandler function = nullptr;
    const XasFilesUpdate *files = nullptr;

    constexpr XasUpdate() = default;
    // NOLINTBEGIN(google-explicit-constructor,hicpp-explicit-conversions): a row names its handler, no more
    constexpr XasUpdate(const XasFilesUpdate &update) : files{&update} {}
    constexpr XasUpdate(XasUpdateHandler handler, const XasFilesUpdate *told = nullptr)
        : function{handler}, files{told}
    {
    }
    // NOLINTEND(google-explicit-constructor,hicpp-explicit-conversions)

    [[nodiscard]] int operator()(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply) const
    {
        if (function != nullptr)
            return function(msg, cfgFiles, reply);
        return files != nullptr ? (*files)(msg, cfgFiles, reply) : 0;
    }
};

/** Asserts what every handler asserts: all is given, and the message is of its type. */
void xasAssertUpdate(const XasMessage *msg, XasMsgType msgtype, const XasCfgFileList *cfgFiles,
                     XasCodePlace where = XasCodePlace::current());

/** The path of a row's file; null, with the row's log line and reply, when the list has none. */
const char *xasFindRowFile(const XasFileRow &row, const XasCfgFileList &cfgFiles, XasReplyStatus *reply);

/** Rolls back the files of these TYPEs in order, going on when one cannot be. */
void xasRestoreCfgTypes(const XasCfgFileList &cfgFiles, std::span<const std::string_view> types);

#endif
