/** Files of the C library as values that close themselves. */
#ifndef XAS_CORE_XAS_FILE_H
#define XAS_CORE_XAS_FILE_H

#include <cstdio>
#include <memory>
#include <string>

struct XasFileCloser {
    void operator()(FILE *file) const { std::fclose(file); }
};

/** An open stream, or none. */
using XasFile = std::unique_ptr<FILE, XasFileCloser>;

/** As fopen, closed on exec; `mode` is "r", "w" or "a". */
inline XasFile xasOpenFile(const std::string &path, const char *mode)
{
    return XasFile{std::fopen(path.c_str(), (std::string{mode} + "e").c_str())};
}

#endif
