/** Running configuration scripts to completion. Signals are served while one runs. */
#ifndef XAS_CORE_SCRIPT_H
#define XAS_CORE_SCRIPT_H

#include <optional>
#include <string>

/** Runs a script and waits for it. Returns 0 when it exited with 0, its exit status (1 to 255) otherwise, -1
 * when there is none, it could not be waited for or it was killed. A failed fork counts as success. */
[[nodiscard]] int xasRunScript(const std::optional<std::string> &commandLine);

#endif
