/**
 * What every fuzz target is made of: an input taken apart, properties that end the program when they do not
 * hold, and the log, which nobody sees but the target. A target is one function over bytes; libFuzzer calls
 * it with what it invents ("./dev fuzz"), the replaying program with the files of its corpus ("./dev test").
 */
#ifndef XAS_FUZZ_SUPPORT_FUZZ_H
#define XAS_FUZZ_SUPPORT_FUZZ_H

#include "wire/message.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/** The target. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/** Called once before the first input; does nothing for a target that has no need of it. */
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);

/** The bytes of an input, taken from the front; behind its end there are zeroes. */
class XasFuzzInput {
  public:
    XasFuzzInput(const std::uint8_t *data, std::size_t size)
        : bytes{reinterpret_cast<const char *>(data), size}
    {
    }

    [[nodiscard]] bool isEmpty() const { return bytes.empty(); }
    std::uint8_t byte();
    std::uint16_t word();

    /** As many of the next bytes as there are. */
    std::string_view take(std::size_t atMost);

    /** A text with its length, two bytes, in front. */
    std::string_view text() { return take(word()); }

    std::string_view rest() { return take(bytes.size()); }

    /** A record of that type: the length of the payload, two bytes, and the payload; what is not given is
     * zero. */
    XasMessage record(std::uint32_t msgtype);

  private:
    std::string_view bytes;
};

/** Says what does not hold, with the texts that show it, and aborts. */
[[noreturn]] void xasFuzzFail(std::string_view property, std::string_view first = {},
                              std::string_view second = {});

/** Ends the program unless `holds`. */
inline void xasFuzzRequire(bool holds, std::string_view property, std::string_view first = {},
                           std::string_view second = {})
{
    if (!holds)
        xasFuzzFail(property, first, second);
}

/** More than 0 while a target works for itself: what is allocated then is its own, also inside a pretended
 * child. */
extern int xasOwnWork;

class XasOwnWork {
  public:
    XasOwnWork() { ++xasOwnWork; }
    ~XasOwnWork() { --xasOwnWork; }
    XasOwnWork(const XasOwnWork &) = delete;
    XasOwnWork &operator=(const XasOwnWork &) = delete;
};

/** The lines that were logged since it was last emptied, each ended as it was given. That each is one line
 * without control characters is required of all of them. */
std::string &xasFuzzLog();

/** How many lines were logged in all. */
std::uint64_t xasFuzzLogLines();

#endif
