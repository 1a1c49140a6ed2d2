// Disturbs the built daemon at each of its system calls, and tells what came of it.
//
//   xas_faults [--every N] [--at TEXT] [--jobs N] [--daemon PATH] [--until-noticed] [--list] [NAME...]
//
// NAME is the beginning of a case's name, a message type to begin with; without one all cases are tried.
// --every N tries every Nth cut alone, --at TEXT those that are described with this text ("ENOSPC at call 17,
// write"). Each job has a private root of its own and takes its share of every case. The last lines are a
// table; exits with 1 when anything was not as it should be.
#include "faults/campaign.h"
#include "faults/tracer.h"
#include "support/root.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <sstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

struct Options {
    unsigned every = 1;
    unsigned jobs = std::max(1U, std::thread::hardware_concurrency());
    int share = -1; /**< this process is the job of this number */
    bool list = false;
    bool untilNoticed = false; /**< each job ends with its first complaint */
    std::string at;
    std::vector<std::string> names;
};

Options parse(int argc, char **argv)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        const char *value = i + 1 < argc ? argv[i + 1] : "0";
        if (word == "--list" || word == "--until-noticed") {
            (word == "--list" ? options.list : options.untilNoticed) = true;
            continue;
        }
        if (!word.starts_with("--")) {
            options.names.push_back(word);
            continue;
        }
        ++i;
        if (word == "--every")
            options.every = static_cast<unsigned>(std::max(1, std::atoi(value)));
        else if (word == "--daemon")
            xasSetFaultsDaemon(value);
        else if (word == "--at")
            options.at = value;
        else if (word == "--jobs")
            options.jobs = static_cast<unsigned>(std::max(1, std::atoi(value)));
        else if (word == "--share")
            options.share = std::atoi(value);
    }
    return options;
}

bool isWanted(const Options &options, const XasFaultsCase &faultsCase)
{
    return options.names.empty() || std::ranges::any_of(options.names, [&](const std::string &name) {
               return faultsCase.name.starts_with(name) || faultsCase.type == name;
           });
}

/** A line in one piece: the jobs share a pipe. */
void writeLine(std::string line)
{
    std::ranges::replace(line, '\n', ' ');
    line = line.substr(0, 2000) + "\n";
    [[maybe_unused]] const ssize_t written = ::write(STDOUT_FILENO, line.data(), line.size());
}

int work(const Options &options)
{
    xasFurnishMachine();
    const XasShare share{options.at, options.every, options.jobs, static_cast<unsigned>(options.share)};
    for (const XasFaultsCase &faultsCase : xasFaultsCases()) {
        if (!isWanted(options, faultsCase))
            continue;
        const XasFaultsCount count = xasTryCase(faultsCase, share, [&](const std::string &complaint) {
            writeLine(complaint);
            if (options.untilNoticed)
                std::_Exit(EXIT_FAILURE);
        });
        std::ostringstream line;
        line << "\t" << count.calls << ' ' << count.kills << ' ' << count.errors << ' ' << count.signals
             << ' ' << count.blocks << ' ' << count.violations << ' ' << faultsCase.name;
        writeLine(line.str());
    }
    writeLine("\tdone");
    return EXIT_SUCCESS;
}

/** Starts this program once more for each job; all of them write to one pipe. */
FILE *startJobs(const Options &options, int argc, char **argv)
{
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0)
        return nullptr;
    for (unsigned job = 0; job < options.jobs; ++job) {
        if (::fork() != 0)
            continue;
        ::dup2(ends[1], STDOUT_FILENO);
        ::close(ends[0]);
        ::close(ends[1]);
        std::vector<std::string> words(argv, argv + argc);
        for (const std::string &word : {std::string{"--jobs"}, std::to_string(options.jobs),
                                        std::string{"--share"}, std::to_string(job)})
            words.push_back(word);
        std::vector<char *> arguments;
        for (std::string &word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        ::execv("/proc/self/exe", arguments.data());
        ::_exit(EXIT_FAILURE);
    }
    ::close(ends[1]);
    return ::fdopen(ends[0], "r");
}

/** What the jobs counted for each case. */
struct Table {
    std::map<std::string, XasFaultsCount> counts;
    unsigned done = 0;

    void take(const std::string &line)
    {
        if (line == "done") {
            ++done;
            return;
        }
        std::istringstream fields{line};
        XasFaultsCount one;
        std::string name;
        fields >> one.calls >> one.kills >> one.errors >> one.signals >> one.blocks >> one.violations >>
            std::ws;
        std::getline(fields, name);
        add(counts[name], one);
    }

    static void add(XasFaultsCount &sum, const XasFaultsCount &one)
    {
        for (const auto field :
             {&XasFaultsCount::calls, &XasFaultsCount::kills, &XasFaultsCount::errors,
              &XasFaultsCount::signals, &XasFaultsCount::blocks, &XasFaultsCount::violations})
            sum.*field += one.*field;
    }

    static void print(const char *name, const XasFaultsCount &count)
    {
        std::printf("%-28s %7u %7u %7u %7u %7u %10u\n", name, count.calls, count.kills, count.errors,
                    count.signals, count.blocks, count.violations);
    }

    XasFaultsCount print() const
    {
        XasFaultsCount sum;
        std::printf("\n%-28s %7s %7s %7s %7s %7s %10s\n", "message", "calls", "kills", "errors", "signals",
                    "blocks", "violations");
        for (const XasFaultsCase &faultsCase : xasFaultsCases()) {
            const auto count = counts.find(faultsCase.name);
            if (count == counts.end())
                continue;
            print(faultsCase.name.c_str(), count->second);
            add(sum, count->second);
        }
        print("all", sum);
        return sum;
    }
};

int superviseJobs(const Options &options, int argc, char **argv)
{
    FILE *lines = startJobs(options, argc, argv);
    if (lines == nullptr)
        return EXIT_FAILURE;
    Table table;
    std::array<char, 4096> line{};
    while (std::fgets(line.data(), line.size(), lines) != nullptr) {
        line.at(std::strcspn(line.data(), "\n")) = '\0';
        if (line.front() == '\t')
            table.take(line.data() + 1);
        else
            std::printf("%s\n", line.data());
        std::fflush(stdout);
    }
    std::fclose(lines);
    while (::wait(nullptr) > 0) {
    }
    const XasFaultsCount sum = table.print();
    if (table.done != options.jobs)
        std::printf("a job did not come to its end\n");
    const bool isTried = sum.kills + sum.errors + sum.signals + sum.blocks > 0;
    return sum.violations == 0 && isTried && table.done == options.jobs ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int argc, char **argv)
{
    const Options options = parse(argc, argv);
    if (options.list) {
        for (const XasFaultsCase &faultsCase : xasFaultsCases())
            std::printf("%s\n", faultsCase.name.c_str());
        return EXIT_SUCCESS;
    }
    if (options.share < 0)
        return superviseJobs(options, argc, argv);
    if (const auto status = xasEnterPrivateRoot(argc, argv))
        return *status;
    return work(options);
}
