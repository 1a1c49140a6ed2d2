/** Files of the C library as values that close themselves, and what is read: whole, and never waited for. */
#ifndef XAS_CORE_FILE_H
#define XAS_CORE_FILE_H

#include <cstddef>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

struct XasFileCloser {
    void operator()(FILE *file) const { std::fclose(file); }
};

/** An open stream, or none. */
using XasFile = std::unique_ptr<FILE, XasFileCloser>;

/** The largest file that is read, in bytes. */
inline constexpr std::size_t XAS_FILE_MAX = std::size_t{16} << 20;

/** Opens a file for reading without waiting for anybody, closed on exec: a regular file that is not too
 * large, or a directory, which reads as empty. None for anything else; `errno` says why. (What is written
 * goes through files/.) */
XasFile xasOpenFile(const std::string &path);

/** All that can be read of a file just opened. None when it cannot be read to its end, or has grown too
 * large. */
std::optional<std::string> xasReadAll(FILE *file);

enum class XasReading {
    whole,
    notOpened, /**< nothing is logged */
    notRead    /**< it opens, but cannot be read to its end; logged */
};

/** Opens a file and reads it to its end; unless that succeeds `text` is left alone. */
XasReading xasReadWhole(const std::string &path, std::string &text);

#endif
