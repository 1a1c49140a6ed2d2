/** Whether the time and the memory that an editor takes for a line depend on the length of the file. */
#ifndef XAS_TEST_SUPPORT_GROWTH_H
#define XAS_TEST_SUPPORT_GROWTH_H

#include <algorithm>
#include <ctime>
#include <string>
#include <string_view>

/** What operator new was asked for. */
struct XasAllocated {
    std::size_t blocks = 0;
    std::size_t bytes = 0;
};

/** Since the program began. */
XasAllocated xasAllocatedSoFar();

/** What `work` allocates. */
template <class Work>
XasAllocated xasAllocatedBy(const Work &work)
{
    const XasAllocated before = xasAllocatedSoFar();
    work();
    const XasAllocated after = xasAllocatedSoFar();
    return {after.blocks - before.blocks, after.bytes - before.bytes};
}

/** The line, so many times. */
inline std::string xasRepeated(std::string_view line, std::size_t lines)
{
    std::string text;
    text.reserve(line.size() * lines);
    for (std::size_t i = 0; i < lines; ++i)
        text += line;
    return text;
}

/** The least processor time, in seconds, of two runs of `edit` over a text of that many lines. */
template <class Edit>
double xasEditSeconds(Edit edit, std::string_view line, std::size_t lines)
{
    const std::string text = xasRepeated(line, lines);
    double least = 1e9;
    for (int run = 0; run < 2; ++run) {
        const std::clock_t before = std::clock();
        const auto newText = edit(std::string_view{text});
        const std::clock_t after = std::clock();
        least = std::min(least, static_cast<double>(after - before) / CLOCKS_PER_SEC);
    }
    return least;
}

/**
 * How much longer `edit` takes for a line of 100,000 than for one of 10,000: about 1 when the time per line
 * is constant, about 10 when it grows with the file.
 */
template <class Edit>
double xasGrowthPerLine(Edit edit, std::string_view line)
{
    constexpr double SMALLEST = 1e-5; // of the clock
    const double few = std::max(xasEditSeconds(edit, line, 10'000), SMALLEST);
    return xasEditSeconds(edit, line, 100'000) / few / 10;
}

/** What xasGrowthPerLine may be. */
inline constexpr double XAS_CONSTANT_GROWTH = 4;

#endif
