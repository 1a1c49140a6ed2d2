/**
 * What the handlers of the login methods and of the shared directories have in common: they look all their
 * files up first, then run editor after editor and log the one that failed. Those of the login methods run
 * the next one all the same and roll nothing back: the PAM and the name-service file follow from what is on
 * disk.
 */
#ifndef XAS_AUTH_AUTH_STEPS_H
#define XAS_AUTH_AUTH_STEPS_H

#include "core/appmgr.h"
#include "core/log.h"

#include <array>
#include <cstddef>
#include <string_view>

/** A file that a handler cannot do without. */
struct XasNeededFile {
    std::string_view type;
    const char *missingLog; /**< logged when the list has no file of that TYPE */
};

/** The paths of `files` in their order. False after logging the first that is missing; no reply is set. */
template <std::size_t N>
bool xasFindNeededFiles(const XasCfgFileList &cfgFiles, const std::array<XasNeededFile, N> &files,
                        std::array<const char *, N> &paths)
{
    for (std::size_t i = 0; i < N; ++i) {
        paths[i] = xasGetCfgFilePath(files[i].type, cfgFiles);
        if (paths[i] == nullptr) {
            xasLogError("%s", files[i].missingLog);
            return false;
        }
    }
    return true;
}

/** Logs `failureLog` when `result` is a failure. Returns `result`. */
inline int xasLogFailure(int result, const char *failureLog)
{
    if (result != 0)
        xasLogError("%s", failureLog);
    return result;
}

/** The result of one step after another: the last that failed. */
inline int xasLastFailure(int before, int result)
{
    return result != 0 ? result : before;
}

/** "Error editing PATH" when `result` is a failure. Returns `result`. */
inline int xasLogFailedPath(int result, const char *path)
{
    if (result != 0)
        xasLogError("Error editing %s\n", path);
    return result;
}

#endif
