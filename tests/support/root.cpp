#include "support/root.h"

#include "support/emulator.h"
#include "support/files.h"

#include <cstdio>
#include <fcntl.h>

namespace fs = std::filesystem;

namespace {

constexpr const char *MARK = "/.xas-private-root";
constexpr const char *HOST_USR = "/.host/usr";

/** The descriptor over which the run inside tells that it has begun; bubblewrap passes it on. */
constexpr int BEGUN_FD = 93;

using Words = std::vector<std::string>;

void add(Words &words, std::initializer_list<std::string> more)
{
    words.insert(words.end(), more);
}

/** Directories that tests change; their programs are linked one by one. */
bool isOwnDirectory(const fs::path &name)
{
    return name == "bin" || name == "sbin" || name == "etc";
}

void addUsr(Words &words)
{
    add(words, {"--ro-bind", "/usr", HOST_USR, "--dir", "/usr/bin", "--dir", "/usr/sbin"});
    for (const auto &entry : fs::directory_iterator{"/usr"}) {
        if (entry.is_directory() && !isOwnDirectory(entry.path().filename()))
            add(words, {"--ro-bind", entry.path(), entry.path()});
    }
    add(words, {"--symlink", "usr/bin", "/bin", "--symlink", "usr/sbin", "/sbin"});
    for (const char *library : {"/lib", "/lib32", "/lib64", "/libx32"}) {
        std::error_code isNoLink; // nor to an emulator that has libraries of its own for /lib
        const fs::path target = fs::read_symlink(library, isNoLink);
        if (isNoLink)
            add(words, {"--ro-bind-try", library, library});
        else
            add(words, {"--symlink", target, library});
    }
}

Words sandboxCommand(int argc, char **argv)
{
    Words words{"bwrap",
                "--unshare-user",
                "--uid",
                "0",
                "--gid",
                "0",
                "--unshare-ipc",
                "--unshare-net",
                "--unshare-pid",
                "--unshare-uts",
                "--cap-add",
                "ALL",
                "--die-with-parent",
                "--new-session",
                "--hostname",
                "appliance",
                "--dir",
                MARK};
    addUsr(words);
    add(words, {"--ro-bind-try", "/etc/alternatives", "/etc/alternatives"});
    add(words, {"--ro-bind-try", XAS_BUILD_DIR "/../packages", "/packages"});
    add(words, {"--proc", "/proc", "--dev", "/dev", "--dir", "/tmp", "--dir", "/etc", "--dir", "/root"});
    add(words, {"--dir", "/var/log", "--dir", "/var/run", "--dir", "/var/lock", "--dir", "/www/savelogs"});
    const std::string libraries = fs::path{XAS_BUILD_DIR}.parent_path() / "sysroot"; // of another machine
    add(words, {"--ro-bind-try", libraries, libraries});
    add(words, {"--bind", XAS_BUILD_DIR, XAS_BUILD_DIR, "--chdir", "/", "--setenv", "HOME", "/root"});
    add(words, {"--setenv", "PATH", "/usr/bin:/usr/sbin:/bin:/sbin", "--unsetenv", "XMS_STORE"});
    Words self = xasCommandOf(fs::read_symlink("/proc/self/exe"));
    if (self.size() > 1) // an emulator, which is no program of the new root yet
        self.front().replace(0, std::string_view{"/usr"}.size(), HOST_USR);
    words.insert(words.end(), self.begin(), self.end());
    words.insert(words.end(), argv + 1, argv + argc);
    return words;
}

[[noreturn]] void execSandbox(Words words, int begunFd)
{
    std::vector<char *> arguments;
    for (std::string &word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    ::dup2(begunFd, BEGUN_FD);
    ::execvp(arguments.front(), arguments.data());
    std::fprintf(stderr, "bwrap: %s\n", std::strerror(errno));
    ::_exit(127);
}

int runInside(int argc, char **argv)
{
    std::array<int, 2> begun{};
    if (::pipe2(begun.data(), O_CLOEXEC) != 0)
        return 1;
    const pid_t pid = ::fork();
    if (pid == 0)
        execSandbox(sandboxCommand(argc, argv), begun[1]);
    ::close(begun[1]);
    char mark = 0;
    const bool hasBegun = ::read(begun[0], &mark, 1) == 1;
    int status = 0;
    ::waitpid(pid, &status, 0);
    if (!hasBegun) {
        std::fprintf(stderr,
                     "These tests run in a private root, which this machine cannot make: bubblewrap (the "
                     "package bubblewrap) and user namespaces are needed.\n");
        return 1;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

void linkPrograms(const char *directory)
{
    for (const auto &entry : fs::directory_iterator{std::string{HOST_USR} + directory})
        fs::create_symlink(entry.path(),
                           "/usr" + std::string{directory} + "/" + entry.path().filename().string());
}

/** What bubblewrap's options do not say. */
void furnish()
{
    linkPrograms("/bin");
    linkPrograms("/sbin");
    fs::permissions("/tmp", fs::perms{01777});
    xasWriteFile("/etc/passwd", "root:x:0:0:root:/root:/bin/sh\n");
    xasWriteFile("/etc/group", "root:x:0:\n");
    xasWriteFile("/etc/hosts", "127.0.0.1\tlocalhost\n");
    xasWriteFile("/etc/nsswitch.conf", "passwd: files\ngroup: files\nhosts: files\n");
}

bool onlyLists(int argc, char **argv)
{
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument{argv[i]};
        if (argument.starts_with("--gtest_list_tests") || argument == "--help")
            return true;
    }
    return false;
}

} // namespace

bool xasInPrivateRoot()
{
    return ::access(MARK, F_OK) == 0;
}

std::optional<int> xasEnterPrivateRoot(int argc, char **argv)
{
    if (onlyLists(argc, argv))
        return std::nullopt;
    if (!xasInPrivateRoot())
        return runInside(argc, argv);
    if (::write(BEGUN_FD, "!", 1) == 1) {
        ::close(BEGUN_FD);
        furnish();
    }
    return std::nullopt;
}
