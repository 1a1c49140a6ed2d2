/**
 * The private root of a test program: own user, IPC, network, process and host-name namespaces and an own
 * file tree, made with bubblewrap, in which the process is root. Works for root and for an ordinary user;
 * nothing of the host is touched.
 *
 * Everything is a fresh, writable file system but for the libraries, shares and headers below /usr. /bin,
 * /sbin and their namesakes below /usr are directories of links to the host's programs, so a test may replace
 * any program by one of its own (xas_test_stub.h). The build directory keeps its path. Packages that are
 * unpacked beside it are at /packages (xas_test_programs.h).
 */
#ifndef XAS_TEST_SUPPORT_ROOT_H
#define XAS_TEST_SUPPORT_ROOT_H

#include <optional>

/**
 * Called first in main. Outside the private root it runs this program once more inside and gives that run's
 * exit status; inside, or when the tests are only listed, it gives none. A machine that cannot make the root
 * is told plainly and counts as a failure.
 */
std::optional<int> xasEnterPrivateRoot(int argc, char **argv);

/** True in the private root. */
bool xasInPrivateRoot();

#endif
