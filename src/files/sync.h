/**
 * What must be on its medium before a message is acknowledged. A file's content is synced before its name is
 * changed; the directories whose names were changed are noted here, and synced once each when the message is
 * done.
 */
#ifndef XAS_FILES_SYNC_H
#define XAS_FILES_SYNC_H

#include <string>

/** Notes that a name in the directory of `path` was made, changed or removed. */
void xasNoteTouched(const std::string &path);

/** Syncs a file that a command wrote, and notes its directory; one that is not there is fine. */
void xasSyncFile(const char *path);

/** Syncs the directories noted since the last call, each once. */
void xasSyncTouched();

#endif
