// Replaces one file through the daemon's library, for tests that cut the work short at each of its system
// calls.
//
//   xas_replace edit PATH [LINES]   the new text in front of that of an existing file
//   xas_replace make PATH           the new text alone, for a file that need not exist
//   xas_replace abandon PATH        an editor that gives up half way
//   xas_replace restore PATH        the backup becomes the file again
//
// The new text is LINES (5) lines "new <number>". Exits with the library's result.
#include "files/editor.h"
#include "files/sync.h"

#include <cstdlib>
#include <string>
#include <unistd.h>

namespace {

constexpr XasEditTexts TEXTS{
    .openReason = "open", .writeLog = "Error printing line to file\n", .saveReason = "save"};
constexpr XasEditTexts ANEW{
    .openReason = TEXTS.openReason, .writeLog = TEXTS.writeLog, .saveReason = TEXTS.saveReason, .anew = true};

std::string newText(int lines)
{
    std::string text;
    for (int i = 1; i <= lines; ++i)
        text += "new " + std::to_string(i) + "\n";
    return text;
}

int doWork(const std::string &work, const char *path, const std::string &text)
{
    XasReplyStatus reply;
    ::getppid(); // marks where the work begins
    if (work == "edit")
        return xasEditFile(path, TEXTS, &reply,
                           [&](std::string_view oldText) { return XasNewText{text + std::string{oldText}}; });
    if (work == "make")
        return xasEditFile(path, ANEW, &reply,
                           [&](std::string_view /*oldText*/) { return XasNewText{text}; });
    if (work == "abandon")
        return xasEditFile(path, TEXTS, &reply, [&](std::string_view /*oldText*/) {
            return XasNewText{text, false};
        });
    return work == "restore" ? xasRestoreCfgFile(path) : 2;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3)
        return 2;
    // The cuts are meant for the work alone, not for what a runtime writes at exit (counters of coverage,
    // say).
    const int result = doWork(argv[1], argv[2], newText(argc > 3 ? std::atoi(argv[3]) : 5));
    xasSyncTouched();
    std::_Exit(result);
}
