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

/** Opens a file for reading, closed on exec. (What is written goes through files/.) */
inline XasFile xasOpenFile(const std::string &path)
{
    return XasFile{std::fopen(path.c_str(), "re")};
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
