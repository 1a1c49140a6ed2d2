/** The writes of a disk in order, as the emulator's driver blklogwrites logs them; and the marks between
 * them. */
#ifndef XAS_POWERCUT_LOG_H
#define XAS_POWERCUT_LOG_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

constexpr std::size_t SECTOR = 512;

enum class XasEntryKind { write, flush, markBegin, markEnd, other };

struct XasEntry {
    XasEntryKind kind;
    std::size_t place;     // of a write: its first byte on the disk
    std::string_view data; // of a write; within the log
    std::size_t message;   // of a mark
};

/** What was written between two flushes may reach the disk in any order, or not at all. */
struct XasGroup {
    std::vector<XasEntry> writes;
    std::size_t acknowledged; // the last message whose end was marked by the end of the group
    std::size_t begun;        // the last one whose beginning was
};

/**
 * The entries of a log. A mark is a write at `marks`, behind the file system, of the text "xas-mark begin N"
 * or "xas-mark end N". Throws std::runtime_error for what is no such log.
 */
std::vector<XasEntry> xasReadLog(std::string_view log, std::size_t marks);

/** The writes between flushes. */
std::vector<XasGroup> xasGroupEntries(const std::vector<XasEntry> &entries);

/** A file or block device, whole. */
std::string xasReadWhole(const std::string &path);

#endif
