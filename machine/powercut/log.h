/** The writes of a disk in order, as the emulator's driver blklogwrites logs them, or those of a flash, which
 * trace.h brings into the same form; and the marks between them. */
#ifndef XAS_POWERCUT_LOG_H
#define XAS_POWERCUT_LOG_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/** What holds the file system. Behind its end lie the marks. */
struct XasMedium {
    std::size_t end;
    bool isFlash;
};
constexpr XasMedium DISK{16 << 20, false};
constexpr XasMedium FLASH{0x200000, true};

constexpr std::size_t FLASH_PAGE = 256; // what is programmed at once, at most
constexpr std::size_t FLASH_BLOCK = 64 << 10;

enum class XasEntryKind { write, erase, flush, markBegin, markEnd, other };

struct XasEntry {
    XasEntryKind kind;
    std::size_t place;     // of a write or the block that is erased: its first byte
    std::string_view data; // of a write; within the log
    std::size_t message;   // of a mark
};

/** What was written between two flushes may reach a disk in any order, or not at all. A flash does one thing
 * after the other: each is a group. */
struct XasGroup {
    std::vector<XasEntry> writes;
    std::size_t acknowledged; // the last message whose end was marked by the end of the group
    std::size_t begun;        // the last one whose beginning was
};

/**
 * The entries of a log. A mark is a write of the text "xas-mark begin N" or "xas-mark end N". Throws
 * std::runtime_error for what is no such log.
 */
std::vector<XasEntry> xasReadLog(std::string_view log, const XasMedium &medium);

std::vector<XasGroup> xasGroupEntries(const std::vector<XasEntry> &entries, const XasMedium &medium);

/** A file or block device, whole. */
std::string xasReadWhole(const std::string &path);

#endif
