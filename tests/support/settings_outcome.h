/** What is to be seen after a setting's message, complete, as it follows from the table for one failure. */
#ifndef XAS_TEST_SUPPORT_SETTINGS_OUTCOME_H
#define XAS_TEST_SUPPORT_SETTINGS_OUTCOME_H

#include "support/log_line.h"
#include "support/settings_table.h"

#include <map>

enum class XasFailure {
    none,
    notInList,   /**< the application's list does not have the TYPE */
    notOnDisk,   /**< there is no file at the path */
    notOpened,   /**< a directory stands where the temporary should be; of a generated file: there is no
                    directory for it */
    notRead,     /**< it opens, but its first page cannot be read */
    notWritten,  /**< the disk is full */
    notBackedUp, /**< a directory stands where the backup should be */
    notRenamed,  /**< the temporary cannot be renamed */
    isDirectory, /**< a directory stands at the path */
    isEmpty      /**< of a template */
};

/** Files by name, each as "0644 text", "directory" or "-> where the link leads". */
using XasFileListing = std::map<std::string, std::string>;

/** What a message finds. */
struct XasSituation {
    const XasExpectedSetting &setting;
    const XasExpectedFile *failing; /**< the file that fails; none: every file of the setting */
    XasFailure failure = XasFailure::none;
    bool canRestore = true;
    std::string directory; /**< of the files */
    std::string fullDisk;  /**< where the failing file is when the disk is full */
    XasFileListing files;  /**< in `directory` */

    [[nodiscard]] bool fails(const XasExpectedFile &file, XasFailure how) const;

    /** The path of a TYPE's file, and its name in `files`. */
    [[nodiscard]] std::string path(const XasExpectedFile &file) const;
    [[nodiscard]] static std::string name(const XasExpectedFile &file);
};

struct XasOutcome {
    bool success = true;
    std::uint32_t rcode = 0;
    std::string rstr;
    std::vector<XasLogLine> log;
    XasFileListing files;
};

XasOutcome xasExpectedOutcome(const XasSituation &situation);

#endif
