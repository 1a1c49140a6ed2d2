/**
 * What every setting owes its files, written down by hand: the texts of each failure, what is rolled back
 * then, and one harmless message with what it makes of each file. It says nothing about how it is done;
 * support/settings_outcome.h tells from it what is to be seen after a failure.
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

/** Log lines are without their line feed, which they all have. An empty text: nothing is said. */
struct XasExpectedTexts {
    std::string missing = {};       /**< logged when it is not in the application's list; empty: the update
                                       does without the file */
    std::string missingReason = {}; /**< the reply's reason then, with code 1 */
    std::string openReason = {};    /**< of a file that cannot be opened, with code 2 */
    std::string saveReason = {};    /**< of a file that cannot be saved, with code 3 */
    std::string write = {};         /**< logged when a line cannot be written; empty: the save fails */
    std::string edit = {};          /**< logged behind any of the last three; "%s" is the path */
};

struct XasExpectedFile {
    std::string type;
    XasFileWay way = XasFileWay::edited;
    std::string oldText; /**< as the test finds it; of a link: where it leads */
    std::string newText; /**< after the message; "%s" is the test's directory */
    XasExpectedTexts texts = {};
    std::vector<std::string> restoredIfMissing = {}; /**< TYPEs in the order of rolling back */
    std::vector<std::string> restoredIfEditFails = {};
    std::string writeReason = {}; /**< with code 3 when a line cannot be written; usually none */
    bool secret = false;          /**< others may not read it afterwards */
    bool goesOn = false;          /**< when it fails the files behind it are changed all the same */
    bool harmless = false;        /**< its failure is none of the message */
    std::string model = {};  /**< TYPE of the template that it is made from; a failure of that is its own */
    unsigned orderReads = 0; /**< how often the order of login methods is read for it, to be logged each
                                time when there is none, or it cannot be read; then the file stays */
    std::string path = {};   /**< where it must be; empty: anywhere */
};

/** Files that are looked up together, and those that are changed then. */
struct XasExpectedBatch {
    std::vector<std::string> lookedUp;
    std::vector<std::string> changed;
};

struct XasExpectedSetting {
    std::string name; /**< of the message type, with something behind "_" where there are several */
    std::uint32_t msgtype;
    std::string application;
    std::vector<XasExpectedFile> files = {};
    std::vector<XasExpectedBatch> course =
        {};                     /**< empty: each is looked up and changed when its turn comes */
    bool goesOn = false;        /**< as of a file, for all */
    bool hasFixedPaths = false; /**< it reads or writes files at fixed paths: in a private root alone */
    XasMessage message = {};    /**< makes every file be changed, and nothing else */

    [[nodiscard]] const XasExpectedFile &file(std::string_view type) const;
};

/** Where the order of login methods is read, by whoever needs it. */
inline constexpr const char *XAS_ORDER_FILE = "/etc/sysconfig/r58authconfig";

/** Every setting with a handler of its own; the last ones have no files. */
const std::vector<XasExpectedSetting> &xasExpectedSettings();

/** Those of them that are about login methods. */
std::vector<XasExpectedSetting> xasExpectedLoginSettings();

/** Calls the update handler of a message type: the only place where these tests know how that is done. */
int xasCallHandler(std::uint32_t msgtype, XasMessage *msg, const XasCfgFileList *cfgFiles,
                   XasReplyStatus *reply);

#endif
