#include "xms/difference.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

constexpr std::size_t CONTEXT = 2;

/** Larger changes are shown as everything replaced: the table of the search has so many cells at most. */
constexpr std::size_t CELLS_MAX = 4U << 20;

struct Line {
    char kind; /**< ' ', '-' or '+' */
    std::string_view text;
};

using Lines = std::vector<std::string_view>;

/** The lines with their ends; the last one may have none. */
Lines linesOf(std::string_view text)
{
    Lines lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return lines;
}

void add(std::vector<Line> &all, char kind, std::string_view text)
{
    all.push_back({kind, text});
}

/** The lengths of the longest common rows of lines behind each pair of places. */
std::vector<std::uint32_t> commonBehind(const Lines &before, const Lines &after)
{
    const std::size_t width = after.size() + 1;
    std::vector<std::uint32_t> lengths((before.size() + 1) * width);
    for (std::size_t i = before.size(); i-- > 0;) {
        for (std::size_t j = after.size(); j-- > 0;) {
            const std::size_t at = i * width + j;
            lengths[at] = before[i] == after[j] ? lengths[at + width + 1] + 1
                                                : std::max(lengths[at + width], lengths[at + 1]);
        }
    }
    return lengths;
}

void compareMiddle(const Lines &before, const Lines &after, std::vector<Line> &all)
{
    std::size_t i = 0;
    std::size_t j = 0;
    if ((before.size() + 1) * (after.size() + 1) <= CELLS_MAX) {
        const auto lengths = commonBehind(before, after);
        const std::size_t width = after.size() + 1;
        while (i < before.size() && j < after.size()) {
            if (before[i] == after[j]) {
                add(all, ' ', before[i++]);
                ++j;
            } else if (lengths[(i + 1) * width + j] >= lengths[i * width + j + 1]) {
                add(all, '-', before[i++]);
            } else {
                add(all, '+', after[j++]);
            }
        }
    }
    while (i < before.size())
        add(all, '-', before[i++]);
    while (j < after.size())
        add(all, '+', after[j++]);
}

/** Every line of both texts, in order. What both begin and end with is found first. */
std::vector<Line> compare(const Lines &before, const Lines &after)
{
    const std::size_t shorter = std::min(before.size(), after.size());
    std::size_t head = 0;
    while (head < shorter && before[head] == after[head])
        ++head;
    std::size_t tail = 0;
    while (tail < shorter - head && before[before.size() - 1 - tail] == after[after.size() - 1 - tail])
        ++tail;
    const auto middleOf = [&](const Lines &lines) {
        return Lines(lines.begin() + static_cast<std::ptrdiff_t>(head),
                     lines.end() - static_cast<std::ptrdiff_t>(tail));
    };
    std::vector<Line> all;
    for (std::size_t i = 0; i < head; ++i)
        add(all, ' ', before[i]);
    compareMiddle(middleOf(before), middleOf(after), all);
    for (std::size_t i = before.size() - tail; i < before.size(); ++i)
        add(all, ' ', before[i]);
    return all;
}

std::string rangeText(std::size_t first, std::size_t count)
{
    return std::to_string(count == 0 ? first - 1 : first) + (count == 1 ? "" : "," + std::to_string(count));
}

/** Where the lines of a hunk end that begins at `from`: behind the context of its last change. */
std::size_t endOfHunk(const std::vector<Line> &all, std::size_t from)
{
    std::size_t end = from;
    for (std::size_t at = from; at < all.size() && at <= end + 2 * CONTEXT + 1; ++at) {
        if (all[at].kind != ' ')
            end = at;
    }
    return std::min(end + CONTEXT + 1, all.size());
}

std::size_t countOf(const std::vector<Line> &all, std::size_t from, std::size_t to, char kind)
{
    const auto at = [&](std::size_t n) {
        return all.begin() + static_cast<std::ptrdiff_t>(n);
    };
    return static_cast<std::size_t>(std::count_if(
        at(from), at(to), [&](const Line &line) { return line.kind == ' ' || line.kind == kind; }));
}

std::string hunkText(const std::vector<Line> &all, std::size_t from, std::size_t to)
{
    std::string text = "@@ -" + rangeText(countOf(all, 0, from, '-') + 1, countOf(all, from, to, '-')) +
                       " +" + rangeText(countOf(all, 0, from, '+') + 1, countOf(all, from, to, '+')) +
                       " @@\n";
    for (std::size_t at = from; at < to; ++at) {
        text += all[at].kind;
        text += all[at].text;
        if (!all[at].text.ends_with('\n'))
            text += "\n\\ No newline at end of file\n";
    }
    return text;
}

} // namespace

std::string xmsDifference(std::string_view before, std::string_view after)
{
    const std::vector<Line> all = compare(linesOf(before), linesOf(after));
    std::string text;
    for (std::size_t at = 0; at < all.size();) {
        if (all[at].kind == ' ') {
            ++at;
            continue;
        }
        const std::size_t end = endOfHunk(all, at);
        text += hunkText(all, at - std::min(at, CONTEXT), end);
        at = end;
    }
    return text;
}
