// The built daemon: its start, its messages, what it does while it is idle, and its memory.
#include "daemon_bench.h"

#include "dispatch/settings.h"
#include "files/sync.h"
#include "host_message.h"
#include "processor.h"
#include "support/daemon.h"
#include "support/settings_files.h"
#include "table.h"

#include <csignal>
#include <deque>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace {

constexpr unsigned MESSAGES = 30;
constexpr std::chrono::seconds IDLE{5};
constexpr std::chrono::milliseconds POLL{100}; // between two looks at the queue
constexpr std::size_t MANY_LINES = 100'000;

/** The sum of what a file of /proc says of the process for these names. */
double processSays(pid_t pid, const char *file, std::initializer_list<std::string_view> names)
{
    double sum = 0;
    std::ifstream lines{"/proc/" + std::to_string(pid) + "/" + file};
    for (std::string line; std::getline(lines, line);) {
        for (const std::string_view name : names)
            sum += line.starts_with(name) ? std::stod(line.substr(name.size())) : 0;
    }
    return sum;
}

double megabytes(pid_t pid, std::initializer_list<std::string_view> names)
{
    return processSays(pid, "smaps_rollup", names) / 1024;
}

/** The processor time of the handler alone, in this process, which has slept before it as the daemon does. */
double handlerProcessorSeconds(XasMessage msg, const XasCfgFileList &files)
{
    std::this_thread::sleep_for(POLL);
    const double before = benchProcessorSeconds(::getpid());
    XasReplyStatus reply;
    const bool isDone = xasUpdateHostnameCfg(&msg, &files, &reply) == 0;
    xasSyncTouched();
    if (!isDone)
        throw std::runtime_error{"the handler failed"};
    return benchProcessorSeconds(::getpid()) - before;
}

/** A message that is sent when one has just been answered waits for a whole poll. */
void measureMessages(XasTestDaemon &daemon, const BenchFiles &files)
{
    benchTitle("The daemon: messages (times do not compare between machines)");
    const XasCfgFileList list = xasTestCfgFiles(files);
    BenchTimes answer;
    BenchTimes processor;
    BenchTimes handler;
    for (unsigned number = 1; number <= MESSAGES; ++number) {
        daemon.ask(benchMessage(number));
        const double before = benchProcessorSeconds(daemon.pid());
        answer.add(benchSeconds([&] { daemon.ask(benchMessage(number)); }));
        std::this_thread::sleep_for(POLL / 2); // what it does behind the answer counts, too
        processor.add(benchProcessorSeconds(daemon.pid()) - before);
        handler.add(handlerProcessorSeconds(benchMessage(number), list));
    }
    const double poll = std::chrono::duration<double>{POLL}.count();
    benchRow("host-name message to acknowledgement, beyond the poll", (answer.median() - poll) * 1e3, "ms");
    benchRow("processor time of a host-name message", processor.least() * 1e3, "ms");
    benchRow("processor time of it beyond its file work: a command",
             (processor.least() - handler.least()) * 1e3, "ms");
}

void measureIdleness(pid_t pid)
{
    benchTitle("The daemon: idle after a message of each type (comparable between machines of one kind)");
    const std::initializer_list<std::string_view> switches = {"voluntary_ctxt_switches:"};
    const double before = processSays(pid, "status", switches);
    const double processor = benchProcessorSeconds(pid);
    const double seconds = benchSeconds([] { std::this_thread::sleep_for(IDLE); });
    benchRow("wake-ups", (processSays(pid, "status", switches) - before) / seconds, "per s", 10.5);
    benchRow("processor time", (benchProcessorSeconds(pid) - processor) / seconds * 1e3, "ms per s");
    benchRow("resident", megabytes(pid, {"Rss:"}), "MB", 2.1);
    benchRow("private, written to", megabytes(pid, {"Private_Dirty:"}), "MB", 0.2);
    benchRow("private, only read: the program's pages that no other process maps",
             megabytes(pid, {"Private_Clean:"}), "MB");
}

void measureStart()
{
    const XasTestDir dir;
    const BenchFiles files = benchFiles(dir.path());
    BenchTimes start;
    for (int round = 0; round < 3; ++round) {
        XasTestDaemon daemon;
        start.add(benchSeconds([&] { daemon.start({{.name = "hostname", .cfgFiles = files}}); }));
    }
    benchRow("start to ready", start.least() * 1e3, "ms");
}

/** A program under supervision that is killed, until it has been started again. */
void measureRestart()
{
    XasTestDaemon daemon;
    const std::string program = daemon.stubs.make("supervised", 0, "exec sleep 1000");
    daemon.start({{.name = "firewall", .exes = {program}}});
    daemon.ask(XasMessageBuilder{XMSG_FIREWALL});
    const auto hasStarted = [&](std::ptrdiff_t times) {
        return xasEventually([&] { return std::ranges::count(daemon.stubs.lines(), program) == times; });
    };
    BenchTimes restart;
    for (std::ptrdiff_t death = 1; death <= 3; ++death) {
        bool isBack = hasStarted(death);
        for (const pid_t pid : daemon.group()) {
            if (pid != daemon.pid())
                ::kill(pid, SIGKILL);
        }
        restart.add(benchSeconds([&] { isBack = isBack && hasStarted(death + 1); }));
        if (!isBack)
            throw std::runtime_error{"the daemon under supervision was not started"};
    }
    benchRow("death of a daemon to the start of its successor", restart.median() * 1e3, "ms");
}

/** The daemon is asked once for each setting; its application has other files than those of the other
 * settings. */
void askForEachSetting(XasTestDaemon &daemon, const BenchFiles &hostFiles)
{
    std::deque<XasTestDir> directories;
    std::vector<const XasExpectedSetting *> settings;
    std::vector<XasTestApp> apps = {{.name = "hostname", .cfgFiles = hostFiles}};
    for (const XasExpectedSetting &setting : xasExpectedSettings()) {
        if (setting.application == "hostname" || !xasFindSetting(setting.msgtype)->answered)
            continue;
        settings.push_back(&setting);
        apps.push_back({.name = setting.application,
                        .cfgFiles = xasSettingFileList(setting, directories.emplace_back())});
    }
    daemon.start(apps);
    daemon.ask(benchMessage(1));
    for (std::size_t i = 0; i < settings.size(); ++i) {
        xasPutSettingFiles(*settings[i], directories[i]); // those at fixed paths are the same for several
        daemon.ask(settings[i]->message);
    }
}

/** How much memory a message takes that changes a large file. */
void measurePeak(XasTestDaemon &daemon, const std::string &directory)
{
    const double idle = processSays(daemon.pid(), "status", {"VmHWM:"});
    benchFiles(directory, MANY_LINES);
    const double size = static_cast<double>(std::filesystem::file_size(directory + "/hosts")) / 1024;
    daemon.ask(benchMessage(1));
    const double peak = processSays(daemon.pid(), "status", {"VmHWM:"});
    benchRow("peak of memory above idle, beside the file of 100,000 lines", (peak - idle) / size, "ratio",
             2.2);
    benchRow("resident after it", megabytes(daemon.pid(), {"Rss:"}), "MB");
}

/** One daemon at a time: there is one pair of queues. */
void measureOne()
{
    const XasTestDir dir;
    const BenchFiles files = benchFiles(dir.path());
    XasTestDaemon daemon;
    askForEachSetting(daemon, files);
    measureIdleness(daemon.pid());
    measurePeak(daemon, dir.path());
    benchFiles(dir.path());
    measureMessages(daemon, files);
}

} // namespace

void benchDaemon()
{
    measureOne();
    measureStart();
    measureRestart();
}
