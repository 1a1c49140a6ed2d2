/** Programs that were built for another kind of machine than this one: they are run by an emulator. */
#ifndef XAS_TEST_SUPPORT_EMULATOR_H
#define XAS_TEST_SUPPORT_EMULATOR_H

#include <string>
#include <vector>

/** How a program of this build is run: its path, behind an emulator and its arguments when it needs one. */
std::vector<std::string> xasCommandOf(const std::string &program);

#endif
