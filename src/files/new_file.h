/**
 * The one way in which a file comes to be: it is created exclusively under a name of its own, is its owner's
 * alone from that moment until its mode is set, whatever the umask, and is checked and synced before anybody
 * sees it under another name. What stood at that name is removed first; a symbolic link is never followed.
 * Nothing here logs; the callers have texts of their own.
 */
#ifndef XAS_FILES_NEW_FILE_H
#define XAS_FILES_NEW_FILE_H

#include "core/file.h"

#include <cstdint>
#include <string>
#include <string_view>

/** Who may read a new file. */
enum class XasFileAccess : std::uint8_t {
    kept,      /**< mode and owner of the file whose place it takes; 0644 when there is none */
    everybody, /**< 0644 */
    owner      /**< 0600: it holds a secret */
};

/** Creates `path` for writing. Its place will be that of the file at `live`, whose owner it gets. None when
 * that fails. */
XasFile xasCreateFile(const std::string &path, const std::string &live, XasFileAccess access);

/** Writes to a file that has nothing buffered. Gives how many bytes were written, less than all when that
 * failed. */
std::size_t xasWriteText(FILE *file, std::string_view text);

/** Closes a file that was written, if there is one; true when all of it is on its medium. */
[[nodiscard]] bool xasCloseWritten(XasFile &file);

/** Makes a file anew, 0644, at a place where others may make files too. Returns 0; 1 when that fails. */
[[nodiscard]] int xasMakeWorkingFile(const std::string &path, std::string_view text);

/** Opens a working file for appending that a command has made: none unless it is a regular file of ours that
 * has no other name and that nobody else may write. */
XasFile xasOpenWorkingFile(const std::string &path);

#endif
