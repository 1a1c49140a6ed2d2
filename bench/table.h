/** The one table of the measurements, and how a time is taken. */
#ifndef XAS_BENCH_TABLE_H
#define XAS_BENCH_TABLE_H

#include <algorithm>
#include <chrono>
#include <vector>

/** Prints the title of the rows below it. */
void benchTitle(const char *title);

/** Prints a row: what was measured, its value and, below 0 for none, the most that it shall be. */
void benchRow(const char *what, double value, const char *unit, double most = -1);

/** The seconds that `work` takes. */
template <class Work>
double benchSeconds(const Work &work)
{
    const auto before = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>{std::chrono::steady_clock::now() - before}.count();
}

/** The times of one way to do a work. */
class BenchTimes {
  public:
    void add(double seconds) { times.push_back(seconds); }

    /** What counts where nothing shortens it: whatever else the machine does only adds to it. */
    [[nodiscard]] double least() const { return *std::ranges::min_element(times); }

    /** What counts of a time that begins at an uncertain moment. */
    [[nodiscard]] double median() const
    {
        std::vector<double> sorted = times;
        std::ranges::sort(sorted);
        return sorted[sorted.size() / 2];
    }

  private:
    std::vector<double> times;
};

#endif
