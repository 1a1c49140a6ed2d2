// Replaces a file again and again while others read it as fast as they can, and tells whether one of them
// ever found it missing, empty or mixed.
//
//   xas_readers DIRECTORY [REPLACEMENTS [READERS]]        (100000, 4)
//
// Every content is one letter many times, with its length in front, of another length each time. The file is
// replaced through both of the daemon's ways, with a backup and without; its backup is read, too. Exits with
// 1 when a reader found something else.
#include "core/log.h"
#include "files/editor.h"
#include "files/generated_file.h"
#include "files/sync.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr XasEditTexts TEXTS{.openReason = "open", .writeLog = "write\n", .saveReason = "save", .anew = true};

/** Of both files, counted by all readers together. */
struct Seen {
    unsigned long reads;
    unsigned long wrong;
};

std::string content(unsigned long number)
{
    const std::size_t length = 1 + number * 7919 % 20000;
    return std::to_string(length) + " " + std::string(length, static_cast<char>('a' + number % 26)) + "\n";
}

/** Whole, and all of one replacement. */
bool isWhole(const std::string &text)
{
    const std::size_t blank = text.find(' ');
    if (blank == std::string::npos || !text.ends_with('\n'))
        return false;
    const std::size_t length = std::strtoul(text.c_str(), nullptr, 10);
    return text.size() == blank + 1 + length + 1 &&
           text.find_first_not_of(text[blank + 1], blank + 1) == text.size() - 1;
}

/** The whole file, as any program reads it. False when it cannot be opened. */
bool readFile(const std::string &path, std::string &text)
{
    text.clear();
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    std::array<char, 4096> piece{};
    for (ssize_t size = 0; (size = ::read(fd, piece.data(), piece.size())) > 0;)
        text.append(piece.data(), static_cast<std::size_t>(size));
    ::close(fd);
    return true;
}

[[noreturn]] void readAllTheTime(const std::vector<std::string> &paths, Seen *seen)
{
    std::string text;
    for (;;) {
        for (const std::string &path : paths) {
            const bool isRight = readFile(path, text) && isWhole(text);
            __atomic_fetch_add(&seen->reads, 1, __ATOMIC_RELAXED);
            __atomic_fetch_add(&seen->wrong, isRight ? 0 : 1, __ATOMIC_RELAXED);
            if (!isRight)
                std::fprintf(stderr, "%s: %zu bytes \"%.40s\"\n", path.c_str(), text.size(), text.c_str());
        }
    }
}

int replace(const std::string &edited, const std::string &generated, unsigned long number)
{
    XasReplyStatus reply;
    const int result = xasEditFile(edited.c_str(), TEXTS, &reply,
                                   [&](std::string_view /*oldText*/) { return XasNewText{content(number)}; });
    return result == 0 ? xasGenerateFile(generated, content(number), XasFileAccess::kept) : result;
}

unsigned long numberOr(unsigned long otherwise, int argc, char **argv, int at)
{
    return argc > at ? std::strtoul(argv[at], nullptr, 10) : otherwise;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2)
        return 2;
    const std::string directory = argv[1];
    const unsigned long replacements = numberOr(100000, argc, argv, 2);
    const std::string edited = directory + "/edited";
    const std::string generated = directory + "/generated";
    auto *const seen = static_cast<Seen *>(
        ::mmap(nullptr, sizeof(Seen), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    int result = replace(edited, generated, 0) | replace(edited, generated, 1); // with a backup from now on
    std::vector<pid_t> readers;
    for (unsigned long i = 0; i < numberOr(4, argc, argv, 3); ++i) {
        readers.push_back(::fork());
        if (readers.back() == 0)
            readAllTheTime({edited, generated, edited + ".old"}, seen);
    }
    for (unsigned long number = 2; number <= replacements && result == 0; ++number) {
        result = replace(edited, generated, number);
        xasSyncTouched();
    }
    for (const pid_t reader : readers) {
        ::kill(reader, SIGKILL);
        ::waitpid(reader, nullptr, 0);
    }
    std::printf("%lu replacements, %lu reads, %lu of them wrong\n", replacements, seen->reads, seen->wrong);
    return result == 0 && seen->wrong == 0 && seen->reads > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
