/** The log of the daemon and of its scripts, as it grows. */
#ifndef XAS_XMS_LOGS_H
#define XAS_XMS_LOGS_H

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/** Where the system logger writes what the daemon logs, and what its scripts do. */
inline constexpr std::array XMS_DEFAULT_LOGS = {"/var/log/sw", "/var/log/general"};

struct XmsLogLine {
    std::int64_t timeMs = 0; /**< when it was read, milliseconds since the epoch */
    std::string text;        /**< without the logger's date and host, and without blanks at its end */
};

/** The text of a line of a log file. */
std::string xmsLogText(std::string_view line);

/** Follows log files from their end; one that is not there yet, from its beginning. */
class XmsLogs {
  public:
    explicit XmsLogs(const std::vector<std::string> &paths);

    /** The lines that have been written since. A file that was replaced or cut short is read from its
     * beginning. */
    std::vector<XmsLogLine> take();

    /** The same once the logger, which writes in its own time, has written nothing for a moment. `pause`
     * sleeps for so long and returns false when there is no more time for that. */
    std::vector<XmsLogLine> settle(const std::function<bool(std::chrono::milliseconds)> &pause = sleep);

  private:
    static bool sleep(std::chrono::milliseconds time);

    struct File {
        std::string path;
        std::uint64_t inode = 0;
        std::int64_t read = 0; /**< bytes */
        std::string rest = {}; /**< a line without its end */
    };

    static void open(File &file, bool atEnd);
    static std::string readNew(File &file);

    std::vector<File> files;
};

#endif
