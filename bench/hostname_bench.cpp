/**
 * What a host-name change costs: from its arrival on the queue to its acknowledgement with the built daemon
 * (which looks at the queue every 100 ms), and the handler alone, with its allocations.
 */
#include "allocations.h"
#include "config/hostname.h"
#include "support/daemon.h"
#include "support/root.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <ctime>

namespace {

using Files = std::vector<std::pair<std::string, std::string>>;

XasMessage hostnameMessage(unsigned number)
{
    XasHostnamePayload payload{};
    xasSetFieldText(payload.hostname, "console" + std::to_string(number));
    xasSetFieldText(payload.domain, "example.org");
    return XasMessageBuilder{XMSG_HOSTNAME}.id(number).payload(payload).build();
}

/** Files as an appliance has them. */
Files makeFiles(const XasTestDir &dir)
{
    return {{"hosts", dir.write("hosts", "127.0.0.1\tconsole\tlocalhost.localdomain\tlocalhost\n"
                                         "::1\tlocalhost ip6-localhost\n192.168.10.1\tgateway\n")},
            {"hostname", dir.write("hostname", "console\n")},
            {"network", dir.write("network", "NETWORKING=yes\nHOSTNAME=console\nGATEWAY=192.168.10.1\n")},
            {"domain", dir.write("domain", "STATIC_DOMAIN=example.net\n")}};
}

double processorSeconds(pid_t pid)
{
    clockid_t clock{};
    timespec used{};
    if (::clock_getcpuclockid(pid, &clock) != 0 || ::clock_gettime(clock, &used) != 0)
        return 0;
    return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1e-9;
}

/** Time is from the arrival on the queue to the acknowledgement; "cpu_ms" is the daemon's own per message. */
void arrivalToAcknowledgement(benchmark::State &state)
{
    const XasTestDir dir;
    XasTestDaemon daemon;
    daemon.start({{.name = "hostname", .cfgFiles = makeFiles(dir)}});
    unsigned number = 0;
    daemon.ask(hostnameMessage(++number));
    const double before = processorSeconds(daemon.pid());
    for ([[maybe_unused]] const auto iteration : state) {
        const auto sent = std::chrono::steady_clock::now();
        const XasMessage answer = daemon.ask(hostnameMessage(++number));
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - sent;
        if (xasMessageWord(answer, 120) != 1)
            state.SkipWithError("the change was refused");
        state.SetIterationTime(took.count());
    }
    const double used = processorSeconds(daemon.pid()) - before;
    state.counters["cpu_ms"] = used * 1e3 / static_cast<double>(state.iterations());
}
BENCHMARK(arrivalToAcknowledgement)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(30)
    ->ComputeStatistics("max", [](const std::vector<double> &v) { return *std::ranges::max_element(v); })
    ->ReportAggregatesOnly();

void handlerAlone(benchmark::State &state)
{
    const XasTestDir dir;
    const XasCfgFileList files = xasTestCfgFiles(makeFiles(dir));
    XasMessage msg = hostnameMessage(1);
    const unsigned long before = allocationsSoFar();
    for ([[maybe_unused]] const auto iteration : state) {
        XasReplyStatus reply;
        if (xasUpdateHostnameCfg(&msg, &files, &reply) != 0)
            state.SkipWithError("the change was refused");
    }
    state.counters["allocations"] =
        static_cast<double>(allocationsSoFar() - before) / static_cast<double>(state.iterations());
}
BENCHMARK(handlerAlone)->Unit(benchmark::kMicrosecond);

/** The whole new text of a hosts file of that many lines: the time per line must not grow. */
void hostsTextOfManyLines(benchmark::State &state)
{
    std::string text;
    for (long line = 0; line < state.range(0); ++line)
        text += "192.168.10.1\tgateway.example.org gateway\n";
    for ([[maybe_unused]] const auto iteration : state)
        benchmark::DoNotOptimize(xasHostsText(text, {.hostname = "console1", .domain = "example.org"}));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(hostsTextOfManyLines)->Range(10, 100000)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    if (const auto status = xasEnterPrivateRoot(argc, argv))
        return *status;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
