// Stands in for the scripts, daemons and commands of an appliance whose daemon is disturbed on purpose.
// Linked under each of their names; writes down how it was called, one line a call, and does what its name
// says:
//
//   a program in /r58/sbin, ntpd or syslogd   stays until a signal ends it
//   smbd, nmbd                                leave a child behind that stays, and its pid in two files
//   adduser, deluser                          change the list of accounts
//   iptables -L                               lists one rule of the first Ethernet port
//   ipsec                                     prints a host key
//
// Static, so that starting it takes next to no time.
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <unistd.h>

namespace {

constexpr const char *CALLS = "/calls";
const std::string ACCOUNTS = "/etc/passwd";

void noteCall(int argc, char **argv)
{
    std::string line;
    for (int i = 0; i < argc; ++i)
        line += std::string{i == 0 ? "" : " "} + argv[i];
    line += '\n';
    const int fd = ::open(CALLS, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    [[maybe_unused]] const ssize_t written = ::write(fd, line.data(), line.size());
    ::close(fd);
}

[[noreturn]] void stay()
{
    for (;;)
        ::pause();
}

const char *const PID_DIRECTORIES[] = {"/var/run/", "/var/lock/"};

std::string serverName;

/** A server takes its pid files along. */
void endServer(int /*signal*/)
{
    for (const char *directory : PID_DIRECTORIES)
        ::unlink((directory + serverName + ".pid").c_str());
    ::_exit(EXIT_SUCCESS);
}

/** As the real ones, it does not begin twice. */
int serveInBackground(const std::string &name)
{
    pid_t other = 0;
    if (std::ifstream{"/var/run/" + name + ".pid"} >> other && ::kill(other, 0) == 0)
        return EXIT_FAILURE;
    if (::fork() != 0)
        return EXIT_SUCCESS;
    serverName = name;
    std::signal(SIGTERM, endServer);
    for (const char *directory : PID_DIRECTORIES)
        std::ofstream{directory + name + ".pid"} << ::getpid() << '\n';
    stay();
}

std::string accounts()
{
    std::ostringstream text;
    text << std::ifstream{ACCOUNTS}.rdbuf();
    return text.str();
}

int putAccounts(const std::string &text)
{
    const std::string temporary = ACCOUNTS + "-";
    std::ofstream{temporary} << text;
    return std::rename(temporary.c_str(), ACCOUNTS.c_str()) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

int addUser(const std::string &login, const std::string &uid)
{
    const std::string all = accounts();
    if (("\n" + all).find("\n" + login + ":") != std::string::npos)
        return EXIT_FAILURE;
    return putAccounts(all + login + ":x:" + uid + ":100::/:/bin/cli\n");
}

int deleteUser(const std::string &login)
{
    std::istringstream all{accounts()};
    std::string rest;
    bool found = false;
    for (std::string line; std::getline(all, line);) {
        const bool isIt = line.starts_with(login + ":");
        found = found || isIt;
        rest += isIt ? "" : line + "\n";
    }
    return found ? putAccounts(rest) : EXIT_FAILURE;
}

std::string optionOf(int argc, char **argv, std::string_view option)
{
    for (int i = 1; i + 1 < argc; ++i) {
        if (argv[i] == option)
            return argv[i + 1];
    }
    return {};
}

bool isDaemon(std::string_view path, std::string_view name)
{
    return path.starts_with("/r58/sbin/") || name == "ntpd" || name == "syslogd";
}

} // namespace

int main(int argc, char **argv)
{
    noteCall(argc, argv);
    const std::string path = argv[0];
    const std::string name = path.substr(path.rfind('/') + 1);
    const std::string last = argv[argc - 1];
    if (isDaemon(path, name))
        stay();
    if (name == "smbd" || name == "nmbd")
        return serveInBackground(name);
    if (name == "adduser")
        return addUser(last, optionOf(argc, argv, "-u"));
    if (name == "deluser")
        return deleteUser(last);
    if (name == "iptables" && optionOf(argc, argv, "-L") == "INPUT")
        std::puts("    0     0 modem-users  all  --  eth0   *       0.0.0.0/0            0.0.0.0/0");
    if (name == "ipsec")
        std::puts("\tleftrsasigkey=0sAQOkey");
    return EXIT_SUCCESS;
}
