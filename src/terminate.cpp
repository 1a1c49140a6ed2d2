// Takes the place of the C++ runtime's own, which would bring its demangler, a sixth of the program, to write
// a name to an error output that the daemon does not have.
#include <cstdlib>

namespace __gnu_cxx { // NOLINT(cert-dcl58-cpp,bugprone-reserved-identifier): the runtime's name for it
[[noreturn]] void __verbose_terminate_handler();

void __verbose_terminate_handler() // NOLINT(bugprone-reserved-identifier,readability-identifier-naming)
{
    std::abort();
}
} // namespace __gnu_cxx
