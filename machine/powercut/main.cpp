/**
 * Looks at the states that a disk had, or could have had, when its power was cut.
 *
 *   xas_powercut messages LOG                        bytes written and flushes of each message
 *   xas_powercut count DISK LOG                      how many states there are
 *   xas_powercut image DISK LOG STATE                writes the disk in one state to the standard output
 *   xas_powercut look DISK LOG VERSIONS DEVICE EVERY mounts every EVERY-th state on DEVICE and compares its
 * files
 *
 * DISK is the disk before the first entry of LOG. Exit status: 1 when a state is bad, 2 for a wrong command.
 */
#include "states.h"
#include "versions.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <sys/mount.h>
#include <unistd.h>

namespace {

constexpr std::size_t MARKS = 16 << 20; // where the file system ends
constexpr const char *MOUNT_POINT = "/mnt/state";
constexpr std::size_t SHOWN = 20; // bad states that are told in full
constexpr std::size_t ALIGNMENT = 4096;

struct Tally {
    std::size_t looked = 0;
    std::size_t bad = 0;
    std::size_t withLeftOvers = 0;
};

/** Past all caches: what is mounted next reads it anew. */
void writeDevice(const std::string &device, const std::string &disk)
{
    static const std::unique_ptr<char, decltype(&std::free)> aligned{
        static_cast<char *>(std::aligned_alloc(ALIGNMENT, MARKS)), &std::free};
    disk.copy(aligned.get(), MARKS);
    const int fd = ::open(device.c_str(), O_WRONLY | O_DIRECT | O_CLOEXEC);
    if (fd < 0 || ::pwrite(fd, aligned.get(), MARKS, 0) != static_cast<ssize_t>(MARKS))
        throw std::runtime_error{"cannot write " + device};
    ::close(fd);
}

XasFinding lookAt(const std::string &device, const std::vector<XasTree> &versions, const XasGroup &group)
{
    if (::mount(device.c_str(), MOUNT_POINT, "ext4", MS_NOATIME, "") != 0)
        return {{"the file system cannot be mounted"}};
    XasFinding finding;
    try {
        finding = xasCheckTree(xasReadTree(MOUNT_POINT), versions, group.acknowledged, group.begun);
    } catch (const std::exception &error) {
        finding.bad.emplace_back(error.what());
    }
    if (::umount(MOUNT_POINT) != 0)
        throw std::runtime_error{"cannot unmount"};
    return finding;
}

void tell(const XasState &state, const XasFinding &finding)
{
    std::cout << "state " << state.number << " (message " << state.group->acknowledged << " acknowledged, "
              << state.group->begun << " begun, writes " << state.how << "):\n";
    for (const std::string &what : finding.bad)
        std::cout << "  " << what << '\n';
}

std::vector<XasGroup> groupsOf(const std::string &log)
{
    return xasGroupEntries(xasReadLog(log, MARKS));
}

int look(const std::vector<std::string> &words)
{
    const std::string log = xasReadWhole(words[2]);
    const auto versions = xasReadVersions(words[3]);
    const std::size_t every = std::stoul(words[5]);
    Tally tally;
    xasForEachState(
        xasReadWhole(words[1]), groupsOf(log), [every](std::size_t number) { return number % every == 0; },
        [&](const XasState &state, const std::string &disk) {
            writeDevice(words[4], disk);
            const XasFinding finding = lookAt(words[4], versions, *state.group);
            ++tally.looked;
            tally.withLeftOvers += finding.leftOvers != 0 ? 1 : 0;
            if (!finding.bad.empty() && ++tally.bad <= SHOWN)
                tell(state, finding);
        });
    std::cout << "states looked at " << tally.looked << ", bad " << tally.bad << ", with temporary files "
              << tally.withLeftOvers << '\n';
    return tally.bad == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

int messages(const std::vector<std::string> &words)
{
    const std::string log = xasReadWhole(words[1]);
    std::size_t bytes = 0;
    std::size_t flushes = 0;
    for (const XasEntry &entry : xasReadLog(log, MARKS)) {
        bytes += entry.data.size();
        flushes += entry.kind == XasEntryKind::flush ? 1 : 0;
        if (entry.kind == XasEntryKind::markEnd && entry.message != 0)
            std::cout << entry.message << ' ' << bytes << ' ' << flushes << '\n';
        if (entry.kind == XasEntryKind::markBegin || entry.kind == XasEntryKind::markEnd)
            bytes = flushes = 0;
    }
    return EXIT_SUCCESS;
}

int count(const std::vector<std::string> &words)
{
    std::size_t states = 0;
    const std::string log = xasReadWhole(words[2]);
    const auto note = [&states](std::size_t number) {
        states = number;
        return false;
    };
    xasForEachState(xasReadWhole(words[1]), groupsOf(log), note, {});
    std::cout << states << '\n';
    return EXIT_SUCCESS;
}

int image(const std::vector<std::string> &words)
{
    const std::string log = xasReadWhole(words[2]);
    const std::size_t wanted = std::stoul(words[3]);
    xasForEachState(
        xasReadWhole(words[1]), groupsOf(log), [wanted](std::size_t number) { return number == wanted; },
        [](const XasState &, const std::string &disk) { std::cout << disk; });
    return EXIT_SUCCESS;
}

struct Command {
    std::string_view name;
    std::size_t words;
    int (*run)(const std::vector<std::string> &);
};

constexpr Command COMMANDS[] = {
    {"messages", 2, messages}, {"count", 3, count}, {"image", 4, image}, {"look", 6, look}};

} // namespace

int main(int argc, char *argv[])
try {
    const std::vector<std::string> words(argv + 1, argv + argc);
    for (const Command &command : COMMANDS) {
        if (words.size() == command.words && words[0] == command.name)
            return command.run(words);
    }
    std::cerr << "usage: see machine/powercut/main.cpp\n";
    return 2;
} catch (const std::exception &error) {
    std::cerr << "xas_powercut: " << error.what() << '\n';
    return 2;
}
