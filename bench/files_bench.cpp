// The file work of the daemon beside a C program that does the least that is as safe, and beside sed -i.
#include "files_bench.h"

#include "allocations.h"
#include "files/sync.h"
#include "host_message.h"
#include "least.h"
#include "support/apps.h"
#include "table.h"

#include <cstdio>
#include <cstdlib>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>

namespace {

constexpr const char *FIRST_LINE = "127.0.0.1\tconsole.example.org\tlocalhost.localdomain\tlocalhost\n";

/** Where files are replaced, and what they may cost beside the C program. */
struct Place {
    const char *name;
    std::string directory;
    bool isOnDisk;
};

void require(bool done, const char *what)
{
    if (!done)
        throw std::runtime_error{what};
}

void editHosts(const std::string &path)
{
    XasHostnamePayload payload{};
    xasSetFieldText(payload.hostname, "console");
    xasSetFieldText(payload.domain, "example.org");
    XasReplyStatus reply;
    require(xasEditHostsFile(path.c_str(), &payload, &reply) == 0, "the hosts file was not edited");
    xasSyncTouched();
}

void replaceLeast(const std::vector<std::string> &paths, const std::string &directory)
{
    for (const std::string &path : paths)
        require(leastReplace(path.c_str(), FIRST_LINE) == 0, "the C program replaced nothing");
    require(leastSync(directory.c_str()) == 0, "the C program did not sync");
}

void run(std::vector<std::string> words)
{
    std::vector<char *> argv;
    for (std::string &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    pid_t pid = 0;
    int status = 0;
    require(::posix_spawnp(&pid, argv.front(), nullptr, nullptr, argv.data(), environ) == 0, argv.front());
    require(::waitpid(pid, &status, 0) == pid && status == 0, argv.front());
}

void runSed(const std::string &path)
{
    const std::string script = "1s/.*/127.0.0.1\tconsole.example.org\tlocalhost.localdomain\tlocalhost/";
    run({"sed", "-i", "-e", script, path});
}

/** With the one lens that is needed; a name that is there already would not be written. */
void runAugtool(const std::string &directory, int round)
{
    run({"sh", "-c", R"(exec augtool --noautoload --root "$0" --transform 'Hosts.lns incl /hosts' --autosave \
             set /files/hosts/1/canonical "$1" >/dev/null)",
         directory, "console" + std::to_string(round) + ".example.org"});
}

void measureAugtool(const Place &place, double ours, const std::string &what)
{
    constexpr const char *AUGTOOL = "/usr/bin/augtool";
    if (!xasExists(AUGTOOL))
        return;
    BenchTimes augtool;
    for (int round = 0; round < 5; ++round)
        augtool.add(benchSeconds([&] { runAugtool(place.directory, round); }));
    benchRow((what + ": beside augtool, its start included").c_str(), ours / augtool.least(), "ratio");
}

void measureFile(const Place &place, std::size_t lines, double mostBesideC)
{
    BenchTimes ours;
    BenchTimes least;
    BenchTimes sed;
    const std::string path = place.directory + "/hosts";
    xasWriteFile(path, benchHosts(lines));
    const int rounds = place.isOnDisk || lines > 10'000 ? 61 : 301;
    for (int round = 0; round < rounds; ++round) {
        ours.add(benchSeconds([&] { editHosts(path); }));
        least.add(benchSeconds([&] { replaceLeast({path}, place.directory); }));
        if (round % 10 == 0)
            sed.add(benchSeconds([&] { runSed(path); }));
    }
    const double taken = ours.least();
    const std::string what = std::to_string(lines) + (lines == 1 ? " line " : " lines ") + place.name;
    benchRow((what + ": the daemon's editor").c_str(), taken * 1e6, "us");
    benchRow((what + ": beside the C program").c_str(), taken / least.least(), "ratio", mostBesideC);
    benchRow((what + ": beside sed -i, its start included, unsynced").c_str(), taken / sed.least(), "ratio",
             !place.isOnDisk && lines > 10'000 ? 1 : -1);
    if (lines == 200)
        measureAugtool(place, taken, what);
}

void measureMessage(const Place &place, double mostBesideC)
{
    const BenchFiles files = benchFiles(place.directory);
    const XasCfgFileList list = xasTestCfgFiles(files);
    std::vector<std::string> paths;
    for (const auto &[type, path] : files)
        paths.push_back(path);
    XasMessage msg = benchMessage(1);
    const auto handle = [&] {
        XasReplyStatus reply;
        require(xasUpdateHostnameCfg(&msg, &list, &reply) == 0, "the change was refused");
        xasSyncTouched();
    };
    BenchTimes ours;
    BenchTimes least;
    unsigned long allocations = 0;
    for (int round = 0; round < (place.isOnDisk ? 61 : 301); ++round) {
        benchFiles(place.directory);
        const unsigned long before = allocationsSoFar();
        ours.add(benchSeconds(handle));
        allocations = allocationsSoFar() - before;
        benchFiles(place.directory);
        least.add(benchSeconds([&] { replaceLeast(paths, place.directory); }));
    }
    const double taken = ours.least();
    const std::string what = std::string{"four files of a host-name message "} + place.name;
    benchRow((what + ": handler").c_str(), taken * 1e6, "us");
    benchRow((what + ": beside the C program").c_str(), taken / least.least(), "ratio", mostBesideC);
    if (!place.isOnDisk)
        benchRow("allocations of the handler", static_cast<double>(allocations), "");
}

} // namespace

void benchFileWork()
{
    constexpr const char *TITLE = "Replacing files (ratios compare between machines, times do not)";
    const XasTestDir memory;
    char disk[] = XAS_BUILD_DIR "/bench.XXXXXX";
    require(::mkdtemp(disk) != nullptr, "no directory on the disk");
    benchTitle(TITLE);
    const Place inMemory{"in memory", memory.path(), false};
    const Place onDisk{"on disk", disk, true};
    measureFile(inMemory, 1, -1);
    measureFile(inMemory, 200, 2);
    measureFile(inMemory, 100'000, 3);
    measureMessage(inMemory, 2);
    measureFile(onDisk, 1, -1);
    measureFile(onDisk, 200, 1.1);
    measureFile(onDisk, 100'000, -1);
    measureMessage(onDisk, -1);
    std::filesystem::remove_all(disk);
}
