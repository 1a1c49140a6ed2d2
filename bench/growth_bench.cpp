// The text alone, without its file, from 10 to 1,000,000 lines: the editors for which the cost of a line
// grows most.
#include "growth_bench.h"

#include "support/growth.h"
#include "support/line_editors.h"
#include "table.h"

#include <limits>
#include <malloc.h>
#include <string>

namespace {

constexpr std::size_t FEWEST = 10;
constexpr std::size_t MOST = 1'000'000;

/**
 * While it lives, freed memory stays in the process: what is measured is the editor's work. Otherwise texts
 * above 32 MB are given back each time, and to hand out their pages anew costs the kernel more than some
 * editors take.
 */
class MemoryAtHand {
  public:
    MemoryAtHand()
    {
        ::mallopt(M_MMAP_MAX, 0);
        ::mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    }
    ~MemoryAtHand()
    {
        constexpr int USUAL_MAPPINGS = 65536;
        constexpr int USUAL_TRIM = 128 * 1024;
        ::mallopt(M_MMAP_MAX, USUAL_MAPPINGS);
        ::mallopt(M_TRIM_THRESHOLD, USUAL_TRIM);
    }
    MemoryAtHand(const MemoryAtHand &) = delete;
    MemoryAtHand &operator=(const MemoryAtHand &) = delete;
};

/** Nanoseconds for a line; short texts are edited many times in a row, for the clock to see them. */
double nanosecondsPerLine(const XasLineEditor &edit, std::size_t lines)
{
    const std::size_t inARow = std::max<std::size_t>(1, 100'000 / lines);
    const std::string text = xasRepeated(edit.line, lines);
    BenchTimes times;
    for (int round = 0; round < (lines < MOST ? 15 : 4); ++round)
        times.add(benchSeconds([&] {
            for (std::size_t i = 0; i < inARow; ++i)
                static_cast<void>(edit.run(text));
        }));
    return times.least() / static_cast<double>(lines * inARow) * 1e9;
}

/** The largest of some values, and whose it is. */
struct Worst {
    double value = 0;
    std::string editor;

    void add(double other, const char *whose)
    {
        if (other > value)
            *this = {other, whose};
    }
};

/** A longer file beside the shorter one of which a line costs least. */
double growthOf(const XasLineEditor &edit, double &longest)
{
    double least = std::numeric_limits<double>::max();
    double most = 0;
    for (std::size_t lines = FEWEST; lines <= MOST; lines *= 10) {
        longest = nanosecondsPerLine(edit, lines);
        most = std::max(most, longest / least);
        least = std::min(least, longest);
    }
    return most;
}

} // namespace

void benchGrowth()
{
    Worst growth;
    Worst newMemory;
    Worst line;
    for (const XasLineEditor &edit : xasLineEditors()) {
        double longest = 0;
        {
            const MemoryAtHand atHand;
            growth.add(growthOf(edit, longest), edit.editor);
        }
        ::malloc_trim(0);
        line.add(longest, edit.editor);
        newMemory.add(nanosecondsPerLine(edit, MOST) - longest, edit.editor);
    }
    benchTitle("A line from 10 to 1,000,000 lines, every editor, the text alone");
    benchRow(("longer files beside the least of shorter ones, the worst: " + growth.editor).c_str(),
             growth.value, "ratio", 2);
    benchRow(("the dearest line: " + line.editor).c_str(), line.value, "ns");
    benchRow(("more for it when the kernel hands out the memory, the worst: " + newMemory.editor).c_str(),
             newMemory.value, "ns");
}
