/** Files of tests: whole files read and written, and a directory that goes away with its test. */
#ifndef XAS_TEST_SUPPORT_FILES_H
#define XAS_TEST_SUPPORT_FILES_H

#include "support/test.h"

#include <sys/types.h>

/** Writes the whole file, directories on the way included; replaces what stands there, a link included. */
void xasWriteFile(const std::string &path, std::string_view text, mode_t mode = 0644);

/** The whole file; a test that reads a file which is not there fails. */
std::string xasReadFile(const std::string &path);

/** True when anything, a dangling link too, is at `path`. */
bool xasExists(const std::string &path);

/** The permission bits of `path`, links not followed. */
mode_t xasModeOf(const std::string &path);

/** An empty directory of its own. */
class XasTestDir {
  public:
    XasTestDir();
    ~XasTestDir();
    XasTestDir(const XasTestDir &) = delete;
    XasTestDir &operator=(const XasTestDir &) = delete;

    /** The path of `name` inside; of the directory itself for the empty name. */
    [[nodiscard]] std::string path(std::string_view name = {}) const;

    /** Writes `name` inside and returns its path. */
    std::string write(std::string_view name, std::string_view text, mode_t mode = 0644) const;

    [[nodiscard]] std::string read(std::string_view name) const { return xasReadFile(path(name)); }
    [[nodiscard]] bool has(std::string_view name) const { return xasExists(path(name)); }

    /** The names inside, sorted. */
    [[nodiscard]] std::vector<std::string> names() const;

  private:
    std::string directory;
};

/** A test with a directory of its own. */
class XasFilesTest : public testing::Test {
  protected:
    XasTestDir dir;
};

#endif
