#include "support/fuzz.h"

#include "wire/control.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <syslog.h>

namespace {

std::uint64_t logLines = 0;

void print(std::string_view text)
{
    for (const char c : text) {
        if (c == '\n')
            std::fputs("\\n\n", stderr);
        else if (xasIsControl(c) || static_cast<unsigned char>(c) >= 0x80)
            std::fprintf(stderr, "\\%03o", static_cast<unsigned char>(c));
        else
            std::fputc(c, stderr);
    }
    std::fputs("\n----\n", stderr);
}

void logLine(const char *format, va_list arguments)
{
    const XasOwnWork own;
    std::array<char, 8192> buffer{};
    const int length = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    const std::string_view line{buffer.data(),
                                std::min<std::size_t>(static_cast<unsigned>(length), buffer.size() - 1)};
    const std::string_view text = line.substr(0, line.size() - (line.ends_with('\n') ? 1 : 0));
    xasFuzzRequire(std::ranges::none_of(text, xasIsControl), "a log entry is one line", line);
    ++logLines;
    xasFuzzLog() += line;
    xasFuzzLog() += line.ends_with('\n') ? "" : "\n";
}

} // namespace

int xasOwnWork = 0;

std::uint8_t XasFuzzInput::byte()
{
    const std::string_view taken = take(1);
    return taken.empty() ? 0 : static_cast<std::uint8_t>(taken.front());
}

std::uint16_t XasFuzzInput::word()
{
    const std::uint8_t low = byte();
    return static_cast<std::uint16_t>(low | byte() << 8);
}

std::string_view XasFuzzInput::take(std::size_t atMost)
{
    const std::string_view taken = bytes.substr(0, atMost);
    bytes.remove_prefix(taken.size());
    return taken;
}

XasMessage XasFuzzInput::record(std::uint32_t msgtype)
{
    XasMessage msg{};
    msg.xH.msgtype = msgtype;
    const std::string_view payload = take(std::min<std::size_t>(word(), msg.payload.size()));
    std::memcpy(msg.payload.data(), payload.data(), payload.size());
    return msg;
}

void xasFuzzFail(std::string_view property, std::string_view first, std::string_view second)
{
    std::fprintf(stderr, "does not hold: %.*s\n----\n", static_cast<int>(property.size()), property.data());
    print(first);
    print(second);
    std::abort();
}

std::string &xasFuzzLog()
{
    static std::string log;
    return log;
}

std::uint64_t xasFuzzLogLines()
{
    return logLines;
}

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): the C library's names are reserved ones
extern "C" {

__attribute__((weak)) int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/)
{
    return 0;
}

void syslog(int /*priority*/, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    logLine(format, arguments);
    va_end(arguments);
}

/** What a fortified program calls instead. */
void __syslog_chk(int /*priority*/, int /*flag*/, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    logLine(format, arguments);
    va_end(arguments);
}

void vsyslog(int /*priority*/, const char *format, va_list arguments)
{
    logLine(format, arguments);
}

void openlog(const char * /*ident*/, int /*option*/, int /*facility*/) {}
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
