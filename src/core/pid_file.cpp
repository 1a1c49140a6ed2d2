#include "core/pid_file.h"

#include "core/file.h"

#include <array>
#include <cstdlib>

namespace {

/** The first line, at most 99 characters; empty when there is none. */
std::string firstLine(const std::string &path)
{
    const XasFile file = xasOpenFile(path);
    std::array<char, 100> line{};
    if (!file || std::fgets(line.data(), line.size(), file.get()) == nullptr)
        return {};
    return line.data();
}

} // namespace

pid_t xasRunningServer(const std::string &pidFile, const std::string &server)
{
    const pid_t pid = std::atoi(firstLine(pidFile).c_str());
    const bool isServer = pid > 1 && firstLine("/proc/" + std::to_string(pid) + "/comm") == server + "\n";
    return isServer ? pid : 0;
}
