#include "xms/logs.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

/** The logger has settled when it wrote nothing for so long; and nobody waits longer than that. */
constexpr std::chrono::milliseconds QUIET{30};
constexpr std::chrono::milliseconds SETTLE_MAX{500};

/** What one look takes at most of a file; the rest waits for the next. */
constexpr std::size_t LOOK_MAX = 1U << 20;

std::int64_t nowMs()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

/** True for "Nov 22 05:21:43 ", with which the logger begins a line. */
bool hasDate(std::string_view line)
{
    static constexpr std::string_view FORM = "Aaa 00 00:00:00 ";
    const auto fits = [](char c, char form) {
        const auto code = static_cast<unsigned char>(c);
        if (form == '0')
            return std::isdigit(code) != 0 || c == ' ';
        return form == 'A' || form == 'a' ? std::isalpha(code) != 0 : c == form;
    };
    return line.size() > FORM.size() && std::equal(FORM.begin(), FORM.end(), line.begin(),
                                                   [&](char form, char c) { return fits(c, form); });
}

} // namespace

std::string xmsLogText(std::string_view line)
{
    line = line.substr(0, line.find_last_not_of(" \t\r") + 1);
    if (!hasDate(line))
        return std::string{line};
    const std::size_t host = std::string_view{"Aaa 00 00:00:00 "}.size();
    const std::size_t text = line.find(' ', host);
    return std::string{line.substr(text == std::string_view::npos ? host : text + 1)};
}

XmsLogs::XmsLogs(const std::vector<std::string> &paths)
{
    for (const std::string &path : paths) {
        files.push_back({.path = path});
        open(files.back(), true);
    }
}

void XmsLogs::open(File &file, bool atEnd)
{
    struct stat status {};
    const bool isThere = stat(file.path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
    file.inode = isThere ? status.st_ino : 0;
    file.read = isThere && atEnd ? status.st_size : 0;
    file.rest.clear();
}

std::string XmsLogs::readNew(File &file)
{
    struct stat status {};
    if (stat(file.path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    if (status.st_ino != file.inode || status.st_size < file.read)
        open(file, false);
    const int log = ::open(file.path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    std::string text(std::min(static_cast<std::size_t>(status.st_size - file.read), LOOK_MAX), '\0');
    const ssize_t size = log < 0 ? 0 : pread(log, text.data(), text.size(), static_cast<off_t>(file.read));
    if (log >= 0)
        close(log);
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    file.read += static_cast<std::int64_t>(text.size());
    return text;
}

std::vector<XmsLogLine> XmsLogs::take()
{
    std::vector<XmsLogLine> lines;
    for (File &file : files) {
        file.rest += readNew(file);
        for (std::size_t end = file.rest.find('\n'); end != std::string::npos; end = file.rest.find('\n')) {
            lines.push_back({nowMs(), xmsLogText(std::string_view{file.rest}.substr(0, end))});
            file.rest.erase(0, end + 1);
        }
    }
    return lines;
}

bool XmsLogs::sleep(std::chrono::milliseconds time)
{
    std::this_thread::sleep_for(time);
    return true;
}

std::vector<XmsLogLine> XmsLogs::settle(const std::function<bool(std::chrono::milliseconds)> &pause)
{
    std::vector<XmsLogLine> lines;
    const auto end = std::chrono::steady_clock::now() + SETTLE_MAX;
    for (bool isQuiet = files.empty(); !isQuiet && std::chrono::steady_clock::now() < end;) {
        const bool isTime = pause(QUIET);
        const auto more = take();
        isQuiet = more.empty() || !isTime;
        lines.insert(lines.end(), more.begin(), more.end());
    }
    return lines;
}
