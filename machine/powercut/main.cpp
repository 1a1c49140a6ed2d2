/**
 * Looks at the states that a disk or flash had, or could have had, when its power was cut.
 *
 *   xas_powercut KIND messages LOG                     bytes written, flushes or erases of each message
 *   xas_powercut KIND count DISK LOG                   how many states there are
 *   xas_powercut KIND image DISK LOG STATE             writes the content in one state to the standard output
 *   xas_powercut KIND look DISK LOG VERSIONS DEVICE N  mounts every Nth state on DEVICE, compares its files
 *   xas_powercut KIND pack DISK                        makes a log of the trace of a flash
 *
 * KIND is ext4, on a disk, or ubifs, on a flash; DISK is its content before the first entry of LOG. Exit
 * status: 1 when a state is bad, 2 for a wrong command.
 */
#include "look.h"
#include "states.h"
#include "trace.h"
#include "versions.h"

#include <cstdlib>
#include <exception>
#include <iostream>
#include <map>

namespace {

constexpr std::size_t SHOWN = 20; // bad states that are told in full

struct Tally {
    std::size_t looked = 0;
    std::size_t bad = 0;
    std::size_t withLeftOvers = 0;
    std::size_t withoutSecrets = 0;
    std::map<std::string, std::size_t> findings;
};

using Words = std::vector<std::string>;

XasFinding lookAt(const XasDevice &device, const std::vector<XasTree> &versions, const XasGroup &group)
{
    try {
        return xasCheckTree(xasReadMounted(device), versions, group.acknowledged, group.begun);
    } catch (const std::exception &error) {
        return {{error.what()}};
    }
}

void tell(const XasState &state, const XasFinding &finding)
{
    std::cout << "state " << state.number << " (message " << state.group->acknowledged << " acknowledged, "
              << state.group->begun << " begun, writes " << state.how << "):\n";
    for (const std::string &what : finding.bad)
        std::cout << "  " << what << '\n';
}

std::vector<XasGroup> groupsOf(const std::string &log, const XasMedium &medium)
{
    return xasGroupEntries(xasReadLog(log, medium), medium);
}

int look(const XasMedium &medium, const Words &words)
{
    const std::string log = xasReadWhole(words[1]);
    const auto versions = xasReadVersions(words[2]);
    const XasDevice device = xasOpenDevice(words[3], medium);
    const std::size_t every = std::stoul(words[4]);
    Tally tally;
    xasForEachState(
        xasReadWhole(words[0]), medium, groupsOf(log, medium),
        [every](std::size_t number) { return number % every == 0; },
        [&](const XasState &state, const std::string &content) {
            xasWriteDevice(device, content);
            const XasFinding finding = lookAt(device, versions, *state.group);
            ++tally.looked;
            tally.withLeftOvers += finding.leftOvers != 0 ? 1 : 0;
            tally.withoutSecrets += finding.isSecretsEmptied ? 1 : 0;
            for (const std::string &what : finding.bad)
                ++tally.findings[what];
            if (!finding.bad.empty() && ++tally.bad <= SHOWN)
                tell(state, finding);
        });
    for (const auto &[what, times] : tally.findings)
        std::cout << times << " times: " << what << '\n';
    std::cout << "states looked at " << tally.looked << ", bad " << tally.bad << ", with temporary files "
              << tally.withLeftOvers << ", with the secrets emptied by sed " << tally.withoutSecrets << '\n';
    return tally.bad == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

int messages(const XasMedium &medium, const Words &words)
{
    const std::string log = xasReadWhole(words[0]);
    const XasEntryKind counted = medium.isFlash ? XasEntryKind::erase : XasEntryKind::flush;
    std::size_t bytes = 0;
    std::size_t times = 0;
    for (const XasEntry &entry : xasReadLog(log, medium)) {
        bytes += entry.data.size();
        times += entry.kind == counted ? 1 : 0;
        if (entry.kind == XasEntryKind::markEnd && entry.message != 0)
            std::cout << entry.message << ' ' << bytes << ' ' << times << '\n';
        if (entry.kind == XasEntryKind::markBegin || entry.kind == XasEntryKind::markEnd)
            bytes = times = 0;
    }
    return EXIT_SUCCESS;
}

int count(const XasMedium &medium, const Words &words)
{
    std::size_t states = 0;
    const std::string log = xasReadWhole(words[1]);
    const auto note = [&states](std::size_t number) {
        states = number;
        return false;
    };
    xasForEachState(xasReadWhole(words[0]), medium, groupsOf(log, medium), note, {});
    std::cout << states << '\n';
    return EXIT_SUCCESS;
}

int image(const XasMedium &medium, const Words &words)
{
    const std::string log = xasReadWhole(words[1]);
    const std::size_t wanted = std::stoul(words[2]);
    xasForEachState(
        xasReadWhole(words[0]), medium, groupsOf(log, medium),
        [wanted](std::size_t number) { return number == wanted; },
        [](const XasState &, const std::string &content) { std::cout << content; });
    return EXIT_SUCCESS;
}

int pack(const XasMedium &, const Words &words)
{
    std::cout << xasPackTrace(std::cin, xasReadWhole(words[0]));
    return EXIT_SUCCESS;
}

struct Command {
    std::string_view name;
    std::size_t words;
    int (*run)(const XasMedium &, const Words &);
};

constexpr Command COMMANDS[] = {{"messages", 1, messages},
                                {"count", 2, count},
                                {"image", 3, image},
                                {"look", 5, look},
                                {"pack", 1, pack}};

} // namespace

int main(int argc, char *argv[])
try {
    const Words words(argv + 1, argv + argc);
    for (const Command &command : COMMANDS) {
        if (words.size() == command.words + 2 && words[1] == command.name &&
            (words[0] == "ext4" || words[0] == "ubifs"))
            return command.run(words[0] == "ext4" ? DISK : FLASH, {words.begin() + 2, words.end()});
    }
    std::cerr << "usage: see machine/powercut/main.cpp\n";
    return 2;
} catch (const std::exception &error) {
    std::cerr << "xas_powercut: " << error.what() << '\n';
    return 2;
}
