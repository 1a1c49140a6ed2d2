#include "xms/preview.h"

#include <unistd.h>

namespace {

constexpr const char *BOOT = "/appliance/boot";
constexpr const char *PREVIEW = "/appliance/preview";

} // namespace

XmsExit xmsPreviewCommand(const XmsSetOptions &set)
{
    xmsSettingFrom(set);
    std::vector<std::string> words = {BOOT, PREVIEW};
    if (set.fresh)
        words.emplace_back("--fresh");
    if (set.force)
        words.emplace_back("--force");
    words.push_back(set.type);
    words.insert(words.end(), set.assignments.begin(), set.assignments.end());
    std::vector<char *> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string &word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    execv(BOOT, arguments.data());
    throw XmsError{XmsExit::noServer,
                   std::string{"no "} + BOOT +
                       " here: a preview needs the appliance to try things on (./dev shell, ./dev preview)"};
}
