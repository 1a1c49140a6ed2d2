#include "model/record.h"

#include <arpa/inet.h>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

std::string formatted(const char *format, va_list arguments, std::size_t bufferSize)
{
    static std::array<char, 8192> buffer;
    std::vsnprintf(buffer.data(), std::min(bufferSize, buffer.size()), format, arguments);
    return buffer.data();
}

} // namespace

std::string XasRecordBytes::text(std::size_t at, std::size_t width) const
{
    std::string found;
    for (std::size_t i = at; i < at + width && bytes[i] != 0; ++i) {
        found += static_cast<char>(bytes[i]);
        XasReadControls &noted = xasReadControls();
        noted.any = noted.any || bytes[i] < 32 || bytes[i] == 127;
        noted.lineEnd = noted.lineEnd || bytes[i] == '\n' || bytes[i] == '\r';
    }
    return found;
}

XasReadControls &xasReadControls()
{
    static XasReadControls controls;
    return controls;
}

bool XasRecordBytes::isZero(std::size_t at, std::size_t width) const
{
    for (std::size_t i = at; i < at + width; ++i) {
        if (bytes[i] != 0)
            return false;
    }
    return true;
}

std::string XasRecordBytes::ipv4(std::size_t at) const
{
    return xasModelFormat("%u.%u.%u.%u", u8(at), u8(at + 1), u8(at + 2), u8(at + 3));
}

std::string XasRecordBytes::ipv6(std::size_t at) const
{
    std::array<char, 64> buffer{};
    return ::inet_ntop(AF_INET6, bytes + at, buffer.data(), buffer.size());
}

std::string XasRecordBytes::host(std::size_t at) const
{
    if (u32(at) != 0)
        return text(at + 8, 68);
    return u32(at + 4) != 0 ? ipv6(at + 8) : ipv4(at + 8);
}

std::string xasModelLine(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    std::string text = formatted(format, arguments, 512);
    va_end(arguments);
    return text;
}

std::string xasModelFormat(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    std::string text = formatted(format, arguments, 8192);
    va_end(arguments);
    return text;
}

std::vector<std::string> xasModelLines(const std::string &text)
{
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < text.size();) {
        std::string piece;
        bool isCut = false; // by a NUL, behind which the C library's functions see nothing
        for (int count = 0; count < 511 && at < text.size(); ++count) {
            const char c = text[at++];
            isCut = isCut || c == '\0';
            if (!isCut)
                piece += c;
            if (c == '\n')
                break;
        }
        lines.push_back(piece);
    }
    return lines;
}

std::string xasModelToken(const std::string &line, const char *delimiters, int n)
{
    std::string scratch = line;
    if (!scratch.empty() && scratch.back() == '\n') {
        scratch.pop_back();
        if (!scratch.empty() && scratch.back() == '\r')
            scratch.pop_back();
    }
    char *state = nullptr;
    const char *token = ::strtok_r(scratch.data(), delimiters, &state);
    for (; token != nullptr && n > 0; --n)
        token = ::strtok_r(nullptr, delimiters, &state);
    return token != nullptr ? token : "";
}

bool xasModelBegins(const std::string &line, const char *with)
{
    return std::strncmp(line.c_str(), with, std::strlen(with)) == 0;
}

bool xasModelHolds(const std::string &line, const std::string &part)
{
    return std::strstr(line.c_str(), part.c_str()) != nullptr;
}
