/**
 * What all update handlers share. A handler is named xasUpdate...Cfg; the dispatcher calls it between
 * stopping and starting the application, with the message, the application's configuration files and the
 * reply. It finds each file by its TYPE, edits it, and rolls back what it changed when a later file fails; it
 * returns 0, or non-zero with code and reason in the reply where it has any.
 */
#ifndef XAS_FILES_UPDATE_H
#define XAS_FILES_UPDATE_H

#include "core/appmgr.h"
#include "core/reply.h"
#include "wire/message.h"

#include <functional>
#include <span>
#include <string_view>
#include <vector>

using XasUpdateHandler = int (*)(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply);

/** One file of a message. Files to roll back are named by their TYPE, in the order of rolling back. */
struct XasFileStep {
    std::string_view type;
    const char *missingLog;    /**< logged when the list has no file of that TYPE */
    const char *missingReason; /**< the reply's reason then (rcode 1) */
    const char *editLog;       /**< logged when the edit fails */
    std::function<int(const char *cfgFileName)> edit;
    std::vector<std::string_view> restoreIfMissing;
    std::vector<std::string_view> restoreIfEditFails;
};

/** Takes the steps in order; the first that fails ends them. Returns 0, or 1 after rolling back. */
int xasRunFileSteps(const XasCfgFileList &cfgFiles, XasReplyStatus *reply,
                    std::span<const XasFileStep> steps);

/** Rolls back the files of these TYPEs in order, going on when one cannot be. */
void xasRestoreCfgTypes(const XasCfgFileList &cfgFiles, std::span<const std::string_view> types);

#endif
