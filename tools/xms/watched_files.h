/** The files that an application list names, those that the daemon knows by itself, and what changes in
 * them. */
#ifndef XAS_XMS_WATCHED_FILES_H
#define XAS_XMS_WATCHED_FILES_H

#include "xms/secrets.h"

#include <map>
#include <set>
#include <string>
#include <vector>

/** How a file differs from what it was. */
struct XmsFileChange {
    std::int64_t timeMs = 0;
    std::string path;
    std::string
        difference; /**< as xmsDifference() gives it; or one line in brackets that says what became of it */
    bool isClosed = false; /**< the file is not for others to read */
};

class XmsWatchedFiles {
  public:
    /** Reads the list at `list` and what is in the files now. Throws XmsError when there is no such list. */
    explicit XmsWatchedFiles(const std::string &list);

    /** What has changed since the last time, by path. */
    std::vector<XmsFileChange> takeChanges();

  private:
    struct State {
        std::string text; /**< of a link, where it leads */
        bool isClosed = false;
        bool operator==(const State &) const = default;
    };

    static State stateOf(const std::string &path);
    void addUserFiles();

    std::map<std::string, State> files;
};

/** The change without secrets: those that are known are hidden, and of the lines of a closed file everything
 * but their first word. */
XmsFileChange xmsMaskedChange(XmsFileChange change, const XmsKnownSecrets &secrets);

#endif
