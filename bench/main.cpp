// Measures what the daemon costs, in the private root; prints one table.
//
//   xas_bench [SIZE]   SIZE: bytes of the daemon as it is installed
#include "daemon_bench.h"
#include "files_bench.h"
#include "growth_bench.h"
#include "support/root.h"
#include "table.h"
#include "types_bench.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

int main(int argc, char **argv)
{
    if (const auto status = xasEnterPrivateRoot(argc, argv))
        return *status;
    try {
        benchFileWork();
        benchGrowth();
        benchDaemon();
        if (argc > 1)
            benchRow("the program as it is installed", std::atof(argv[1]) / 1e3, "kB", 280);
        benchTypes();
    } catch (const std::exception &error) {
        std::fprintf(stderr, "bench: %s\n", error.what());
        return 1;
    }
    return 0;
}
