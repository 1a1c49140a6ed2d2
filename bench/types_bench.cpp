#include "types_bench.h"

#include "allocations.h"
#include "dispatch/settings.h"
#include "files/sync.h"
#include "processor.h"
#include "support/daemon.h"
#include "support/settings_files.h"
#include "table.h"

#include <cstdio>
#include <stdexcept>
#include <thread>

namespace {

constexpr unsigned ROUNDS = 8;
constexpr std::chrono::milliseconds POLL{100};   // between two looks at the queue
constexpr std::chrono::milliseconds SETTLED{20}; // what the daemon does behind an answer takes less
constexpr double MOST_BEYOND_FILES = 0.15e-3;    // seconds, of a message that runs no command

/** In seconds. */
struct TypeCost {
    BenchTimes answer;
    BenchTimes processor;
    BenchTimes
        handler; /**< the processor time of the same work in this process, which has slept before, too */
    unsigned long allocations = 0;
    std::size_t commands = 0;
};

XasMessage numbered(const XasExpectedSetting &setting, unsigned number)
{
    XasMessage msg = setting.message;
    msg.xH.id = number;
    return msg;
}

void measureHandler(const XasExpectedSetting &setting, const XasTestDir &dir, TypeCost &cost)
{
    const XasCfgFileList files = xasTestCfgFiles(xasSettingFileList(setting, dir));
    XasMessage msg = setting.message;
    XasReplyStatus reply;
    std::this_thread::sleep_for(POLL);
    const unsigned long allocations = allocationsSoFar();
    const double before = benchProcessorSeconds(::getpid());
    const bool isDone = xasCallHandler(setting.msgtype, &msg, &files, &reply) == 0;
    xasSyncTouched();
    cost.handler.add(benchProcessorSeconds(::getpid()) - before);
    cost.allocations = allocationsSoFar() - allocations;
    if (!isDone)
        throw std::runtime_error{"the handler of " + setting.name + " failed: " + reply.rstr};
}

/** A message that is sent when one has just been answered waits for a whole poll. The wake-up that finds it
 * counts, and nothing of the idle ones around it. */
void measureMessage(const XasExpectedSetting &setting, unsigned number, XasTestDaemon &daemon, TypeCost &cost)
{
    double before = 0;
    daemon.ask(numbered(setting, number));
    const double answered = benchSeconds([&] {
        std::this_thread::sleep_for(SETTLED);
        daemon.stubs.forget();
        before = benchProcessorSeconds(daemon.pid());
        daemon.ask(numbered(setting, number));
    });
    std::this_thread::sleep_for(SETTLED);
    cost.processor.add(benchProcessorSeconds(daemon.pid()) - before);
    cost.answer.add(answered - std::chrono::duration<double>{POLL}.count());
}

TypeCost measureType(const XasExpectedSetting &setting)
{
    TypeCost cost;
    const XasTestDir dir;
    xasPutSettingFiles(setting, dir);
    XasTestDaemon daemon;
    daemon.start({{.name = setting.application, .cfgFiles = xasSettingFileList(setting, dir)}});
    for (unsigned number = 1; number <= ROUNDS; ++number) {
        measureHandler(setting, dir, cost);
        measureMessage(setting, number, daemon, cost);
    }
    cost.commands = daemon.stubs.calls().size();
    return cost;
}

void printType(const std::string &name, const TypeCost &cost)
{
    const double beyond = cost.processor.least() - cost.handler.least();
    const bool isBounded = cost.commands == 0;
    std::printf("| %-18s | %11.2f | %9.3f | %12.3f |%-7s | %11lu | %8zu |\n", name.c_str(),
                cost.answer.median() * 1e3, cost.processor.least() * 1e3, beyond * 1e3,
                isBounded && beyond > MOST_BEYOND_FILES ? " missed" : "", cost.allocations, cost.commands);
    std::fflush(stdout);
}

} // namespace

void benchTypes()
{
    std::printf(
        "\nEach type's message in memory, in ms; beyond its files at most %.2f where no command runs\n\n",
        MOST_BEYOND_FILES * 1e3);
    std::printf(
        "| type               | beyond poll | processor | beyond files |        | allocations | commands |\n"
        "|--------------------|------------:|----------:|-------------:|--------|------------:|---------:|\n");
    for (const XasExpectedSetting &setting : xasExpectedSettings()) {
        if (!setting.files.empty() && xasFindSetting(setting.msgtype)->answered)
            printType(setting.name, measureType(setting));
    }
}
