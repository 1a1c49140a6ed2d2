#include "table.h"

#include <cstdio>

void benchTitle(const char *title)
{
    std::printf("\n| %-66s | %10s | %-9s | %7s |\n", title, "measured", "unit", "at most");
    std::printf("|%.68s|%.12s|%.11s|%.9s|\n",
                "--------------------------------------------------------------------",
                "-----------:", "-----------", "--------:");
}

void benchRow(const char *what, double value, const char *unit, double most)
{
    std::printf("| %-66s | %10.4g | %-9s | ", what, value, unit);
    if (most < 0)
        std::printf("%7s |\n", "");
    else
        std::printf("%7.3g |%s\n", most, value > most ? " missed" : "");
    std::fflush(stdout);
}
