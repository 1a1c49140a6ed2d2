#include "support/emulator.h"

#include <sstream>
#include <unistd.h>

#ifndef XAS_EMULATOR // programs of this machine
#define XAS_EMULATOR ""
#endif

std::vector<std::string> xasCommandOf(const std::string &program)
{
    std::vector<std::string> words;
    std::istringstream emulator{XAS_EMULATOR};
    for (std::string word; emulator >> word;)
        words.push_back(word);
    if (!words.empty() && ::access(words.front().c_str(), X_OK) != 0) // this is such a machine
        words.clear();
    words.push_back(program);
    return words;
}
