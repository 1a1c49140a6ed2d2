// The built daemon: its start, its messages, what it does while it is idle, and its memory.
#include "daemon_bench.h"

#include "files/sync.h"
#include "host_message.h"
#include "support/daemon.h"
#include "table.h"

#include <ctime>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace {

constexpr unsigned MESSAGES = 30;
constexpr std::chrono::seconds IDLE{5};
constexpr std::chrono::milliseconds POLL{100}; // between two looks at the queue
constexpr std::size_t MANY_LINES = 100'000;

double processorSeconds(pid_t pid)
{
    clockid_t clock{};
    timespec used{};
    if (::clock_getcpuclockid(pid, &clock) != 0 || ::clock_gettime(clock, &used) != 0)
        throw std::runtime_error{"no processor time"};
    return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1e-9;
}

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
    const double before = processorSeconds(::getpid());
    XasReplyStatus reply;
    const bool isDone = xasUpdateHostnameCfg(&msg, &files, &reply) == 0;
    xasSyncTouched();
    if (!isDone)
        throw std::runtime_error{"the handler failed"};
    return processorSeconds(::getpid()) - before;
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
        const double before = processorSeconds(daemon.pid());
        answer.add(benchSeconds([&] { daemon.ask(benchMessage(number)); }));
        std::this_thread::sleep_for(POLL / 2); // what it does behind the answer counts, too
        processor.add(processorSeconds(daemon.pid()) - before);
        handler.add(handlerProcessorSeconds(benchMessage(number), list));
    }
    const double poll = std::chrono::duration<double>{POLL}.count();
    benchRow("host-name message to acknowledgement, beyond the poll", (answer.least() - poll) * 1e3, "ms");
    benchRow("processor time of a host-name message", processor.least() * 1e3, "ms");
    benchRow("processor time of it beyond its file work", (processor.least() - handler.least()) * 1e3, "ms",
             0.15);
}

void measureIdleness(pid_t pid)
{
    benchTitle("The daemon: idle (comparable between machines of one kind)");
    const std::initializer_list<std::string_view> switches = {"voluntary_ctxt_switches:"};
    const double before = processSays(pid, "status", switches);
    const double processor = processorSeconds(pid);
    const double seconds = benchSeconds([] { std::this_thread::sleep_for(IDLE); });
    benchRow("wake-ups", (processSays(pid, "status", switches) - before) / seconds, "per s", 10.5);
    benchRow("processor time", (processorSeconds(pid) - processor) / seconds * 1e3, "ms per s");
    benchRow("resident", megabytes(pid, {"Rss:"}), "MB", 2.1);
    benchRow("private, written to", megabytes(pid, {"Private_Dirty:"}), "MB", 0.2);
    benchRow("private, only read: the program's pages that no other process maps",
             megabytes(pid, {"Private_Clean:"}), "MB");
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

} // namespace

void benchDaemon()
{
    const XasTestDir dir;
    const BenchFiles files = benchFiles(dir.path());
    XasTestDaemon daemon;
    const double started = benchSeconds([&] { daemon.start({{.name = "hostname", .cfgFiles = files}}); });
    daemon.ask(benchMessage(1));
    measureIdleness(daemon.pid());
    measurePeak(daemon, dir.path());
    benchFiles(dir.path());
    measureMessages(daemon, files);
    benchRow("start to ready", started * 1e3, "ms");
}
