/**
 * Files that the daemon generates directly, without backup: the PAM file, the users' port files, what is
 * expanded from templates. The small sibling of the safe replacement (config_file.h): it alone
 * decides on modes, whatever the umask, and it checks every write and the close.
 *
 * A file that holds a secret is readable by its owner alone before its first byte is written. Only
 * xasGenerateFile logs; the callers of the others have texts of their own.
 */
#ifndef XAS_FILES_GENERATED_FILE_H
#define XAS_FILES_GENERATED_FILE_H

#include "core/file.h"

#include <cstdint>
#include <string>
#include <string_view>

/** Who may read the file. */
enum class XasFileAccess : std::uint8_t {
    kept,      /**< as before; a new one is 0644 */
    everybody, /**< 0644 */
    owner      /**< 0600: it holds a secret */
};

/** What a symbolic link at the file's path leads to. */
enum class XasFileLink : std::uint8_t {
    followed,
    refused /**< the file cannot be opened: its directory may be open to others */
};

/** Opens the file for writing, emptied, made when it is not there. None when it cannot be opened. */
XasFile xasOpenGeneratedFile(const std::string &path, XasFileAccess access,
                             XasFileLink link = XasFileLink::followed);

/** Opens the file for appending, made when it is not there: 0644, or 0600 whatever it was when it holds
 * secrets. None when it cannot be opened. */
XasFile xasOpenGrowingFile(const std::string &path, XasFileAccess access = XasFileAccess::kept);

/** Writes `text` through to the system. False when that fails. */
bool xasWriteGenerated(FILE *file, std::string_view text);

/** Closes the file. False when what was written could not be kept. */
bool xasCloseGenerated(XasFile file);

/** Writes the whole file. Returns 0, or 1 after logging that it cannot be opened or written. */
int xasGenerateFile(const std::string &path, std::string_view text, XasFileAccess access,
                    XasFileLink link = XasFileLink::followed);

#endif
