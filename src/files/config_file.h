/**
 * Safe replacement of configuration files: the only way one changes. An editor never writes into a live file;
 * it writes the new content beside it ("<path>.tmp"), and a save makes the old content the backup
 * ("<path>.old", one level) and the new content live. A restore brings the backup back.
 *
 * At every instant, and whatever cuts a save short, the live path holds the whole old or the whole new
 * content: the temporary is written, checked and synced first, the backup is made as a second name of the
 * live file, and one rename puts the new file in its place; the directory is synced with the others of the
 * message (sync.h). A replaced file keeps the mode and owner of the live one; a new file is 0644, one that
 * holds a secret 0600 from the moment it exists, and so is the backup of such a one.
 *
 * All functions return 0 on success and 1 on failure and log their own failures.
 */
#ifndef XAS_FILES_CONFIG_FILE_H
#define XAS_FILES_CONFIG_FILE_H

#include "core/file.h"

#include <cstdint>
#include <string>
#include <string_view>

/** Who may read a file that is made new. */
enum class XasSecrecy {
    plain, /**< 0644, or as the live file is */
    secret /**< 0600, whatever the live file's mode is; its backup too */
};

/** A file that is being edited or regenerated. */
struct XasCfgFile {
    std::string cfgFileName; /**< the live file */
    std::string tmpFileName; /**< "<cfgFileName>.tmp" */
    XasFile inFile;          /**< the live file, or none */
    XasFile outFile;         /**< the temporary, or none */
    XasSecrecy secrecy = XasSecrecy::plain;
};

/** Opens a file for editing: the live file for reading, which must exist, and its temporary for writing. */
[[nodiscard]] int xasCfgOpenFiles(const char *cfgFileName, XasCfgFile *cf,
                                  XasSecrecy secrecy = XasSecrecy::plain);

/** Opens a file for complete regeneration: only the temporary. The live file need not exist. */
[[nodiscard]] int xasCfgOpenOutFile(const char *cfgFileName, XasCfgFile *cf,
                                    XasSecrecy secrecy = XasSecrecy::plain);

/** Writes one line, with "#" in front when `commentOut` is set. The caller supplies the line feed. */
[[nodiscard]] int xasOutputLine(FILE *outFile, const char *line, bool commentOut);

/** Closes what is open; the temporary stays as written so far, the live file is untouched. */
void xasCloseCfgFile(XasCfgFile *cf);

/**
 * Commits. When the backup cannot be made this is logged, the new file is still put in place, and the result
 * is 1. When the new file cannot be put in place, or not be written to the end, the live file stays as it
 * was.
 */
[[nodiscard]] int xasSaveCfgFile(XasCfgFile *cf);

/**
 * Empties a file: its content becomes the backup, an empty file of the same mode and owner becomes live. When
 * there is no content to back up this is logged, the empty file is still made, and the result is 1. When the
 * empty file cannot be made the backup, if one was made, becomes the live file again.
 */
[[nodiscard]] int xasEmptyCfgFile(const char *cfgFileName);

/** Rolls one file back: the backup becomes the live file again, and no backup remains. */
[[nodiscard]] int xasRestoreCfgFile(const char *cfgFileName);

/** 1 when `text` contains a "/"; 0 for none and for a null text. */
[[nodiscard]] int xasFileHasSlash(const char *text);

/** Reads the integer of a line "key = number". Leading white space is skipped; the line must begin with `key`
 * (its length is compared, no more). Returns 1 with the number in `value`; 0, `value` left alone, when the
 * key differs, nothing stands behind an "=", or there is no digit in it. */
[[nodiscard]] int xasGetCfgNumber(std::string_view key, std::string_view line, std::uint32_t *value);

/** The longest text that xasReplaceString takes. */
inline constexpr std::size_t XAS_REPLACE_MAX = 5000;

/** Replaces every occurrence of `pattern` in `text`, left to right, by `replacement` (null deletes it); the
 * search resumes behind what was put in. Works on the first XAS_REPLACE_MAX characters. Returns 0; 1 without
 * change for a null or empty pattern. */
int xasReplaceString(std::string &text, const char *pattern, const char *replacement);

#endif
