#include "core/startup.h"

#include "core/log.h"
#include "core/msgqueue.h"
#include "core/shell.h"
#include "core/sysapp_parser.h"
#include "core/utils.h"
#include "core/wait.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <getopt.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

constexpr auto QUEUE_RETRY_INTERVAL = 1000ms;

/** "daemon" keeps the program in the foreground, as "-f" does. */
constexpr std::array LONG_OPTIONS = {
    option{"conf", required_argument, nullptr, 'c'},
    option{"daemon", no_argument, nullptr, 'f'},
    option{"help", no_argument, nullptr, 'h'},
    option{"version", no_argument, nullptr, 'v'},
    option{nullptr, 0, nullptr, 0},
};

void printUsage(const char *program)
{
    std::printf("%s [-f] [-h] [-v] -[c file]\n", program);
    std::printf("\t\t -c file    : the xml conf file to use if not default\n"
                "              \t\t -f    : do not run as daemon\n"
                "              \t\t -v, -h  : print version and show this help respectively.\n");
}

/** Takes one option over; true when reading goes on. */
bool takeOption(int letter, XasOptions &options, const char *program)
{
    switch (letter) {
    case 'c':
        options.listPath = optarg;
        return true;
    case 'f':
        options.asDaemon = false;
        return true;
    case 'h':
        printUsage(program);
        options.exitAtOnce = true;
        return false;
    case 'v':
        options.exitAtOnce = true;
        return false;
    default:
        std::printf("unknown option\n");
        return true;
    }
}

} // namespace

XasOptions xasParseOptions(int argc, char *argv[])
{
    XasOptions options;
    int letter = 0;
    do
        letter = ::getopt_long(argc, argv, "fvhc:", LONG_OPTIONS.data(), nullptr);
    while (letter != -1 && takeOption(letter, options, argv[0]));
    // The daemon may fork, and is ended by a signal: what was printed must be out before.
    std::fflush(stdout);
    return options;
}

int xasOpenAppList(const std::string &path, XasAppList &apps)
{
    if (::access(path.c_str(), R_OK) != 0) {
        std::fprintf(stderr, "%s access error(%d)\n", path.c_str(), errno);
        return -1;
    }
    if (xasLoadAppList(path.c_str(), apps) != 0) {
        std::fprintf(stderr, "Error allocating application list\n");
        return -1;
    }
    return 0;
}

std::optional<int> xasDetach()
{
    const pid_t pid = ::fork();
    if (pid < 0) {
        std::perror("fork error");
        return 1;
    }
    if (pid > 0)
        return 0;
    ::setsid();
    [[maybe_unused]] const int entered = ::chdir("/");
    ::umask(0);
    return std::nullopt;
}

void xasResetPacketFilter()
{
    xasTrySystem(XasShellCommand{"/usr/bin/xas_iptables.sh resetAll"});
}

void xasMakeWorkDirs()
{
    for (const char *path : {"/etc/zel", "/usr/etc"}) {
        if (xasIsDirectory(path) == 0) {
            ::unlink(path);
            ::mkdir(path, 0777);
        }
    }
}

void xasAwaitMsgQueues()
{
    while (xasInitMsgQueues() != 0)
        xasWait(QUEUE_RETRY_INTERVAL);
}

void xasTerminate(XasAppList &apps)
{
    xasLogInfo("sig %s - kill all processes\n", strsignal(SIGTERM));
    while (!apps.empty())
        xasFreeApp(apps, &apps.front());
    ::kill(0, SIGKILL);
}
