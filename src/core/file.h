/** Files of the C library as values that close themselves. */
#ifndef XAS_CORE_FILE_H
#define XAS_CORE_FILE_H

#include <array>
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

/** All that can be read from here on; a directory reads as empty. */
inline std::string xasReadAll(FILE *file)
{
    std::string text;
    std::array<char, 4096> chunk{};
    for (std::size_t got = 0; (got = std::fread(chunk.data(), 1, chunk.size(), file)) > 0;)
        text.append(chunk.data(), got);
    return text;
}

#endif
