/**
 * Files that the daemon generates directly, without backup: the PAM file, the users' port files and their
 * list, what is expanded from templates. The small sibling of the safe replacement (config_file.h): the new
 * content is written beside the old one and takes its place in one step, or not at all. Behind a symbolic
 * link that is beside what it leads to.
 *
 * Only xasGenerateFile logs; the callers of the others have texts of their own.
 */
#ifndef XAS_FILES_GENERATED_FILE_H
#define XAS_FILES_GENERATED_FILE_H

#include "files/new_file.h"

#include <cstdint>
#include <string>
#include <string_view>

/** What a symbolic link at the file's path leads to. */
enum class XasFileLink : std::uint8_t {
    followed,
    refused /**< the file cannot be opened: its directory may be open to others */
};

/** A file being generated, or none. Unless it is saved it leaves no trace. */
class XasGeneratedFile {
  public:
    /** Begins; none when there is no place for it, or something stands there that is no regular file. */
    XasGeneratedFile(const std::string &path, XasFileAccess access, XasFileLink link = XasFileLink::followed);
    ~XasGeneratedFile();
    XasGeneratedFile(const XasGeneratedFile &) = delete;
    XasGeneratedFile &operator=(const XasGeneratedFile &) = delete;

    explicit operator bool() const { return file != nullptr; }

    /** False when that fails; it is not saved then. */
    bool write(std::string_view text);

    /** Puts it in its place. False when what was written could not be kept, the old content then stays. */
    bool save();

  private:
    std::string target;
    std::string temporary;
    XasFile file;
    bool isWhole = true;
};

/** Generates the whole file. Returns 0, or 1 after logging that it cannot be opened or written. */
[[nodiscard]] int xasGenerateFile(const std::string &path, std::string_view text, XasFileAccess access,
                                  XasFileLink link = XasFileLink::followed);

/** Generates the file anew with `text` at its end; one that is not there counts as empty. Returns 0, or 1
 * when that fails; only that it cannot be read to its end is logged. */
[[nodiscard]] int xasAppendToFile(const std::string &path, std::string_view text,
                                  XasFileAccess access = XasFileAccess::kept);

/** Removes a file that is not wanted; one that is not there is fine. */
void xasRemoveFile(const char *path);

#endif
