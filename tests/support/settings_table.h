/**
 * What every setting owes its files, written down by hand: the texts of each failure, what is rolled back
 * then, and one harmless message with what it makes of each file. It says nothing about how it is done;
 * support/settings_outcome.h tells from it what is to be seen after one failure.
 */
#ifndef XAS_TEST_SUPPORT_SETTINGS_TABLE_H
#define XAS_TEST_SUPPORT_SETTINGS_TABLE_H

#include "core/appmgr.h"
#include "core/reply.h"
#include "wire/message.h"

#include <string>
#include <string_view>
#include <vector>

/** How a file gets its new content. */
enum class XasFileWay {
    edited,      /**< read, and replaced with a backup: it must exist */
    regenerated, /**< replaced with a backup, without being read */
    generated,   /**< replaced without a backup, without being read */
    model,       /**< only read: the template of another file */
    directory,   /**< only named: what others are found in */
    link         /**< a symbolic link, made anew without a backup */
};

struct XasExpectedFile {
    std::string type;
    XasFileWay way = XasFileWay::edited;
    std::string oldText; /**< as the test finds it; of a link: where it leads */
    std::string newText; /**< after the message; "%s" is the test's directory */
    bool secret = false; /**< others may not read it afterwards */

    /** Not in the application's list. No log line: the update goes on without the file. */
    std::string missingLog = {};
    std::string missingReason = {}; /**< with code 1; empty: neither code nor reason */

    std::string openReason = {};  /**< cannot be opened: code 2; empty: as it was */
    std::string saveReason = {};  /**< cannot be saved: code 3; empty: as it was */
    std::string writeLog = {};    /**< a line cannot be written; empty: it shows when the file is saved */
    std::string writeReason = {}; /**< code 3 then; empty: as it was */
    std::string editLog = {};     /**< behind any of the three; "%s" is the path; empty: none */
    bool goesOn = false;          /**< the files behind it are changed all the same */
    bool harmless = false;        /**< its failure is none of the message */

    /** TYPEs in the order of rolling back. */
    std::vector<std::string> restoredIfMissing = {};
    std::vector<std::string> restoredIfEditFails = {};

    std::string model = {};  /**< TYPE of the template that it is made from; a failure of that is its own */
    unsigned orderReads = 0; /**< how often the order of login methods is read for it, to be logged each time
                                when there is none */
    std::string path = {};   /**< where it must be; empty: anywhere */
};

/** A step on the way: a TYPE is looked up, or its file gets its new content. */
struct XasExpectedStep {
    bool isEdit;
    std::string type;
};

struct XasExpectedSetting {
    std::string name;
    std::uint32_t msgtype;
    std::string msgtypeName;
    std::string application;
    bool hasFixedPaths; /**< it reads or writes files at fixed paths, in a private root alone */
    std::vector<XasExpectedFile> files;
    std::vector<XasExpectedStep> course;
    XasMessage message; /**< makes every file be changed, and nothing else */

    [[nodiscard]] const XasExpectedFile &file(std::string_view type) const;
};

/** Where the order of login methods is read, by whoever needs it. */
inline constexpr const char *XAS_ORDER_FILE = "/etc/sysconfig/r58authconfig";

/** Every setting with a handler of its own; the last ones have no files. */
const std::vector<XasExpectedSetting> &xasExpectedSettings();

/** Calls the update handler of a message type: the only place where these tests know how that is done. */
int xasCallHandler(std::uint32_t msgtype, XasMessage *msg, const XasCfgFileList *cfgFiles,
                   XasReplyStatus *reply);

#endif
