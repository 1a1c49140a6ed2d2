/** A record as the second model of the texts sees it: bytes at offsets, read by hand. Nothing of the daemon's
 * own description of its messages is used, nor of its handling of lines. */
#ifndef XAS_FUZZ_MODEL_RECORD_H
#define XAS_FUZZ_MODEL_RECORD_H

#include "wire/message.h"

#include <cstdint>
#include <string>
#include <vector>

class XasRecordBytes {
  public:
    explicit XasRecordBytes(const XasMessage &msg) : bytes{reinterpret_cast<const unsigned char *>(&msg)} {}

    /** The same record, offsets counting from its payload on. */
    [[nodiscard]] XasRecordBytes payload() const
    {
        XasRecordBytes shifted = *this;
        shifted.bytes += XAS_PAYLOAD_OFFSET;
        return shifted;
    }

    [[nodiscard]] unsigned u8(std::size_t at) const { return bytes[at]; }
    [[nodiscard]] unsigned u16(std::size_t at) const { return u8(at) | u8(at + 1) << 8; }
    [[nodiscard]] std::uint32_t u32(std::size_t at) const { return u16(at) | u16(at + 2) << 16; }
    [[nodiscard]] std::uint64_t u64(std::size_t at) const
    {
        return u32(at) | static_cast<std::uint64_t>(u32(at + 4)) << 32;
    }

    /** Up to its first NUL, at most `width` bytes. What is read is written: a control character in it is
     * noted. */
    [[nodiscard]] std::string text(std::size_t at, std::size_t width) const;

    [[nodiscard]] bool isZero(std::size_t at, std::size_t width) const;

    /** Dotted. */
    [[nodiscard]] std::string ipv4(std::size_t at) const;
    [[nodiscard]] std::string ipv6(std::size_t at) const;

    /** Of a host record. */
    [[nodiscard]] std::string host(std::size_t at) const;
    [[nodiscard]] bool isHostGiven(std::size_t at) const { return u32(at) == 0 || !text(at + 8, 68).empty(); }
    [[nodiscard]] bool isHostIPv6(std::size_t at) const { return u32(at) == 0 && u32(at + 4) != 0; }

  private:
    const unsigned char *bytes;
};

/** Whether a text that was read since it was last set false held a control character, and a line end. */
struct XasReadControls {
    bool any = false;
    bool lineEnd = false;
};
XasReadControls &xasReadControls();

/** What printf writes, cut behind 511 characters. */
[[gnu::format(printf, 1, 2)]] std::string xasModelLine(const char *format, ...);

/** The same, not cut. */
[[gnu::format(printf, 1, 2)]] std::string xasModelFormat(const char *format, ...);

/** What a loop of fgets with a buffer of 512 bytes hands on, piece by piece. */
std::vector<std::string> xasModelLines(const std::string &text);

/** strtok's n-th token of a line without its end; empty when there is none. */
std::string xasModelToken(const std::string &line, const char *delimiters, int n = 0);

bool xasModelBegins(const std::string &line, const char *with);
bool xasModelHolds(const std::string &line, const std::string &part);

#endif
