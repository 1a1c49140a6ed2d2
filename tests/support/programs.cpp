#include "support/programs.h"

#include "support/stub.h"

#include <fcntl.h>

namespace fs = std::filesystem;

namespace {

constexpr const char *PACKAGES = "/packages/";

/** Tells the programs that we run where the libraries of the unpacked packages are. */
void showLibraries()
{
    const std::string root = PACKAGES;
    std::string path;
    std::error_code missing;
    for (const std::string library : {"lib", "usr/lib"}) {
        for (const auto &entry : fs::directory_iterator{root + library, missing}) {
            if (entry.path().string().ends_with("-linux-gnu"))
                path += entry.path().string() + ":" + (entry.path() / "frr").string() + ":" +
                        (entry.path() / "samba").string() + ":";
        }
    }
    ::setenv("LD_LIBRARY_PATH", path.c_str(), 1);
}

[[noreturn]] void execInto(std::vector<std::string> words, const std::string &output)
{
    const int fd = ::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    ::dup2(fd, STDOUT_FILENO);
    ::dup2(fd, STDERR_FILENO);
    showLibraries();
    std::vector<char *> arguments;
    for (std::string &word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    ::execvp(arguments.front(), arguments.data());
    ::_exit(127);
}

} // namespace

std::string xasUnpackedProgram(const std::string &program)
{
    std::string path = PACKAGES + program;
    if (::access(path.c_str(), X_OK) != 0)
        throw std::runtime_error{path + " is missing: \"./dev setup\" unpacks it into build/packages"};
    return path;
}

XasProgramResult xasRunShell(const std::string &commandLine)
{
    const XasTestDir dir;
    const pid_t pid = ::fork();
    if (pid == 0)
        execInto({"/bin/sh", "-c", commandLine}, dir.path("output"));
    int status = 0;
    ::waitpid(pid, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, dir.read("output")};
}

XasBackgroundProgram::XasBackgroundProgram(std::vector<std::string> words) : pid{::fork()}
{
    if (pid == 0)
        execInto(std::move(words), dir.path("output"));
}

XasBackgroundProgram::~XasBackgroundProgram()
{
    end();
}

bool XasBackgroundProgram::await(std::string_view part) const
{
    return xasEventually([&] { return dir.has("output") && output().find(part) != std::string::npos; });
}

std::string XasBackgroundProgram::end()
{
    if (pid > 0) {
        ::kill(pid, SIGTERM);
        ::waitpid(pid, nullptr, 0);
        pid = -1;
    }
    return output();
}
