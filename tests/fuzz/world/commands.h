/** The commands that the daemon has shells run, and what they do on this machine. */
#ifndef XAS_FUZZ_WORLD_COMMANDS_H
#define XAS_FUZZ_WORLD_COMMANDS_H

#include "world/machine.h"

/** Does what the command does; requires that it is one of the known ones. */
void xasRunKnownCommand(XasMachine &machine, const std::string &line);

#endif
