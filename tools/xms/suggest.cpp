#include "xms/suggest.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace {

constexpr std::size_t MOST_SUGGESTIONS = 4;

bool isLastPart(std::string_view wanted, std::string_view name)
{
    return name.size() > wanted.size() && name.ends_with(wanted) &&
           name[name.size() - wanted.size() - 1] == '.';
}

} // namespace

std::size_t xmsEditDistance(std::string_view from, std::string_view to)
{
    std::vector<std::size_t> row(to.size() + 1); // distances of the part of `from` read so far to each prefix
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

std::vector<std::string> xmsCloseNames(std::string_view wanted, const std::vector<std::string> &known)
{
    const std::size_t reach = std::max<std::size_t>(2, wanted.size() / 3);
    std::vector<std::pair<std::size_t, std::string>> close;
    for (const std::string &name : known) {
        const std::size_t distance = isLastPart(wanted, name) ? 1 : xmsEditDistance(wanted, name);
        if (distance <= reach && distance < name.size())
            close.emplace_back(distance, name);
    }
    std::ranges::stable_sort(close, {}, &std::pair<std::size_t, std::string>::first);
    std::vector<std::string> names;
    for (std::size_t i = 0; i < std::min(close.size(), MOST_SUGGESTIONS); ++i)
        names.push_back(std::move(close[i].second));
    return names;
}

std::string xmsDidYouMean(std::string_view wanted, const std::vector<std::string> &known)
{
    const std::vector<std::string> names = xmsCloseNames(wanted, known);
    if (names.empty())
        return {};
    std::string text = " (did you mean " + names.front();
    for (std::size_t i = 1; i < names.size(); ++i)
        text += (i + 1 == names.size() ? " or " : ", ") + names[i];
    return text + "?)";
}
